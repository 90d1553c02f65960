#include "quorvex/CollectionIndex.h"

#include "quorvex/DispatchArguments.h"
#include "quorvex/MapiError.h"

std::size_t PlaceOf(const VARIANT& index, std::size_t count)
{
    const long number = LongOf(index);
    if (number < 1 || static_cast<std::size_t>(number) > count)
        throw MapiError(DISP_E_BADINDEX,
                        L"The collection has no element with this index; indexes start at 1.");
    return static_cast<std::size_t>(number) - 1;
}
