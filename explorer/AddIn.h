#pragma once

#include "explorer/office/OutlookObjects.h"

#include "contracts/Extensibility.h"

#include <windows.h>

#include <wrl/client.h>

#include <string>
#include <vector>

enum class AddInState
{
    notLoaded,
    loaded,
    failed    // it could not be made or refused the connection; its result says why
};

// What the registry says of one add-in.
struct AddInEntry
{
    std::wstring progId;
    std::wstring friendlyName;    // the ProgID when it has none
    bool loadsAtStartup = false;
};

// The add-ins registered for the current user and for the machine, those of the user first; each ProgID once.
std::vector<AddInEntry> ReadAddInEntries();

// One add-in and the host's connection with it. Whatever it fails with or throws ends here. Used on the
// window's thread.
class AddIn
{
public:
    AddIn(AddInEntry entry, OwnerNumber number) noexcept : entry(std::move(entry)), number(number) {}

    const AddInEntry& GetEntry() const noexcept { return entry; }
    AddInState GetState() const noexcept { return state; }
    HRESULT GetResult() const noexcept { return result; }    // of the last loading or unloading

    void Load(CApplication& application, ext_ConnectMode mode);
    void TellStartupComplete();
    void TellBeginShutdown();
    // Disconnects and lets it go; what it has put on the bars goes as well.
    void Unload(CApplication& application, ext_DisconnectMode mode);

private:
    HRESULT Connect(CApplication& application, ext_ConnectMode mode);

    AddInEntry entry;
    OwnerNumber number;
    AddInState state = AddInState::notLoaded;
    HRESULT result = S_OK;
    Microsoft::WRL::ComPtr<_IDTExtensibility2> extension;
};
