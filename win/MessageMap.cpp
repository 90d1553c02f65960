#include "win/MessageMap.h"

#include <algorithm>

bool MessageHandler::Answers(const Message& message) const noexcept
{
    if (message.id < first || message.id > last)
        return false;
    if (message.id == WM_COMMAND)
        return LOWORD(message.wParam) == control && HIWORD(message.wParam) == code;
    if (message.id == WM_NOTIFY)
    {
        const auto& notice = *reinterpret_cast<const NMHDR*>(message.lParam);
        return notice.idFrom == control && notice.code == code;
    }
    return true;
}

const MessageHandler* MessageMap::Find(const Message& message) const noexcept
{
    const auto handler = std::find_if(handlers.begin(), handlers.end(),
                                      [&](const MessageHandler& line) { return line.Answers(message); });
    if (handler != handlers.end())
        return &*handler;
    return base ? base->Find(message) : nullptr;
}
