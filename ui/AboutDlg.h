#pragma once

#include "ui/ProductDlg.h"
#include "ui/SystemFacts.h"
#include "win/GdiObject.h"

#include <functional>

// Shows the product's name and version and those of the operating system; opens the licence agreement.
class CAboutDlg : public CProductDlg
{
public:
    // `readFacts` is asked each time the dialog is shown.
    explicit CAboutDlg(const CWnd* parent = nullptr,
                       std::function<SystemFacts()> readFacts = &ReadSystemFacts);

    const MessageMap& GetMessageMap() const override;

protected:
    BOOL OnInitDialog() override;

private:
    void ShowSystemDetails();
    void MakeHeadingsBold();
    void ShowAgreement();

    std::function<SystemFacts()> readFacts;
    FontHandle headingFont;
};
