#include "localmapi/Profile.h"

#include "localmapi/TextConversion.h"
#include "localmapi/storage/StoreError.h"
#include "localmapi/storage/StoreFile.h"

#include <algorithm>

namespace
{
std::string TextSetting(StoreFile& file, const std::string& name, const std::string& fallback)
{
    const StoredValue value = file.ReadSetting(name);
    const auto* const text = std::get_if<std::string>(&value);
    return text ? *text : fallback;
}
}    // namespace

StoreDescription DescribeStore(const std::wstring& storePath)
{
    StoreDescription description{providerUid, "Local Mail", "LocalMapi"};
    try
    {
        const std::shared_ptr<StoreFile> file = StoreFile::Open(Utf8FromWide(storePath));
        description.displayName = TextSetting(*file, "display_name", description.displayName);
        description.serviceName = TextSetting(*file, "service_name", description.serviceName);
        const Blob uid = file->ReadUid();
        if (uid.size() == description.uid.size())
            std::ranges::copy(uid, description.uid.begin());
    }
    catch (const StoreError&)
    {
        // The profile names the store all the same; opening it is what tells the user why it cannot be had.
    }
    return description;
}
