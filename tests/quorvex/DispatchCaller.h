#pragma once

#include "tests/quorvex/Automation.h"

#include <windows.h>

#include <oaidl.h>
#include <wrl/client.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

using Microsoft::WRL::ComPtr;

// Which object an automation object is, as far as its client knows by the way it came to it.
enum class ObjectKind
{
    session,
    storeCollection,
    store,
    folder,
    folderCollection,
    itemCollection,
    itemTable,
    tableFilter,
    restriction,
    mailItem,
    recipientCollection,
    recipient,
    attachmentCollection,
    attachment,
    count
};

// An argument as a call has it, well formed or not; _variant_t refuses to hold what is not.
class RawVariant
{
public:
    RawVariant(const VARIANT& value) noexcept : value(value) {}    // takes it over
    RawVariant(_variant_t given) noexcept : value(given.Detach()) {}
    RawVariant(RawVariant&& other) noexcept : value(other.value) { other.value.vt = VT_EMPTY; }
    RawVariant(const RawVariant&) = delete;
    RawVariant& operator=(const RawVariant&) = delete;
    ~RawVariant() { VariantClear(&value); }

    const VARIANT& Get() const noexcept { return value; }

private:
    VARIANT value;
};

// Calls the server's objects in ways that no careful client would, from one seed: any id in any way with any
// arguments, every other time nearly right so that the calls get somewhere. Every answer is looked at.
class DispatchCaller
{
public:
    DispatchCaller(std::uint32_t seed, ComPtr<IDispatch> session);

    // Makes this many calls; what the answers have against them is said by gtest.
    void Call(int calls);

    int DeletedForGood() const { return deletedForGood; }
    int Copied() const { return copied; }
    int Succeeded() const { return succeeded; }

private:
    struct Known
    {
        ObjectKind kind;
        ComPtr<IDispatch> object;
    };
    struct Operation;
    struct Request;

    static const std::vector<Operation>& OperationsOf(ObjectKind kind);

    int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine); }
    bool OneIn(int count) { return Below(count) == 0; }

    void CallOnce();
    Request ReasonableRequest(const Known& target);
    Request WildRequest();
    RawVariant ArgumentFor(char type);
    RawVariant AnyArgument();
    RawVariant AnyArray();
    _variant_t EntryIdText();
    std::wstring AnyText();
    long AnyNumber();
    ComPtr<IDispatch> AnyObject() { return objects[Below(static_cast<int>(objects.size()))].object; }
    void Keep(ObjectKind kind, const _variant_t& result);

    std::mt19937 engine;
    std::vector<Known> objects;    // the first is the session
    std::vector<std::wstring> entryIds;
    int deletedForGood = 0;
    int copied = 0;
    int succeeded = 0;
};
