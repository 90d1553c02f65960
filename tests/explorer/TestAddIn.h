#pragma once

#include "contracts/Extensibility.h"
#include "contracts/Office.h"
#include "contracts/Outlook.h"

#include <windows.h>

#include <wrl/client.h>

#include <functional>
#include <string>
#include <vector>

// What an add-in of the tests is to do and what it has seen. It outlives the add-in.
struct AddInScript
{
    HRESULT connectResult = S_OK;    // returned once everything has been made
    bool throws = false;             // leaves OnConnection by a C++ exception
    bool cancels = false;            // asks the host to do nothing more about a click
    bool pastesFace = true;
    int hostCommand = 0;    // a control of the host's own that it listens to as well
    std::function<void()> onClick = [] {};

    std::vector<std::string> calls = {};
    std::vector<std::wstring> clicked = {};    // the captions of the controls
    int alive = 0;                             // objects of the add-in
};

// An add-in registered for the current user from here until its end, which lives in this process. It makes a
// bar with one button, "Bar Button", and an entry of the fifth menu, "Menu Entry", both with a picture.
class RegisteredAddIn
{
public:
    explicit RegisteredAddIn(AddInScript& script, DWORD loadBehavior = 3);
    RegisteredAddIn(const RegisteredAddIn&) = delete;
    RegisteredAddIn& operator=(const RegisteredAddIn&) = delete;
    ~RegisteredAddIn();

    static constexpr wchar_t progId[] = L"TalmorexTests.AddIn";
    static constexpr wchar_t friendlyName[] = L"Add-in of the tests";

private:
    DWORD cookie = 0;
};
