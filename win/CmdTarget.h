#pragma once

#include "win/MessageMap.h"
#include "win/Object.h"

// Whatever receives messages: windows and threads. Its message map says which of them it answers, and how.
class CCmdTarget : public CObject
{
public:
    virtual const MessageMap& GetMessageMap() const;    // an empty map
};
