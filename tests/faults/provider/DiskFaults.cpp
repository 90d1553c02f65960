// A virtual file system for SQLite that hands everything on to the system's, but for what is to fail by plan.
#include "tests/faults/provider/DiskFaults.h"

#include "tests/faults/provider/FaultState.h"

#include <windows.h>

#include <sqlite3.h>

#include <cstring>
#include <mutex>
#include <new>

namespace
{
// The system's file lies behind it in the memory that SQLite gives.
struct File
{
    sqlite3_file base;
    sqlite3_file* Real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

File& Of(sqlite3_file* file)
{
    return *reinterpret_cast<File*>(file);
}

const sqlite3_io_methods& Real(sqlite3_file* file)
{
    return *Of(file).Real()->pMethods;
}

sqlite3_vfs& System(sqlite3_vfs* own)
{
    return *static_cast<sqlite3_vfs*>(own->pAppData);
}

bool IsOneOf(const char* name, std::initializer_list<const char*> names)
{
    for (const char* known : names)
        if (std::strcmp(name, known) == 0)
            return true;
    return false;
}

bool IsOfOperation(FaultKind kind, const char* name)
{
    switch (kind)
    {
    case FaultKind::failing:
    case FaultKind::death:
        return true;
    case FaultKind::diskFull:
    case FaultKind::torn:
        return IsOneOf(name, {"write"});
    case FaultKind::locked:
        return IsOneOf(name, {"lock", "shared lock"});
    default:
        return false;
    }
}

// What the operation answers by plan instead of being done; SQLITE_OK when it is to be done.
int Fault(const char* name, int failure)
{
    const auto fault = Faults().Count(FaultPlace::diskOperation, name, IsOfOperation);
    if (!fault)
        return SQLITE_OK;
    switch (fault->kind)
    {
    case FaultKind::diskFull:
        return SQLITE_FULL;
    case FaultKind::locked:
        return SQLITE_BUSY;
    case FaultKind::death:
        TerminateProcess(GetCurrentProcess(), deathExitCode);
        return failure;
    default:
        return failure;
    }
}

int Close(sqlite3_file* file)
{
    const int result = Real(file).xClose(Of(file).Real());
    file->pMethods = nullptr;
    Faults().FileClosed();
    return result;
}

int Read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 place)
{
    const int fault = Fault("read", SQLITE_IOERR_READ);
    return fault ? fault : Real(file).xRead(Of(file).Real(), bytes, size, place);
}

int Write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 place)
{
    const auto fault = Faults().Count(FaultPlace::diskOperation, "write", IsOfOperation);
    if (!fault)
        return Real(file).xWrite(Of(file).Real(), bytes, size, place);
    if (fault->kind == FaultKind::torn || fault->kind == FaultKind::death)
        Real(file).xWrite(Of(file).Real(), bytes, size / 2, place);
    if (fault->kind == FaultKind::death)
        TerminateProcess(GetCurrentProcess(), deathExitCode);
    return fault->kind == FaultKind::diskFull ? SQLITE_FULL : SQLITE_IOERR_WRITE;
}

int Truncate(sqlite3_file* file, sqlite3_int64 size)
{
    const int fault = Fault("truncate", SQLITE_IOERR_TRUNCATE);
    return fault ? fault : Real(file).xTruncate(Of(file).Real(), size);
}

// Processes end in these tests, machines do not: waiting for the disk would only take its time.
int Sync(sqlite3_file*, int)
{
    return Fault("sync", SQLITE_IOERR_FSYNC);
}

int FileSize(sqlite3_file* file, sqlite3_int64* size)
{
    const int fault = Fault("size", SQLITE_IOERR_FSTAT);
    return fault ? fault : Real(file).xFileSize(Of(file).Real(), size);
}

int Lock(sqlite3_file* file, int level)
{
    const int fault = Fault("lock", SQLITE_IOERR_LOCK);
    return fault ? fault : Real(file).xLock(Of(file).Real(), level);
}

int Unlock(sqlite3_file* file, int level)
{
    return Real(file).xUnlock(Of(file).Real(), level);
}

int CheckReservedLock(sqlite3_file* file, int* reserved)
{
    return Real(file).xCheckReservedLock(Of(file).Real(), reserved);
}

int FileControl(sqlite3_file* file, int operation, void* argument)
{
    return Real(file).xFileControl(Of(file).Real(), operation, argument);
}

