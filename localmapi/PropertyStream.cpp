#include "localmapi/PropertyStream.h"

#include "localmapi/Arguments.h"
#include "localmapi/ComObject.h"
#include "localmapi/PropertyConversion.h"
#include "localmapi/TextConversion.h"

#include <objbase.h>

namespace
{
using Microsoft::WRL::ComPtr;

std::string BytesOf(const StoredValue& value, ULONG type)
{
    if (const auto* bytes = std::get_if<Blob>(&value))
        return {bytes->begin(), bytes->end()};
    const auto* text = std::get_if<std::string>(&value);
    if (!text)
        return {};
    const std::wstring wide = WideFromUtf8(*text);
    if (type == PT_STRING8)
        return AnsiFromWide(wide);
    return {reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t)};
}

StoredValue ValueOf(const std::string& bytes, ULONG type)
{
    if (type == PT_BINARY)
        return Blob(bytes.begin(), bytes.end());
    if (type == PT_STRING8)
        return Utf8FromWide(WideFromAnsi(bytes));
    std::wstring wide(bytes.size() / sizeof(wchar_t), L'\0');
    bytes.copy(reinterpret_cast<char*>(wide.data()), wide.size() * sizeof(wchar_t));
    return Utf8FromWide(wide);
}

ComPtr<IStream> MakeMemoryStream(const std::string& bytes)
{
    ComPtr<IStream> stream;
    ThrowIfFailed(CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    if (!bytes.empty())
        ThrowIfFailed(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
    ThrowIfFailed(stream->Seek({}, STREAM_SEEK_SET, nullptr));
    return stream;
}

std::string ReadAll(IStream& stream)
{
    STATSTG status{};
    ThrowIfFailed(stream.Stat(&status, STATFLAG_NONAME));
    ULARGE_INTEGER position{};
    ThrowIfFailed(stream.Seek({}, STREAM_SEEK_CUR, &position));
    ThrowIfFailed(stream.Seek({}, STREAM_SEEK_SET, nullptr));
    std::string bytes(static_cast<std::size_t>(status.cbSize.QuadPart), '\0');
    ULONG read = 0;
    ThrowIfFailed(stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read));
    bytes.resize(read);
    LARGE_INTEGER back{};
    back.QuadPart = static_cast<LONGLONG>(position.QuadPart);
    ThrowIfFailed(stream.Seek(back, STREAM_SEEK_SET, nullptr));
    return bytes;
}

// A memory stream that knows whose property it is. As MAPI's streams, used by one thread at a time.
class CPropertyStream final : public ComObject<IStream, IID_IStream, IID_ISequentialStream>
{
public:
    CPropertyStream(PropertyHolder& holder, IUnknown& owner, ULONG tag, bool writable, ComPtr<IStream> memory)
        : holder(holder),
          owner(&owner),
          tag(tag),
          writable(writable),
          memory(std::move(memory))
    {
    }

    STDMETHODIMP Read(void* buffer, ULONG size, ULONG* read) noexcept override
    {
        return memory->Read(buffer, size, read);
    }
    STDMETHODIMP Write(const void* buffer, ULONG size, ULONG* written) noexcept override
    {
        return Change([&] { return memory->Write(buffer, size, written); });
    }
    STDMETHODIMP Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) noexcept override
    {
        return memory->Seek(move, origin, position);
    }
    STDMETHODIMP SetSize(ULARGE_INTEGER size) noexcept override
    {
        return Change([&] { return memory->SetSize(size); });
    }
    STDMETHODIMP CopyTo(IStream* target, ULARGE_INTEGER size, ULARGE_INTEGER* read,
                        ULARGE_INTEGER* written) noexcept override
    {
        return memory->CopyTo(target, size, read, written);
    }
    STDMETHODIMP Commit(DWORD) noexcept override
    {
        return ComBoundary([&] { WriteBack(); });
    }
    STDMETHODIMP Revert() noexcept override { return MAPI_E_NO_SUPPORT; }
    STDMETHODIMP LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override
    {
        return STG_E_INVALIDFUNCTION;
    }
    STDMETHODIMP UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) noexcept override
    {
        return STG_E_INVALIDFUNCTION;
    }
    STDMETHODIMP Stat(STATSTG* status, DWORD flags) noexcept override { return memory->Stat(status, flags); }
    STDMETHODIMP Clone(IStream** clone) noexcept override { return memory->Clone(clone); }

private:
    ~CPropertyStream() override
    {
        // Nobody is left to hear of a failure: whoever wants to know calls Commit.
        ComBoundary([&] { WriteBack(); });
    }

    template <typename Action>
    HRESULT Change(Action&& action) noexcept
    {
        if (!writable)
            return STG_E_ACCESSDENIED;
        changed = true;
        return action();
    }

    void WriteBack()
    {
        if (!changed)
            return;
        holder.WriteValues({{StoredTag(tag), ValueOf(ReadAll(*memory.Get()), PROP_TYPE(tag))}});
        changed = false;
    }

    PropertyHolder& holder;    // lives as long as `owner`
    const ComPtr<IUnknown> owner;
    const ULONG tag;
    const bool writable;
    const ComPtr<IStream> memory;
    bool changed = false;
};

bool CanBeStreamed(ULONG tag)
{
    return PROP_TYPE(tag) == PT_UNICODE || PROP_TYPE(tag) == PT_STRING8 || PROP_TYPE(tag) == PT_BINARY;
}
}    // namespace

ComPtr<IStream> OpenPropertyStream(PropertyHolder& holder, IUnknown& owner, ULONG tag, ULONG flags)
{
    if (!CanBeStreamed(tag))
        throw MapiError(MAPI_E_INTERFACE_NOT_SUPPORTED);
    const std::uint32_t stored = StoredTag(tag);
    const bool writable = (flags & MAPI_MODIFY) != 0;
    if (const SCODE problem = holder.ProblemWithChanging(stored); writable && problem != S_OK)
        throw MapiError(problem);
    const StoredValue value = holder.ReadValues({&stored, 1}).front();
    if (std::holds_alternative<std::monostate>(value) && !(flags & MAPI_CREATE))
        throw MapiError(MAPI_E_NOT_FOUND);
    return MakeObject<CPropertyStream>(holder, owner, tag, writable,
                                       MakeMemoryStream(BytesOf(value, PROP_TYPE(tag))));
}
