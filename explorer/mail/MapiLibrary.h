#pragma once

#include <windows.h>

#include <mapix.h>

#include <memory>

// The functions of Extended MAPI that are used here, looked up in the system's mapi32.dll at run time, so
// that a machine without MAPI gets a text and not a program that does not start.
struct MapiFunctions
{
    LPMAPIINITIALIZE initialize;
    LPMAPIUNINITIALIZE uninitialize;
    LPMAPILOGONEX logonEx;
    LPMAPIFREEBUFFER freeBuffer;
};

// The first call loads mapi32.dll, which then stays. Throws COleDispatchException when it, or one of the
// functions, is missing. Safe on any thread.
const MapiFunctions& Mapi();

// MAPI prepared for the calling thread, from here until its end; made and destroyed on one thread.
class MapiInitialization
{
public:
    MapiInitialization();    // throws COleDispatchException
    MapiInitialization(const MapiInitialization&) = delete;
    MapiInitialization& operator=(const MapiInitialization&) = delete;
    ~MapiInitialization();
};

struct MapiBufferDeleter
{
    void operator()(void* buffer) const noexcept { Mapi().freeBuffer(buffer); }
};

// Frees what QueryRows allocates: each row's properties, then the set.
struct MapiRowsDeleter
{
    void operator()(SRowSet* rows) const noexcept;
};

// One block of MAPI's memory, with whatever was linked to it.
template <typename Value>
using MapiBuffer = std::unique_ptr<Value, MapiBufferDeleter>;

using RowSet = std::unique_ptr<SRowSet, MapiRowsDeleter>;

// Lets a call fill an owner through an out-parameter: `table->QueryRows(10, 0, Out(rows))`.
template <typename Owner>
class Out
{
public:
    explicit Out(Owner& owner) noexcept : owner(owner) {}
    Out(const Out&) = delete;
    Out& operator=(const Out&) = delete;
    ~Out() { owner.reset(given); }

    operator typename Owner::pointer *() noexcept { return &given; }

private:
    Owner& owner;
    typename Owner::pointer given = nullptr;
};

// Throws COleDispatchException for a failure of `step`, a few words of what was done ("open the message").
// Warnings such as MAPI_W_ERRORS_RETURNED pass.
void CheckMapi(HRESULT result, const wchar_t* step);
