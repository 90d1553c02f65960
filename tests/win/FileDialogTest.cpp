#include "win/FileDialog.h"

#include "tests/win/ControlFixture.h"
#include "tests/win/DialogUser.h"
#include "win/ActivationContext.h"
#include "win/Wnd.h"

#include <windows.h>

#include <commdlg.h>
#include <dlgs.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace
{
constexpr DWORD flags = OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY;

class FileDialog : public testing::Test
{
protected:
    FileDialog() { std::filesystem::create_directories(folder); }
    ~FileDialog() override { std::filesystem::remove_all(folder); }

    std::wstring PathOf(const std::wstring& name) const { return (folder / name).wstring(); }

    void WriteFile(const std::wstring& name) const { std::ofstream(folder / name) << "kept"; }

    // The user types a path and presses Save or Cancel.
    static DialogUser::Script Answer(const std::wstring& path, int button = IDOK)
    {
        return [=](DialogUser& user)
        {
            const HWND shown = user.NextDialog();
            user.Type(shown, path);
            user.Press(shown, button);
        };
    }

    const ActivationContext commonControls;
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / L"FileDialogTest";
    CFileDialog dialog{flags, L"Log File (*.TXT)|*.TXT||"};
};

TEST_F(FileDialog, GivesTheNameThatIsTyped)
{
    const std::wstring path = PathOf(L"report.txt");
    const DialogUser running(Answer(path));

    const INT_PTR answer = dialog.DoModal();

    EXPECT_EQ(answer, IDOK);
    EXPECT_EQ(dialog.GetPathName(), path);
    EXPECT_EQ(dialog.GetFileName(), L"report.txt");
}

TEST_F(FileDialog, AddsNoExtension)
{
    const std::wstring path = PathOf(L"report");
    const DialogUser running(Answer(path));

    dialog.DoModal();

    EXPECT_EQ(dialog.GetPathName(), path);
}

TEST_F(FileDialog, HasNoNameWhenItIsCancelled)
{
    const DialogUser running(Answer(PathOf(L"report.txt"), IDCANCEL));

    const INT_PTR answer = dialog.DoModal();

    EXPECT_EQ(answer, IDCANCEL);
    EXPECT_EQ(dialog.GetPathName(), L"");
    EXPECT_EQ(dialog.GetFileName(), L"");
}

TEST_F(FileDialog, StartsWithoutANameAndShowsTheKindsOfFiles)
{
    std::wstring name = L"?";
    std::wstring kind;
    const DialogUser running(
        [&](DialogUser& user)
        {
            const HWND shown = user.NextDialog();
            name = user.TextOf(user.Find(shown, L"Edit"));
            kind = user.TextOf(::GetDlgItem(shown, cmb1));
            user.Press(shown, IDCANCEL);
        });

    dialog.DoModal();

    EXPECT_EQ(name, L"");
    EXPECT_EQ(kind, L"Log File (*.TXT)");
}

TEST_F(FileDialog, AsksBeforeAFileIsOverwritten)
{
    WriteFile(L"report.txt");
    const DialogUser running(
        [&](DialogUser& user)
        {
            const HWND shown = user.NextDialog();
            user.Type(shown, PathOf(L"report.txt"));
            user.Press(shown, IDOK);
            user.Press(user.NextDialog(), IDYES);
        });

    const INT_PTR answer = dialog.DoModal();

    EXPECT_EQ(answer, IDOK);
    EXPECT_EQ(dialog.GetPathName(), PathOf(L"report.txt"));
}

TEST_F(FileDialog, StaysOpenWhenAFileIsNotToBeOverwritten)
{
    WriteFile(L"report.txt");
    const DialogUser running(
        [&](DialogUser& user)
        {
            const HWND shown = user.NextDialog();
            user.Type(shown, PathOf(L"report.txt"));
            user.Press(shown, IDOK);
            user.Press(user.NextDialog(), IDNO);
            user.Type(shown, PathOf(L"other.txt"));
            user.Press(shown, IDOK);
        });

    const INT_PTR answer = dialog.DoModal();

    EXPECT_EQ(answer, IDOK);
    EXPECT_EQ(dialog.GetPathName(), PathOf(L"other.txt"));
}

TEST_F(FileDialog, CanBeShownAgainForAnotherName)
{
    const DialogUser running(
        [&](DialogUser& user)
        {
            for (const wchar_t* name : {L"first.txt", L"second.txt"})
            {
                const HWND shown = user.NextDialog();
                user.Type(shown, PathOf(name));
                user.Press(shown, IDOK);
            }
        });

    dialog.DoModal();
    const std::wstring first = dialog.GetPathName();
    dialog.DoModal();

    EXPECT_EQ(first, PathOf(L"first.txt"));
    EXPECT_EQ(dialog.GetPathName(), PathOf(L"second.txt"));
}

TEST_F(FileDialog, LeavesTheCurrentFolderOfTheProcess)
{
    const std::filesystem::path before = std::filesystem::current_path();
    const DialogUser running(Answer(PathOf(L"report.txt")));

    dialog.DoModal();

    EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_F(FileDialog, StandsForItselfWithoutAnOwner)
{
    HWND owner = nullptr;
    const DialogUser running(
        [&](DialogUser& user)
        {
            const HWND shown = user.NextDialog();
            owner = ::GetWindow(shown, GW_OWNER);
            user.Press(shown, IDCANCEL);
        });

    dialog.DoModal();

    EXPECT_EQ(owner, nullptr);
}

TEST_F(FileDialog, DisablesItsOwnerMeanwhile)
{
    const OwnedWindow window(::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                               nullptr, nullptr, nullptr, nullptr));
    CWnd owner;
    owner.Attach(window.get());
    CFileDialog owned(flags, L"Log File (*.TXT)|*.TXT||", &owner);
    bool disabled = false;
    const DialogUser running(
        [&](DialogUser& user)
        {
            const HWND shown = user.NextDialog();
            user.Type(shown, L"");
            disabled = !::IsWindowEnabled(window.get());
            user.Press(shown, IDCANCEL);
        });

    owned.DoModal();

    EXPECT_TRUE(disabled);
    EXPECT_TRUE(::IsWindowEnabled(window.get()));
}

TEST_F(FileDialog, GivesAPathWholeThatIsAsLongAsMostMayBe)
{
    const std::wstring path = PathOf(std::wstring(MAX_PATH - 1 - PathOf(L"").size(), L'x'));
    const DialogUser running(Answer(path));

    dialog.DoModal();

    EXPECT_EQ(path.size(), 259U);
    EXPECT_EQ(dialog.GetPathName(), path);
}

TEST_F(FileDialog, TakesAFilterThatIsNotEndedAsItShouldBe)
{
    for (const wchar_t* filter : {L"", L"Log File", L"Log File (*.TXT)|*.TXT"})
    {
        CFileDialog unended(flags, filter);
        const DialogUser running([](DialogUser& user) { user.Press(user.NextDialog(), IDCANCEL); });

        EXPECT_EQ(unended.DoModal(), IDCANCEL) << "filter " << filter;
    }
}
}    // namespace
