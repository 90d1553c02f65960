#include "localmapi/MapiAttach.h"

#include "localmapi/MapiProp.h"
#include "localmapi/SubObjectTables.h"
#include "localmapi/storage/PropertyTag.h"

#include <mapiguid.h>

#include <mutex>

namespace
{
class CMapiAttach final : public MapiProp<IAttach, IID_IAttachment>
{
public:
    CMapiAttach(SharedStore store, std::shared_ptr<MessageDraft> message, std::int64_t number,
                Attachment record, bool modify)
        : store(std::move(store)),
          message(std::move(message)),
          number(number),
          modify(modify),
          change{std::move(record), std::nullopt}
    {
    }

    const StoreContext& Store() const override { return *store; }
    std::vector<std::uint32_t> ListTags() override;
    void GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive) override;
    SCODE ProblemWithChanging(std::uint32_t tag) const override;
    void WriteValues(const std::map<std::uint32_t, StoredValue>& values) override;
    void Save() override;
    bool CanBeCopied() const override { return true; }

private:
    StoredValue Data();

    const SharedStore store;
    const std::shared_ptr<MessageDraft> message;
    const std::int64_t number;
    const bool modify;
    std::mutex mutex;    // guards `change`
    AttachmentChange change;
};

std::vector<std::uint32_t> CMapiAttach::ListTags()
{
    const std::lock_guard lock(mutex);
    std::vector<std::uint32_t> tags;
    for (const auto& [tag, value] : AttachmentValues(number, change.record))
    {
        if (!std::holds_alternative<std::monostate>(value))
            tags.push_back(tag);
    }
    if (!std::holds_alternative<std::monostate>(Data()))
        tags.push_back(tag::attachDataBin);
    return tags;
}

void CMapiAttach::GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive)
{
    const std::lock_guard lock(mutex);
    const std::map<std::uint32_t, StoredValue> known = AttachmentValues(number, change.record);
    for (std::size_t i = 0; i < tags.size(); ++i)
    {
        const auto found = known.find(tags[i]);
        if (tags[i] == tag::attachDataBin)
            receive(i, Data());
        else
            receive(i, found == known.end() ? StoredValue() : found->second);
    }
}

StoredValue CMapiAttach::Data()
{
    return change.data ? StoredValue(*change.data) : message->AttachmentData(number);
}

SCODE CMapiAttach::ProblemWithChanging(std::uint32_t tag) const
{
    Attachment trial;
    if (tag == tag::attachNum || tag == tag::attachSize || tag == tag::recordKey ||
        tag == tag::attachExtension)
        return MAPI_E_COMPUTED;
    if (tag != tag::attachDataBin && !SetAttachmentValue(trial, tag, {}))
        return MAPI_E_NO_SUPPORT;
    return modify ? S_OK : MAPI_E_NO_ACCESS;
}

void CMapiAttach::WriteValues(const std::map<std::uint32_t, StoredValue>& values)
{
    const std::lock_guard lock(mutex);
    for (const auto& [tag, value] : values)
    {
        if (tag != tag::attachDataBin)
            SetAttachmentValue(change.record, tag, value);
        else if (const auto* bytes = std::get_if<Blob>(&value))
            change.data = *bytes;
        else
            change.data = Blob();
    }
    if (change.data)
        change.record.size = static_cast<std::int64_t>(change.data->size());
}

void CMapiAttach::Save()
{
    if (!modify)
        throw MapiError(MAPI_E_NO_ACCESS);
    const std::lock_guard lock(mutex);
    if (std::holds_alternative<std::monostate>(change.record.displayName))
        change.record.displayName = change.record.fileName;
    message->PutAttachment(number, change);
}
}    // namespace

Microsoft::WRL::ComPtr<IAttach> OpenAttachObject(const SharedStore& store,
                                                 std::shared_ptr<MessageDraft> message, std::int64_t number,
                                                 bool modify)
{
    std::map<std::int64_t, Attachment> attachments = message->Attachments();
    const auto found = attachments.find(number);
    if (found == attachments.end())
        throw MapiError(MAPI_E_NOT_FOUND);
    return MakeObject<CMapiAttach>(store, std::move(message), number, std::move(found->second), modify);
}

Microsoft::WRL::ComPtr<IAttach> MakeAttachObject(const SharedStore& store,
                                                 std::shared_ptr<MessageDraft> message, std::int64_t number)
{
    return MakeObject<CMapiAttach>(store, std::move(message), number, Attachment(), true);
}
