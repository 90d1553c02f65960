// Defines the interface ids that MAPI's headers only declare; no import library has them. The header defines
// those that are named here.
#define USES_IID_IAttachment
#define USES_IID_IMAPIContainer
#define USES_IID_IMAPIFolder
#define USES_IID_IMAPIProp
#define USES_IID_IMAPISession
#define USES_IID_IMAPITable
#define USES_IID_IMessage
#define USES_IID_IMsgStore
#define USES_PS_PUBLIC_STRINGS

#include <windows.h>

#include <initguid.h>

#include <mapiguid.h>
