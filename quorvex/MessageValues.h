#pragma once

#include "quorvex/RestrictionEvaluator.h"

#include <windows.h>

#include <mapidefs.h>
#include <wrl/client.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

// The values of an opened object, read when asked for. Throws MapiError when the object fails.
class ObjectValues : public RowValues
{
public:
    explicit ObjectValues(Microsoft::WRL::ComPtr<IMAPIProp> openedObject) : object(std::move(openedObject)) {}

    std::wstring Text(ULONG tag) override;
    std::optional<std::int64_t> Number(ULONG tag) override;
    std::optional<std::vector<std::uint8_t>> Binary(ULONG tag) override;
    bool Exists(ULONG tag) override;
    bool SomeSubObjectMeets(ULONG, const Restriction&) override { return false; }    // it has no such table

private:
    Microsoft::WRL::ComPtr<IMAPIProp> object;
};

// An opened message: also has sub-objects.
class MessageValues : public ObjectValues
{
public:
    explicit MessageValues(Microsoft::WRL::ComPtr<IMessage> openedMessage)
        : ObjectValues(openedMessage),
          message(std::move(openedMessage))
    {
    }

    bool SomeSubObjectMeets(ULONG table, const Restriction& condition) override;

private:
    Microsoft::WRL::ComPtr<IMessage> message;
};

// Calls `see` for each row of the message's table PR_MESSAGE_ATTACHMENTS or PR_MESSAGE_RECIPIENTS until it
// returns true; returns whether it did. `tags` are the properties that `see` will ask for. Throws MapiError.
//
// An attachment is seen twice where its PR_DISPLAY_NAME is not what its name is read as: once with each of
// the two as its PR_DISPLAY_NAME, since either may be looked for.
bool AnySubObject(IMessage* message, ULONG table, std::span<const ULONG> tags,
                  const std::function<bool(RowValues&)>& see);
