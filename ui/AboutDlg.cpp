#include "ui/AboutDlg.h"

#include "res/resource.h"
#include "ui/MyEULADlg.h"

#include <windows.h>

#include <utility>

namespace
{
FontHandle BoldVariant(HFONT font)
{
    LOGFONTW description{};
    ::GetObjectW(font, sizeof description, &description);
    description.lfWeight = FW_BOLD;
    return FontHandle(::CreateFontIndirectW(&description));
}
}    // namespace

CAboutDlg::CAboutDlg(const CWnd* parent, std::function<SystemFacts()> readFacts)
    : CProductDlg(IDD_ABOUT, parent),
      readFacts(std::move(readFacts))
{
}

const MessageMap& CAboutDlg::GetMessageMap() const
{
    static constexpr MessageHandler handlers[] = {
        OnCommand<&CAboutDlg::ShowAgreement>(IDC_EULA),
    };
    static const MessageMap map{&CProductDlg::GetMessageMap(), handlers};
    return map;
}

BOOL CAboutDlg::OnInitDialog()
{
    const BOOL result = CProductDlg::OnInitDialog();
    MakeHeadingsBold();
    ShowSystemDetails();
    return result;
}

void CAboutDlg::ShowSystemDetails()
{
    const SystemFacts facts = readFacts();
    ::SetDlgItemTextW(GetSafeHwnd(), IDC_SYSTEM_NAME, SystemName(facts).c_str());
    ::SetDlgItemTextW(GetSafeHwnd(), IDC_SYSTEM_VERSION, SystemVersion(facts).c_str());
    ::SetDlgItemTextW(GetSafeHwnd(), IDC_SERVICE_PACK, facts.servicePack.c_str());
}

void CAboutDlg::MakeHeadingsBold()
{
    if (!headingFont)
        headingFont = BoldVariant(reinterpret_cast<HFONT>(SendMessage(WM_GETFONT)));
    // The headings have no ids of their own: their texts tell them.
    for (const wchar_t* text : {L"Product Details", L"System Details"})
    {
        const HWND heading = ::FindWindowExW(GetSafeHwnd(), nullptr, L"Static", text);
        ::SendMessageW(heading, WM_SETFONT, reinterpret_cast<WPARAM>(headingFont.get()), TRUE);
    }
}

void CAboutDlg::ShowAgreement()
{
    CMyEULADlg(this).DoModal();
}
