#include "import/MailAddresses.h"

#include "import/GlibOwners.h"
#include "import/MailHeaders.h"
#include "import/PlainAddresses.h"
#include "import/Text.h"

#include <gmime/gmime.h>

namespace
{
MailAddress FromMailbox(InternetAddress* mailbox)
{
    const char* const name = internet_address_get_name(mailbox);
    const char* const address = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(mailbox));
    MailAddress found{RepairUtf8(Trimmed(name ? name : "")), RepairUtf8(Trimmed(address ? address : ""))};
    if (found.name.empty())
        found.name = found.address;
    return found;
}

// A group may be written into a group, against the rules, as deep as the parser lets it.
void Flatten(InternetAddressList* list, std::vector<MailAddress>& addresses)
{
    const int count = internet_address_list_length(list);
    for (int index = 0; index < count; ++index)
    {
        InternetAddress* const address = internet_address_list_get_address(list, index);
        if (INTERNET_ADDRESS_IS_GROUP(address))
            Flatten(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address)), addresses);
        else if (INTERNET_ADDRESS_IS_MAILBOX(address))
            addresses.push_back(FromMailbox(address));
    }
    std::erase_if(addresses, [](const MailAddress& address) { return address.name.empty(); });
}
}    // namespace

void ReadAddresses(std::string_view value, std::vector<MailAddress>& addresses)
{
    if (!ReadPlainAddresses(value, addresses))
        ReadAddressesByLibrary(std::string(value), addresses);
}

void ReadAddressesByLibrary(std::string value, std::vector<MailAddress>& addresses)
{
    LimitColons(value);
    const GlibObject<InternetAddressList> list(internet_address_list_parse(nullptr, value.c_str()));
    const size_t before = addresses.size();
    if (list)
        Flatten(list.get(), addresses);
    const bool holdsGroup = list && internet_address_list_length(list.get()) > 0 &&
                            INTERNET_ADDRESS_IS_GROUP(internet_address_list_get_address(list.get(), 0));
    if (addresses.size() > before || holdsGroup)
        return;
    const std::string text = DecodeWords(Trimmed(value));
    if (!text.empty())
        addresses.push_back({text, text.find('@') != std::string::npos ? text : std::string()});
}

void LimitColons(std::span<char> text)
{
    std::ptrdiff_t colons = 0;
    for (char& character : text)
        if (character == ':' && ++colons > mostColons)
            character = ' ';
}
