#pragma once

#include "win/ModuleHandle.h"

#include <windows.h>

#include <mapix.h>

using HrQueryAllRowsFunction = HRESULT(STDAPICALLTYPE*)(IMAPITable* table, SPropTagArray* columns,
                                                        SRestriction* restriction, SSortOrderSet* order,
                                                        LONG rowLimit, SRowSet** rows);
using HrGetOnePropFunction = HRESULT(STDAPICALLTYPE*)(IMAPIProp* object, ULONG tag, SPropValue** value);

struct MapiPaths
{
    static constexpr int size = 260;

    wchar_t mailClient[size] = {};
    wchar_t library[size] = {};    // the file that is loaded
};

// Extended MAPI as it is found at run time, so that no more than the mail is missing where there is none.
struct MapiLibrary
{
    MapiPaths mapiPaths;
    ModuleHandle mapiModule;    // null while MAPI is not loaded; then the functions below are null as well
    LPMAPIINITIALIZE mapiInitialize = nullptr;
    LPMAPIUNINITIALIZE mapiUninitialize = nullptr;
    LPMAPILOGONEX mapiLogonEx = nullptr;
    LPMAPIFREEBUFFER mapiFreeBuffer = nullptr;
    HrQueryAllRowsFunction hrQueryAllRows = nullptr;    // null as well in a library that has none
    HrGetOnePropFunction hrGetOneProp = nullptr;        // the same
};

// What the loaded library has of these, for code that has no MapiLibrary at hand; null while none is loaded.
// Written on the thread that loads and unloads.
inline LPMAPIFREEBUFFER publishedMapiFreeBuffer = nullptr;
inline HrQueryAllRowsFunction publishedHrQueryAllRows = nullptr;
inline HrGetOnePropFunction publishedHrGetOneProp = nullptr;

// Loads and initializes MAPI into a library that is not loaded, and publishes it. False, with nothing loaded
// or published, when there is no mapi32.dll, when it lacks a function that cannot be done without, or when it
// does not initialize.
bool LoadMapiLibrary(MapiLibrary& library) noexcept;

// Withdraws what was published of a loaded library.
void WithdrawMapiFunctions() noexcept;

// Uninitializes and unloads; everything that came from the library is gone by then.
void UnloadMapiLibrary(MapiLibrary& library) noexcept;
