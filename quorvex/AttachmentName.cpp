#include "quorvex/AttachmentName.h"

#include "quorvex/PropertyReader.h"

#include <mapitags.h>

#include <array>

std::wstring AttachmentFileName(IMAPIProp* attachment)
{
    constexpr std::array tags{PR_ATTACH_LONG_FILENAME_W, PR_ATTACH_FILENAME_W, PR_DISPLAY_NAME_W};
    const PropertyValues names(attachment, tags);
    for (std::size_t index = 0; index < tags.size(); ++index)
        if (std::wstring name = names.Text(index); !name.empty())
            return name;
    return {};
}
