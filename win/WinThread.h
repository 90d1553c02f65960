#pragma once

#include "win/CmdTarget.h"
#include "win/KernelHandle.h"

#include <windows.h>

class CWinThread;

// Makes a thread object of the described class and starts its thread; null when that fails. With
// CREATE_SUSPENDED among `flags` the thread waits for ResumeThread, so that the caller can prepare the
// object; from then on the object belongs to its thread and the pointer only tells whether it is there.
CWinThread* BeginThread(const CRuntimeClass& threadClass, int priority = THREAD_PRIORITY_NORMAL,
                        SIZE_T stackSize = 0, DWORD flags = 0, SECURITY_ATTRIBUTES* security = nullptr);

// One thread with a message queue. The object lives as long as its thread and deletes itself at its end;
// until then our module stays loaded.
class CWinThread : public CCmdTarget
{
public:
    DWORD ResumeThread() const;    // the count of suspensions before the call

protected:
    CWinThread() = default;

    // On the thread itself: the three stages of its life. Run is passed over when InitInstance returns FALSE.
    // Nothing catches what they throw but the end of the thread.
    virtual BOOL InitInstance();
    virtual int Run();             // handles messages until the quit message arrives
    virtual int ExitInstance();    // the thread's exit code: the quit message's own

private:
    friend CWinThread* BeginThread(const CRuntimeClass&, int, SIZE_T, DWORD, SECURITY_ATTRIBUTES*);

    bool CreateThread(SIZE_T stackSize, SECURITY_ATTRIBUTES* security);    // suspended
    static DWORD WINAPI Entry(void* object) noexcept;
    int Live() noexcept;

    KernelHandle thread;
    MSG last{};    // the message taken from the queue last
};
