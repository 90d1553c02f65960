#pragma once

#include "quorvex/DispatchObject.h"

#include <windows.h>

#include <mapidefs.h>

#include <string>
#include <vector>

// The attachments that a message had when they were asked for, in its attachment table's order, counted
// from 1.
class CAttachmentCollection final : public CDispatchObject
{
public:
    explicit CAttachmentCollection(IMessage* message);    // borrowed for the call

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    long GetCount();
    ComPtr<IDispatch> GetItem(const VARIANT& index);

    std::vector<std::wstring> fileNames;
};

class CAttachment final : public CDispatchObject
{
public:
    explicit CAttachment(std::wstring fileName) : fileName(std::move(fileName)) {}

protected:
    std::span<const Operation> Operations() const noexcept override;

private:
    std::wstring GetFileName();

    const std::wstring fileName;
};