int SectorSize(sqlite3_file* file)
{
    return Real(file).xSectorSize(Of(file).Real());
}

int DeviceCharacteristics(sqlite3_file* file)
{
    return Real(file).xDeviceCharacteristics(Of(file).Real());
}

int ShmMap(sqlite3_file* file, int region, int size, int extend, void volatile** memory)
{
    const int fault = Fault("shared memory", SQLITE_IOERR_SHMMAP);
    return fault ? fault : Real(file).xShmMap(Of(file).Real(), region, size, extend, memory);
}

int ShmLock(sqlite3_file* file, int offset, int count, int flags)
{
    // Giving a lock back is nothing that a system refuses.
    const int fault = flags & SQLITE_SHM_LOCK ? Fault("shared lock", SQLITE_IOERR_SHMLOCK) : SQLITE_OK;
    return fault ? fault : Real(file).xShmLock(Of(file).Real(), offset, count, flags);
}

void ShmBarrier(sqlite3_file* file)
{
    Real(file).xShmBarrier(Of(file).Real());
}

int ShmUnmap(sqlite3_file* file, int deleteFlag)
{
    return Real(file).xShmUnmap(Of(file).Real(), deleteFlag);
}

// Version 2: no memory-mapped reading, which no operation would be told of.
constexpr sqlite3_io_methods methods{.iVersion = 2,
                                     .xClose = Close,
                                     .xRead = Read,
                                     .xWrite = Write,
                                     .xTruncate = Truncate,
                                     .xSync = Sync,
                                     .xFileSize = FileSize,
                                     .xLock = Lock,
                                     .xUnlock = Unlock,
                                     .xCheckReservedLock = CheckReservedLock,
                                     .xFileControl = FileControl,
                                     .xSectorSize = SectorSize,
                                     .xDeviceCharacteristics = DeviceCharacteristics,
                                     .xShmMap = ShmMap,
                                     .xShmLock = ShmLock,
                                     .xShmBarrier = ShmBarrier,
                                     .xShmUnmap = ShmUnmap,
                                     .xFetch = nullptr,
                                     .xUnfetch = nullptr};

int Open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* outFlags)
{
    file->pMethods = nullptr;
    if (const int fault = Fault("open", SQLITE_CANTOPEN))
        return fault;
    const int result = System(vfs).xOpen(&System(vfs), name, Of(file).Real(), flags, outFlags);
    if (result != SQLITE_OK)
        return result;
    file->pMethods = &methods;
    Faults().FileOpened();
    return SQLITE_OK;
}

int Delete(sqlite3_vfs* vfs, const char* name, int syncFolder)
{
    const int fault = Fault("delete", SQLITE_IOERR_DELETE);
    return fault ? fault : System(vfs).xDelete(&System(vfs), name, syncFolder);
}

int Access(sqlite3_vfs* vfs, const char* name, int flags, int* result)
{
    const int fault = Fault("look for", SQLITE_IOERR_ACCESS);
    return fault ? fault : System(vfs).xAccess(&System(vfs), name, flags, result);
}

int FullPathname(sqlite3_vfs* vfs, const char* name, int size, char* path)
{
    return System(vfs).xFullPathname(&System(vfs), name, size, path);
}

// Whoever waits for a lock counts the time it has slept. For one that is only said to be held it need not
// pass.
int Sleep(sqlite3_vfs* vfs, int microseconds)
{
    return Faults().Report().faults > 0 ? microseconds : System(vfs).xSleep(&System(vfs), microseconds);
}
}    // namespace

void StandBeforeTheDisk()
{
    static sqlite3_vfs own = []
    {
        sqlite3_vfs* const system = sqlite3_vfs_find(nullptr);
        sqlite3_vfs vfs = *system;
        vfs.pNext = nullptr;
        vfs.pAppData = system;
        vfs.zName = "faulty";
        vfs.szOsFile = static_cast<int>(sizeof(File)) + system->szOsFile;
        vfs.xOpen = Open;
        vfs.xDelete = Delete;
        vfs.xAccess = Access;
        vfs.xFullPathname = FullPathname;
        vfs.xSleep = Sleep;
        return vfs;
    }();
    static const int registered = sqlite3_vfs_register(&own, 1);
    static_cast<void>(registered);
}
