#pragma once

#include "store/RDOSession.h"
#include "win/ComInitialization.h"

#include <windows.h>

#include <wrl/client.h>

#include <functional>

// While it lives, whoever in this process creates a mail-store session by its program identifier gets what
// `make` returns; nothing (creation fails) when that is empty. For the thread that made it.
class ServedSession
{
public:
    using Maker = std::function<CRDOSession()>;

    explicit ServedSession(Maker make);
    ServedSession(const ServedSession&) = delete;
    ServedSession& operator=(const ServedSession&) = delete;
    ~ServedSession();

private:
    ComInitialization com;
    Microsoft::WRL::ComPtr<IClassFactory> factory;
    DWORD registration = 0;
};
