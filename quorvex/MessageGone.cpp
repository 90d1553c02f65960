#include "quorvex/MessageGone.h"

#include <mapicode.h>

bool MeansGone(HRESULT failure) noexcept
{
    switch (failure)
    {
    case MAPI_E_NOT_FOUND:
    case MAPI_E_OBJECT_DELETED:
    case MAPI_E_NO_ACCESS:
    case MAPI_E_CORRUPT_DATA:
    case MAPI_E_INVALID_ENTRYID:
    case MAPI_E_UNKNOWN_ENTRYID:
        return true;
    default:
        return false;
    }
}
