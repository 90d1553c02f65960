#include "addin/TalmoreQuorvexOutlookDuplicateRemoverModule.h"

#include "addin/DuplicateRemover.h"
#include "addin/ResourceIds.h"

ModuleRegistration CTalmoreQuorvexOutlookDuplicateRemoverModule::GetRegistration() noexcept
{
    static constexpr ObjectEntry objects[] = {
        {&CLSID_DuplicateRemover, &CDuplicateRemover::CreateInstance, IDR_REGISTRY_CLASS, {}},
    };
    return {IDR_REGISTRY_APPID, L"{12DF1D42-4073-431E-B3F3-63AB8BDB08E0}", objects};
}
