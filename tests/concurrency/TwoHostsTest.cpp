// The delivered host twice over one store: the one shows messages while the other's wizard moves them.
#include "tests/console/MailFile.h"
#include "tests/endtoend/HostProgram.h"
#include "tests/endtoend/RemoteWindows.h"
#include "tests/endtoend/WizardSteps.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace
{
constexpr wchar_t inbox[] = L"Inbox";
constexpr wchar_t archive[] = L"Archive";
constexpr int kinds = 10;
constexpr int ofEach = 6;

class TwoHosts : public testing::Test
{
protected:
    static void SetUpTestSuite() { RegisterAddIn(Dist()); }

    TwoHosts()
    {
        ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", file.GetPath().c_str());
        file.AddFolder("Archive");
        std::vector<Mail> mails;
        for (int i = 0; i < kinds * ofEach; ++i)
            mails.push_back({.subject = "Subject " + std::to_string(i % kinds)});
        file.Add(mails);
    }
    ~TwoHosts() override { ::SetEnvironmentVariableW(L"LOCALMAPI_STORE", nullptr); }

    static std::wstring Dist()
    {
        wchar_t value[1024] = L"";
        ::GetEnvironmentVariableW(L"TQODR_DIST", value, ARRAYSIZE(value));
        return WindowsPath(value);
    }
    static std::size_t CountShown(const HostProgram& host, const wchar_t* folder)
    {
        host.SelectFolder(folder);
        return host.ReadRows().size();
    }

    MailFile file;
};

TEST_F(TwoHosts, ShowTheSameMailDuringARunAndAfterIt)
{
    const std::vector<std::string> before = file.Query("SELECT subject FROM message ORDER BY 1");
    HostProgram working(Dist());
    HostProgram watching(Dist());
    ASSERT_EQ(CountShown(watching, inbox), static_cast<std::size_t>(kinds * ofEach));

    working.PressToolBarButton(L"Talmore Duplicate Remover");
    WalkWizard({L"move", archive},
               [&](HWND, const char* page)
               {
                   SCOPED_TRACE(page);
                   EXPECT_LE(CountShown(watching, archive), static_cast<std::size_t>(kinds * (ofEach - 1)));
                   EXPECT_GE(CountShown(watching, inbox), static_cast<std::size_t>(kinds));
               });

    EXPECT_EQ(CountShown(watching, inbox), static_cast<std::size_t>(kinds));
    EXPECT_EQ(CountShown(watching, archive), static_cast<std::size_t>(kinds * (ofEach - 1)));
    EXPECT_EQ(file.Query("SELECT subject FROM message ORDER BY 1"), before);
    working.Close();
    watching.Close();
}
}    // namespace
