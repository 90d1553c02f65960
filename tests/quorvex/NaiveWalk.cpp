#include "tests/quorvex/NaiveWalk.h"

#include "tests/quorvex/FakeMapi.h"

#include <windows.h>

#include <mapidefs.h>
#include <mapitags.h>

#include <optional>
#include <set>
#include <string>

namespace
{
std::wstring TextOf(const fake::Properties& properties, ULONG tag)
{
    const fake::Value* value = fake::Find(properties, tag);
    return value ? std::get<std::wstring>(*value) : std::wstring();
}

std::optional<std::int64_t> NumberOf(const fake::Properties& properties, ULONG tag)
{
    const fake::Value* value = fake::Find(properties, tag);
    if (!value)
        return std::nullopt;
    if (const auto* time = std::get_if<fake::FileTime>(value))
        return time->ticks;
    if (const auto* flag = std::get_if<bool>(value))
        return *flag ? 1 : 0;
    return std::get<std::int32_t>(*value);
}

template <class T>
bool Holds(const T& found, ULONG relop, const T& wanted)
{
    return (relop == RELOP_LT && found < wanted) || (relop == RELOP_LE && found <= wanted) ||
           (relop == RELOP_GT && found > wanted) || (relop == RELOP_GE && found >= wanted) ||
           (relop == RELOP_EQ && found == wanted) || (relop == RELOP_NE && found != wanted);
}

bool SameCharacter(wchar_t left, wchar_t right, bool ignoresCase)
{
    return left == right || (ignoresCase && CompareStringOrdinal(&left, 1, &right, 1, TRUE) == CSTR_EQUAL);
}

bool StandsAt(const std::wstring& text, std::size_t place, const std::wstring& part, bool ignoresCase)
{
    if (text.size() - place < part.size())
        return false;
    for (std::size_t index = 0; index < part.size(); ++index)
        if (!SameCharacter(text[place + index], part[index], ignoresCase))
            return false;
    return true;
}

bool MeetsContent(const std::wstring& text, ULONG level, const std::wstring& wanted)
{
    const bool ignoresCase = (level & FL_IGNORECASE) != 0;
    if ((level & 0xFFFF) == FL_FULLSTRING)
        return text.size() == wanted.size() && StandsAt(text, 0, wanted, ignoresCase);
    if ((level & 0xFFFF) == FL_PREFIX)
        return StandsAt(text, 0, wanted, ignoresCase);
    for (std::size_t place = 0; place <= text.size(); ++place)
        if (StandsAt(text, place, wanted, ignoresCase))
            return true;
    return false;
}

bool MeetsProperty(const fake::Properties& properties, const Restriction& restriction)
{
    if (const auto* text = std::get_if<SharedText>(&restriction.value))
        return Holds(TextOf(properties, restriction.tag), restriction.relop, **text);
    if (const auto* number = std::get_if<std::int64_t>(&restriction.value))
    {
        const auto found = NumberOf(properties, restriction.tag);
        return found && Holds(*found, restriction.relop, *number);
    }
    const fake::Value* found = fake::Find(properties, restriction.tag);
    return found && Holds(std::get<fake::Bytes>(*found), restriction.relop,
                          std::get<std::vector<std::uint8_t>>(restriction.value));
}

// An attachment as it is, and as it is when its display name is its file name.
std::vector<fake::Properties> Faces(const fake::Properties& attachment)
{
    std::wstring fileName = TextOf(attachment, PR_ATTACH_LONG_FILENAME_W);
    if (fileName.empty())
        fileName = TextOf(attachment, PR_ATTACH_FILENAME_W);
    if (fileName.empty())
        return {attachment};
    fake::Properties named = attachment;
    named[PR_DISPLAY_NAME_W] = fileName;
    if (TextOf(attachment, PR_DISPLAY_NAME_W).empty())
        return {named};
    return {attachment, named};
}

bool Meets(const fake::Message& message, const fake::Properties& properties, const Restriction& restriction);

bool SomeMeets(const fake::Message& message, const std::vector<fake::Properties>& objects,
               const Restriction& inner)
{
    for (const fake::Properties& object : objects)
        if (Meets(message, object, inner))
            return true;
    return false;
}

bool MeetsSub(const fake::Message& message, const Restriction& restriction)
{
    std::vector<fake::Properties> objects = message.recipients;
    if (restriction.tag == PR_MESSAGE_ATTACHMENTS)
    {
        objects.clear();
        for (const fake::Properties& attachment : message.attachments)
            for (const fake::Properties& face : Faces(attachment))
                objects.push_back(face);
    }
    for (const Restriction& inner : restriction.children)
        if (!SomeMeets(message, objects, inner))
            return false;
    return true;
}

bool Meets(const fake::Message& message, const fake::Properties& properties, const Restriction& restriction)
{
    std::set<bool> met;    // whether some children are met, and whether some are not
    if (restriction.kind != RES_SUBRESTRICTION)
        for (const Restriction& child : restriction.children)
            met.insert(Meets(message, properties, child));
    switch (restriction.kind)
    {
    case RES_AND:
        return !met.contains(false);
    case RES_OR:
        return met.contains(true);
    case RES_NOT:
        return met.contains(false);
    case RES_PROPERTY:
        return MeetsProperty(properties, restriction);
    case RES_CONTENT:
        return MeetsContent(TextOf(properties, restriction.tag), restriction.fuzzyLevel,
                            *std::get<SharedText>(restriction.value));
    case RES_EXIST:
        return fake::Find(properties, restriction.tag) != nullptr;
    default:
        return MeetsSub(message, restriction);
    }
}
}    // namespace

std::vector<std::uint32_t> NaiveWalk(const fake::Folder& folder, const Restriction& restriction)
{
    std::vector<std::uint32_t> rows;
    for (std::uint32_t row = 0; row < folder.messages.size(); ++row)
        if (Meets(*folder.messages[row], folder.messages[row]->properties, restriction))
            rows.push_back(row);
    return rows;
}
