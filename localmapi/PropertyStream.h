#pragma once

#include "localmapi/PropertyHolder.h"

#include <windows.h>

#include <objidl.h>
#include <wrl/client.h>

// A stream over a text or binary property, in the form of the tag's type: UTF-16 for PT_UNICODE, the ANSI
// code page for PT_STRING8, without a terminator. It keeps `owner` alive. With MAPI_MODIFY it can be written:
// what was written becomes the property's value by Commit, at the latest when the stream is released.
// `flags`: MAPI_MODIFY, MAPI_CREATE (starts empty when there is no value yet). Throws MapiError.
Microsoft::WRL::ComPtr<IStream> OpenPropertyStream(PropertyHolder& holder, IUnknown& owner, ULONG tag,
                                                   ULONG flags);
