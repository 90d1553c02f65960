#pragma once

// Resources of the library itself. The first type library describes our own class; the second stands in for
// the host's where that one is not registered.
#define IDR_TYPELIB_OWN 1
#define IDR_TYPELIB_EXTENSIBILITY 2
#define IDR_REGISTRY_APPID 101
#define IDR_REGISTRY_CLASS 103
