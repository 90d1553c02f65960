#pragma once

#include <stdexcept>
#include <string>

// The import cannot be done or finished; what() is one line for the user.
class ImportError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The store is being written by another program, and was so for longer than it is worth waiting.
class StoreInUse : public ImportError
{
public:
    using ImportError::ImportError;
};

// "cannot DO PATH: reason"; `error` is an errno value.
ImportError SystemFailure(const std::string& action, const std::string& path, int error);
