// Defines the interface ids that MAPI's headers only declare; no import library has them.
#include <windows.h>

#include <initguid.h>

#include <mapiguid.h>
