#pragma once

#include <stdexcept>
#include <string>

// The import cannot be done or finished; what() is one line for the user.
class ImportError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// "cannot DO PATH: reason"; `error` is an errno value.
ImportError SystemFailure(const std::string& action, const std::string& path, int error);
