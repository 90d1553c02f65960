#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

using Blob = std::vector<std::uint8_t>;

// One property value as the store file keeps it.
// monostate: the property is absent (MAPI: PT_ERROR, MAPI_E_NOT_FOUND).
// int64: PT_LONG, PT_BOOLEAN, PT_I8, PT_SYSTIME (FILETIME). double: PT_DOUBLE, PT_APPTIME.
// string: UTF-8 text of PT_UNICODE. Blob: PT_BINARY, PT_CLSID.
using StoredValue = std::variant<std::monostate, std::int64_t, double, std::string, Blob>;

// Takes one of the values that were asked for: its place among them, from 0, and the value, which need not be
// there any more after the call. Texts are long, and who asks mostly wants them in another form.
using ValueReceiver = std::function<void(std::size_t place, const StoredValue& value)>;
