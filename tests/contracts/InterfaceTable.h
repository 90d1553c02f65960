#pragma once

#include <string>
#include <vector>

// One function as Office's published type libraries have it.
struct InterfaceSlot
{
    int slot;     // QueryInterface is 0
    char kind;    // 'g' and 'p' get and put a property, 'm' is a method
    std::wstring name;
    long id;
};

// One interface: what it derives from and the functions it adds.
struct InterfaceTable
{
    const wchar_t* library;    // the compiled type library's file
    const wchar_t* name;
    const wchar_t* iid;
    int firstSlot;
    std::vector<InterfaceSlot> slots;
};

const std::vector<InterfaceTable>& PublishedInterfaces();
