#include "tests/localmapi/SystemMapi.h"

#include "tests/localmapi/TemporaryStore.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
using Microsoft::WRL::ComPtr;
}

TEST(SystemMapiMemory, GivesAndTakesChainedBuffers)
{
    const SystemMapi mapi;
    void* owner = nullptr;
    void* more = nullptr;

    ASSERT_EQ(mapi.Allocate(100, &owner), S_OK);
    ASSERT_EQ(mapi.AllocateMore(100, owner, &more), S_OK);
    std::fill_n(static_cast<char*>(more), 100, 'x');

    EXPECT_EQ(mapi.Free(owner), static_cast<ULONG>(S_OK));
}

TEST(SystemMapiUtilities, GiveComsOwnAllocator)
{
    const SystemMapi mapi;

    ComPtr<IMalloc> allocator;
    *allocator.ReleaseAndGetAddressOf() =
        mapi.Find<decltype(MAPIGetDefaultMalloc)>("MAPIGetDefaultMalloc@0")();

    ASSERT_TRUE(allocator);
    void* const memory = allocator->Alloc(10);
    EXPECT_NE(memory, nullptr);
    allocator->Free(memory);
}

TEST(SystemMapiUtilities, OpenFilesByTheirNamesInTheCodePage)
{
    const SystemMapi mapi;
    const TemporaryStore store;
    std::string path = store.Path();
    ComPtr<IStream> stream;
    char read[17] = {};

    const HRESULT result = mapi.Find<decltype(OpenStreamOnFile)>("OpenStreamOnFile@24")(
        nullptr, nullptr, STGM_READ, reinterpret_cast<LPTSTR>(path.data()), nullptr, &stream);

    ASSERT_EQ(result, S_OK);
    ASSERT_EQ(stream->Read(read, 15, nullptr), S_OK);
    EXPECT_STREQ(read, "SQLite format 3");
}

namespace
{
// Counts its references; nobody ever notifies it.
class UnusedSink : public IMAPIAdviseSink
{
public:
    STDMETHODIMP QueryInterface(REFIID, void**) noexcept override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
    STDMETHODIMP_(ULONG) Release() noexcept override { return --references; }
    STDMETHODIMP_(ULONG) OnNotify(ULONG, LPNOTIFICATION) noexcept override { return 0; }

    ULONG references = 1;
};
}    // namespace

TEST(SystemMapiUtilities, WrapASinkForTheThread)
{
    const SystemMapi mapi;
    UnusedSink sink;
    IMAPIAdviseSink* wrapped = nullptr;

    const HRESULT result =
        mapi.Find<decltype(HrThisThreadAdviseSink)>("HrThisThreadAdviseSink@8")(&sink, &wrapped);

    ASSERT_EQ(result, S_OK);
    ASSERT_NE(wrapped, nullptr);
    EXPECT_EQ(sink.references, 2u);
    wrapped->Release();
    EXPECT_EQ(sink.references, 1u);
}
