#pragma once

#include "quorvex/MapiError.h"

#include <windows.h>

#include <utility>

// Thrown when one message can no longer be read though its folder can: deleted meanwhile, locked away or
// damaged.
struct MessageGone
{
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
            throw MessageGone();
        throw;
    }
}
