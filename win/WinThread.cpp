#include "win/WinThread.h"

#include "win/ThisModule.h"

#include <memory>

namespace
{
constexpr int abandonedExitCode = -1;
}

CWinThread* BeginThread(const CRuntimeClass& threadClass, int priority, SIZE_T stackSize, DWORD flags,
                        SECURITY_ATTRIBUTES* security)
{
    std::unique_ptr<CObject> object(threadClass.createObject ? threadClass.createObject() : nullptr);
    auto* thread = dynamic_cast<CWinThread*>(object.get());
    if (!thread || !thread->CreateThread(stackSize, security))
        return nullptr;
    object.release();    // the thread's own from here on
    ::SetThreadPriority(thread->thread.get(), priority);
    if (!(flags & CREATE_SUSPENDED))
        thread->ResumeThread();
    return thread;
}

bool CWinThread::CreateThread(SIZE_T stackSize, SECURITY_ATTRIBUTES* security)
{
    ModuleHandle module = ReferenceToThisModule();
    thread.reset(::CreateThread(security, stackSize, &CWinThread::Entry, this, CREATE_SUSPENDED, nullptr));
    if (!thread)
        return false;
    module.release();    // given back by Entry
    return true;
}

DWORD CWinThread::ResumeThread() const
{
    return ::ResumeThread(thread.get());
}

DWORD WINAPI CWinThread::Entry(void* object) noexcept
{
    const int exitCode = static_cast<CWinThread*>(object)->Live();
    // No code of the module runs after its reference is gone.
    ::FreeLibraryAndExitThread(ThisModule(), static_cast<DWORD>(exitCode));
}

int CWinThread::Live() noexcept
{
    const std::unique_ptr<CWinThread> self(this);
    try
    {
        return InitInstance() ? Run() : ExitInstance();
    }
    catch (...)
    {
        // The classes above this one tell the user what they can; an exception must not leave the thread.
        return abandonedExitCode;
    }
}

BOOL CWinThread::InitInstance()
{
    return FALSE;
}

int CWinThread::Run()
{
    while (::GetMessageW(&last, nullptr, 0, 0) > 0)
    {
        const Message message{last.message, last.wParam, last.lParam};
        const MessageHandler* handler = last.hwnd ? nullptr : GetMessageMap().Find(message);
        if (handler)
        {
            handler->call(*this, message);
            continue;
        }
        ::TranslateMessage(&last);
        ::DispatchMessageW(&last);
    }
    return ExitInstance();
}

int CWinThread::ExitInstance()
{
    return static_cast<int>(last.wParam);
}
