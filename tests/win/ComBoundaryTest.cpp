#include "win/ComBoundary.h"

#include "win/OleException.h"

#include <windows.h>

#include <comdef.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

using Microsoft::WRL::ComPtr;

namespace
{
class Boundary : public testing::Test
{
protected:
    ~Boundary() override { ::SetErrorInfo(0, nullptr); }

    // This thread's error information, taken off it; empty when there is none.
    static ComPtr<IErrorInfo> TakeInfo()
    {
        ComPtr<IErrorInfo> info;
        ::GetErrorInfo(0, info.GetAddressOf());
        return info;
    }
    static std::wstring TakeDescription()
    {
        const ComPtr<IErrorInfo> info = TakeInfo();
        _bstr_t text;
        if (info)
            info->GetDescription(text.GetAddress());
        return text.length() ? std::wstring(text) : std::wstring();
    }
};

TEST_F(Boundary, GivesBackTheBodysResult)
{
    EXPECT_EQ(ComBoundary([] { return S_FALSE; }), S_FALSE);
    EXPECT_EQ(ComBoundary([] {}), S_OK);
}

TEST_F(Boundary, KeepsTheCodeOfAFailureAndDescribesIt)
{
    EXPECT_EQ(ComBoundary([] { throw COleException(E_ACCESSDENIED); }), E_ACCESSDENIED);
    EXPECT_FALSE(TakeDescription().empty());
}

TEST_F(Boundary, KeepsTheFailingObjectsOwnWords)
{
    EXPECT_EQ(ComBoundary([] { throw COleDispatchException(MK_E_NOOBJECT, 0, L"no such store", L"stores"); }),
              MK_E_NOOBJECT);
    EXPECT_EQ(TakeDescription(), L"no such store");
}

TEST_F(Boundary, HandsOnTheErrorInformationOfACall)
{
    ComPtr<ICreateErrorInfo> created;
    ::CreateErrorInfo(created.GetAddressOf());
    created->SetDescription(const_cast<wchar_t*>(L"the bar is full"));
    ComPtr<IErrorInfo> info;
    created.As(&info);

    EXPECT_EQ(ComBoundary([&] { throw _com_error(DISP_E_OVERFLOW, info.Get(), true); }), DISP_E_OVERFLOW);

    EXPECT_EQ(TakeDescription(), L"the bar is full");
    created.Reset();
    info->AddRef();
    EXPECT_EQ(info->Release(), 1u) << "nothing else holds it";
}

TEST_F(Boundary, NamesLackOfMemoryAndTheUnforeseen)
{
    EXPECT_EQ(ComBoundary([] { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(ComBoundary([] { throw std::logic_error("unforeseen"); }), E_UNEXPECTED);
    EXPECT_EQ(ComBoundary([] { throw 5; }), E_UNEXPECTED);
}

TEST_F(Boundary, LeavesNoWordsOfAnEarlierFailure)
{
    ComBoundary([] { throw COleDispatchException(MK_E_NOOBJECT, 0, L"an earlier one", L"stores"); });

    ComBoundary([] { throw std::bad_alloc(); });

    EXPECT_FALSE(TakeInfo());
}
}    // namespace
