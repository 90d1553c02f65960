#include "import/ImportError.h"

#include <system_error>

ImportError SystemFailure(const std::string& action, const std::string& path, int error)
{
    return ImportError("cannot " + action + " " + path + ": " + std::generic_category().message(error));
}
