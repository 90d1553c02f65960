#include "win/CmdTarget.h"

const MessageMap& CCmdTarget::GetMessageMap() const
{
    static constexpr MessageMap empty{nullptr, {}};
    return empty;
}
