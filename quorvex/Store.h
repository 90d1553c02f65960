#pragma once

#include "quorvex/DispatchObject.h"
#include "quorvex/SessionContext.h"

#include <memory>
#include <string>

// The message stores of the session's profile.
class CStoreCollection final : public CDispatchObject
{
public:
    explicit CStoreCollection(std::shared_ptr<SessionContext> session);

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    ComPtr<IDispatch> GetDefaultStore();

    const std::shared_ptr<SessionContext> session;
};

// The profile's default message store.
class CStore final : public CDispatchObject
{
public:
    explicit CStore(std::shared_ptr<SessionContext> session);

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    std::wstring GetEntryId();
    ComPtr<IDispatch> GetRootFolder();    // the top of the folders that a user sees, else the root of all

    const std::shared_ptr<SessionContext> session;
    const ComPtr<IMsgStore> store;
};
