#include "import/MailConverter.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{
// The MIME library runs once in a process, for all tests.
class MimeEnvironment : public testing::Environment
{
public:
    void SetUp() override { library = std::make_unique<MimeLibrary>(); }
    void TearDown() override { library.reset(); }

private:
    std::unique_ptr<MimeLibrary> library;
};

const testing::Environment* const environment = testing::AddGlobalTestEnvironment(new MimeEnvironment);
}    // namespace
