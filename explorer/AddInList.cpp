#include "explorer/AddInList.h"

#include <windows.h>

void AddInList::LoadAtStartup()
{
    OwnerNumber number = 0;
    for (AddInEntry& entry : ReadAddInEntries())
        addIns.emplace_back(std::move(entry), ++number);
    for (AddIn& addIn : addIns)
        if (addIn.GetEntry().loadsAtStartup)
            addIn.Load(application, ext_cm_Startup);
}

void AddInList::TellStartupComplete()
{
    for (AddIn& addIn : addIns)
        addIn.TellStartupComplete();
}

void AddInList::Shutdown()
{
    for (AddIn& addIn : addIns)
        addIn.TellBeginShutdown();
    for (AddIn& addIn : addIns)
        addIn.Unload(application, ext_dm_HostShutdown);
}

void AddInList::Load(std::size_t place)
{
    addIns.at(place).Load(application, ext_cm_AfterStartup);
}

void AddInList::Unload(std::size_t place)
{
    addIns.at(place).Unload(application, ext_dm_UserClosed);
}
