#include "localmapi/MsgStore.h"

#include "localmapi/storage/StoreError.h"

// Until the store's objects are linked in.
Microsoft::WRL::ComPtr<IMsgStore> OpenStoreObject(const std::wstring&)
{
    throw StoreError(StoreFault::Other, "The mail store cannot be opened.");
}
