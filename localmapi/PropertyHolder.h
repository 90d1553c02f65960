#pragma once

#include "localmapi/StoreContext.h"
#include "localmapi/storage/StoredValue.h"

#include <windows.h>

#include <mapicode.h>
#include <mapidefs.h>
#include <wrl/client.h>

#include <cstdint>
#include <map>
#include <span>
#include <vector>

// The properties behind one MAPI object, in the store's own terms: tags in the stored form.
// Every call may throw; may be used on any thread.
class PropertyHolder
{
public:
    virtual const StoreContext& Store() const = 0;
    virtual std::vector<std::uint32_t> ListTags() = 0;    // of the properties there are
    virtual void GiveValues(std::span<const std::uint32_t> tags, const ValueReceiver& receive) = 0;
    std::vector<StoredValue> ReadValues(std::span<const std::uint32_t> tags);    // in their order

    // What stands against changing the property, as a problem's code; S_OK when nothing does.
    virtual SCODE ProblemWithChanging(std::uint32_t tag) const = 0;

    // Changes properties with which there is no problem; monostate takes a property away.
    virtual void WriteValues(const std::map<std::uint32_t, StoredValue>& values) = 0;
    virtual void Save() {}    // writes what the object's changes still wait for

    // The table that a property of type PT_OBJECT stands for; null when it stands for none.
    virtual Microsoft::WRL::ComPtr<IMAPITable> OpenObjectTable(std::uint32_t) { return nullptr; }

    // Copies what the object holds beside properties (a message: recipients and attachments) to another.
    virtual bool CanBeCopied() const { return false; }
    virtual void CopyPartsTo(IUnknown&, std::span<const std::uint32_t> /*excludedTags*/) {}

protected:
    ~PropertyHolder() = default;
};

inline std::vector<StoredValue> PropertyHolder::ReadValues(std::span<const std::uint32_t> tags)
{
    std::vector<StoredValue> values(tags.size());
    GiveValues(tags, [&](std::size_t place, const StoredValue& value) { values[place] = value; });
    return values;
}
