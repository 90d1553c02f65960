#include "win/Object.h"

const CRuntimeClass& CObject::GetRuntimeClass() const
{
    static constexpr CRuntimeClass description{"CObject", nullptr};
    return description;
}
