#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct MailAddress
{
    std::string name;    // the address when the mail gives no name
    std::string address;
};

// Appends every address of a field's value, groups flattened. A value in which no address can be found counts
// as one address whose name is the text.
void ReadAddresses(std::string_view value, std::vector<MailAddress>& addresses);

// The same by the MIME library alone, which reads whatever mail has; ReadAddresses goes to it for all that
// ReadPlainAddresses leaves.
void ReadAddressesByLibrary(std::string value, std::vector<MailAddress>& addresses);

// Blanks the colons behind as many as an address field may sensibly have: each begins a group, and though
// groups do not nest (RFC 5322 3.4) the library follows them into each other until its stack ends.
inline constexpr std::ptrdiff_t mostColons = 1000;
void LimitColons(std::span<char> text);
