#pragma once

#include "quorvex/MapiError.h"

#include <windows.h>

#include <utility>

// The failure of one message that can no longer be read though its folder can: deleted meanwhile, locked away
// or damaged.
class MessageGone : public MapiError
{
public:
    explicit MessageGone(const MapiError& failure) : MapiError(failure) {}
};

// True for the failures that say this of a message.
bool MeansGone(HRESULT failure) noexcept;

// Runs what reads one message; a failure of that message alone becomes MessageGone, others stay what they
// are.
template <class Read>
auto OfOneMessage(Read&& read)
{
    try
    {
        return std::forward<Read>(read)();
    }
    catch (const MapiError& error)
    {
        if (MeansGone(error.Code()))
            throw MessageGone(error);
        throw;
    }
}
