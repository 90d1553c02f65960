#pragma once

#include <windows.h>

#include <atomic>

// How many references from outside keep this module (the program or DLL that the code is linked into) in
// memory: live COM objects, class objects given out, locks of a class object. Any thread.
class ComModule
{
public:
    static void Lock() noexcept { ++lockCount; }
    static void Unlock() noexcept { --lockCount; }
    static long GetLockCount() noexcept { return lockCount; }

private:
    static inline std::atomic<long> lockCount = 0;
};

// One such reference. As the first base or member of a COM class it ends after everything else of the object.
class ModuleReference
{
public:
    ModuleReference() noexcept { ComModule::Lock(); }
    ModuleReference(const ModuleReference&) = delete;
    ModuleReference& operator=(const ModuleReference&) = delete;
    ~ModuleReference() { ComModule::Unlock(); }
};
