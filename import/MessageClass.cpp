#include "import/MessageClass.h"

#include "import/AttachmentReader.h"
#include "import/Text.h"

#include <string_view>

namespace
{
bool IsType(GMimeObject* object, const char* type, const char* subtype)
{
    return g_mime_content_type_is_type(g_mime_object_get_content_type(object), type, subtype);
}

std::string Parameter(GMimeObject* object, const char* name)
{
    const char* const value = g_mime_object_get_content_type_parameter(object, name);
    return value ? AsciiLower(Trimmed(value)) : std::string();
}

// The first part of this type in the tree; messages inside the message are not searched.
GMimeObject* FindPart(GMimeObject* object, const char* type, const char* subtype)
{
    if (IsType(object, type, subtype))
        return object;
    if (!GMIME_IS_MULTIPART(object))
        return nullptr;
    GMimeMultipart* const multipart = GMIME_MULTIPART(object);
    const int count = g_mime_multipart_get_count(multipart);
    for (int index = 0; index < count; ++index)
        if (GMimeObject* const found = FindPart(g_mime_multipart_get_part(multipart, index), type, subtype))
            return found;
    return nullptr;
}

std::string LowerContent(GMimeObject* part)
{
    return part && GMIME_IS_PART(part) ? AsciiLower(DecodedContent(GMIME_PART(part))) : std::string();
}

// The word behind `field:` at the start of a line, up to a blank, ';' or the line's end.
std::string FieldValue(const std::string& lower, const std::string& field)
{
    for (size_t at = lower.find(field); at != std::string::npos; at = lower.find(field, at + 1))
    {
        if (at > 0 && lower[at - 1] != '\n')
            continue;
        const std::string_view rest = Trimmed(std::string_view(lower).substr(at + field.size(), 200));
        return std::string(rest.substr(0, rest.find_first_of(" ;\t\r\n")));
    }
    return {};
}

std::string ReportClass(GMimeObject* report)
{
    const std::string status = LowerContent(FindPart(report, "message", "delivery-status"));
    const std::string disposition = LowerContent(FindPart(report, "message", "disposition-notification"));
    if (!disposition.empty())
        return disposition.find("displayed") != std::string::npos ? "REPORT.IPM.Note.IPNRN"
                                                                  : "REPORT.IPM.Note.IPNNRN";
    if (status.empty() && Parameter(report, "report-type") != "delivery-status")
        return "IPM.Note";
    const std::string action = FieldValue(status, "action:");
    return action == "delivered" || action == "relayed" ? "REPORT.IPM.Note.DR" : "REPORT.IPM.Note.NDR";
}

std::string ReplyClass(const std::string& calendar)
{
    if (calendar.find("partstat=declined") != std::string::npos)
        return "IPM.Schedule.Meeting.Resp.Neg";
    if (calendar.find("partstat=tentative") != std::string::npos)
        return "IPM.Schedule.Meeting.Resp.Tent";
    return "IPM.Schedule.Meeting.Resp.Pos";
}

std::string CalendarClass(GMimeObject* part)
{
    const std::string calendar = LowerContent(part);
    std::string method = Parameter(part, "method");
    if (method.empty())
        method = FieldValue(calendar, "method:");
    if (method == "request")
        return "IPM.Schedule.Meeting.Request";
    if (method == "cancel")
        return "IPM.Schedule.Meeting.Canceled";
    return method == "reply" ? ReplyClass(calendar) : "IPM.Note";
}

bool IsSmimeSignature(const std::string& protocol)
{
    return protocol == "application/pkcs7-signature" || protocol == "application/x-pkcs7-signature";
}
}    // namespace

std::string MessageClassOf(GMimeObject* top)
{
    if (IsType(top, "multipart", "report"))
        return ReportClass(top);
    if (IsType(top, "multipart", "signed") && IsSmimeSignature(Parameter(top, "protocol")))
        return "IPM.Note.SMIME.MultipartSigned";
    if (IsType(top, "application", "pkcs7-mime") || IsType(top, "application", "x-pkcs7-mime"))
        return "IPM.Note.SMIME";
    GMimeObject* const calendar = FindPart(top, "text", "calendar");
    return calendar ? CalendarClass(calendar) : "IPM.Note";
}
