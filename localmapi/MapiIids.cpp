// The interface ids of Extended MAPI that this library answers to, defined once for all of it.
#include <windows.h>

#include <initguid.h>

#define USES_IID_IMAPISession
#define USES_IID_IMAPITable
#define USES_IID_IMsgServiceAdmin
#define USES_IID_IMAPIProp
#define USES_IID_IMsgStore
#define USES_IID_IMAPIContainer
#define USES_IID_IMAPIFolder
#define USES_IID_IMessage
#define USES_IID_IAttachment
#define USES_IID_IMAPIStatus
#define USES_IID_IMAPIAdviseSink
#define USES_PS_MAPI
#define USES_PS_PUBLIC_STRINGS
#include <mapiguid.h>
