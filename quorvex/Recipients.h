#pragma once

#include "quorvex/DispatchObject.h"

#include <windows.h>

#include <mapidefs.h>

#include <string>
#include <vector>

struct RecipientRow
{
    long type;    // MAPI_TO 1, MAPI_CC 2, MAPI_BCC 3
    std::wstring name;
};

// The recipients that a message had when they were asked for, in its recipient table's order, counted from 1.
class CRecipientCollection final : public CDispatchObject
{
public:
    explicit CRecipientCollection(IMessage* message);    // borrowed for the call

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    long GetCount();
    ComPtr<IDispatch> GetItem(const VARIANT& index);

    std::vector<RecipientRow> rows;
};

class CRecipient final : public CDispatchObject
{
public:
    explicit CRecipient(RecipientRow row) : row(std::move(row)) {}

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    long GetType();
    std::wstring GetName();

    const RecipientRow row;
};
