#pragma once

#include <windows.h>

#include <mapix.h>

// What the tests' mapi32.dll hands its callers on to: the functions of the program that loaded it. The
// library itself keeps nothing, so that what is counted outlives it.
struct TestMapi32
{
    HRESULT (*initialize)(void* options);
    void (*uninitialize)();
    HRESULT (*logonEx)(const wchar_t* profile, const wchar_t* password, ULONG flags, IMAPISession** session);
    ULONG (*freeBuffer)(void* buffer);
    HRESULT (*queryAllRows)(IMAPITable* table, SPropTagArray* columns, SRowSet** rows);
    HRESULT (*getOneProp)(IMAPIProp* object, ULONG tag, SPropValue** value);
};

// The program exports a function of this type under this name.
using GetTestMapi32Function = const TestMapi32*();
inline constexpr char getTestMapi32Name[] = "GetTestMapi32";
