#pragma once

#include "explorer/AddIn.h"

#include <cstddef>
#include <vector>

// The add-ins of this computer, loaded and unloaded with the window's object model. Used on the window's
// thread; the application outlives it.
class AddInList
{
public:
    explicit AddInList(CApplication& application) noexcept : application(application) {}

    void LoadAtStartup();    // reads the registry and connects those that ask for it
    void TellStartupComplete();
    void Shutdown();    // disconnects all of them; nothing of theirs is left in the process

    const std::vector<AddIn>& GetAddIns() const noexcept { return addIns; }
    void Load(std::size_t place);
    void Unload(std::size_t place);

private:
    CApplication& application;
    std::vector<AddIn> addIns;
};
