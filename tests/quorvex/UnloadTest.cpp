// When the module may go out of its process.
#include "quorvex/ClassFactory.h"

#include <windows.h>

#include <objbase.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using Microsoft::WRL::ComPtr;

namespace
{
constexpr wchar_t copyName[] = L"tqodr-unused-server.dll";

// A copy of the server, under a name of its own: a module of this process in which nothing has happened yet.
class UnusedServer : public testing::Test
{
protected:
    UnusedServer()
    {
        const wchar_t* dist = ::_wgetenv(L"TQODR_DIST");
        std::filesystem::copy_file(std::filesystem::path(std::wstring(L"Z:") + (dist ? dist : L".")) /
                                       L"QuorvexDll.dll",
                                   copy, std::filesystem::copy_options::overwrite_existing);
        module = ::LoadLibraryW(copy.c_str());
    }
    ~UnusedServer() override
    {
        std::error_code ignored;
        std::filesystem::remove(copy, ignored);
    }

    template <class Signature>
    Signature* Export(const char* name) const
    {
        return reinterpret_cast<Signature*>(reinterpret_cast<void (*)()>(::GetProcAddress(module, name)));
    }

    ComPtr<IDispatch> MakeSession() const
    {
        ComPtr<IClassFactory> factory;
        ComPtr<IDispatch> session;
        if (SUCCEEDED(Export<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject")(
                sessionClass, IID_IClassFactory, reinterpret_cast<void**>(factory.GetAddressOf()))))
            factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(session.GetAddressOf()));
        return session;
    }

    const std::filesystem::path copy = std::filesystem::temp_directory_path() / copyName;
    HMODULE module = nullptr;
};

TEST_F(UnusedServer, LeavesTheProcessAfterASessionThatNobodyUsed)
{
    ASSERT_TRUE(module);
    ComPtr<IDispatch> session = MakeSession();
    ASSERT_TRUE(session);
    const auto canUnload = Export<HRESULT WINAPI()>("DllCanUnloadNow");
    EXPECT_EQ(canUnload(), S_FALSE);

    session.Reset();

    EXPECT_EQ(canUnload(), S_OK);
    ::FreeLibrary(module);
    EXPECT_FALSE(::GetModuleHandleW(copyName));
}
}    // namespace
