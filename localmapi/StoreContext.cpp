#include "localmapi/StoreContext.h"

#include <algorithm>

namespace
{
// The service whose tables show short-term entry ids.
constexpr const char* shortTermService = "MSEMS";
}    // namespace

SharedStore OpenStoreContext(const std::string& path)
{
    auto context = std::make_shared<StoreContext>();
    context->file = StoreFile::Open(path);
    const Blob uid = context->file->ReadUid();
    std::copy(uid.begin(), uid.end(), context->uid.begin());
    if (const StoredValue name = context->file->ReadSetting("display_name");
        std::holds_alternative<std::string>(name))
        context->displayName = std::get<std::string>(name);
    context->hasShortTermIds =
        context->file->ReadSetting("service_name") == StoredValue(std::string(shortTermService));
    return context;
}
