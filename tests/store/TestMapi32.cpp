// The tests' mapi32.dll. Which of the functions it exports, and under which names, is told by the .def file
// of each build.
#include "tests/store/TestMapi32.h"

namespace
{
const TestMapi32& Program()
{
    const auto get = reinterpret_cast<GetTestMapi32Function*>(
        reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(nullptr), getTestMapi32Name)));
    return *get();
}
}    // namespace

extern "C" HRESULT STDAPICALLTYPE TestInitialize(void* options)
{
    return Program().initialize(options);
}

extern "C" void STDAPICALLTYPE TestUninitialize()
{
    Program().uninitialize();
}

extern "C" HRESULT STDAPICALLTYPE TestLogonEx(ULONG_PTR, LPTSTR profile, LPTSTR password, ULONG flags,
                                              IMAPISession** session)
{
    return Program().logonEx(profile, password, flags, session);
}

extern "C" ULONG STDAPICALLTYPE TestFreeBuffer(void* buffer)
{
    return Program().freeBuffer(buffer);
}

extern "C" HRESULT STDAPICALLTYPE TestQueryAllRows(IMAPITable* table, SPropTagArray* columns, SRestriction*,
                                                   SSortOrderSet*, LONG, SRowSet** rows)
{
    return Program().queryAllRows(table, columns, rows);
}

extern "C" HRESULT STDAPICALLTYPE TestGetOneProp(IMAPIProp* object, ULONG tag, SPropValue** value)
{
    return Program().getOneProp(object, tag, value);
}

// What stands under a name that is not to be used.
extern "C" HRESULT STDAPICALLTYPE TestRefuseRows(IMAPITable*, SPropTagArray*, SRestriction*, SSortOrderSet*,
                                                 LONG, SRowSet**)
{
    return MAPI_E_CALL_FAILED;
}

extern "C" HRESULT STDAPICALLTYPE TestRefuseProp(IMAPIProp*, ULONG, SPropValue**)
{
    return MAPI_E_CALL_FAILED;
}

BOOL WINAPI DllMain(HINSTANCE, DWORD, void*)
{
#ifdef TEST_MAPI32_REFUSES_TO_LOAD
    return FALSE;
#else
    return TRUE;
#endif
}
