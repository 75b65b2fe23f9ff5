// Reading what another program, or this one, offers by drag or clipboard.
#include <cstring>

#include <ole2.h>
#include <shellapi.h>
#include <shlobj.h>

#include "platform/Error.h"
#include "platform/win32/DataObject.h"
#include "platform/win32/ExchangeFormats.h"
#include "platform/win32/Late.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

std::string FromCodePage(std::string_view bytes) {
    const auto length = static_cast<int>(bytes.size());
    std::wstring wide(bytes.size(), L'\0');
    wide.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, wide.data(), length)));
    return FromWide(wide);
}

void ReadText(IDataObject& data, ExchangeData& result) {
    if (const Medium text(data, Wanted(CF_UNICODETEXT)); text) {
        const auto bytes = text.Bytes();
        const auto* wide = reinterpret_cast<const wchar_t*>(bytes.data());
        result.hasText = true;
        result.text = FromWide({wide, wcsnlen(wide, bytes.size() / sizeof *wide)});
    } else if (const Medium narrow(data, Wanted(CF_TEXT)); narrow) {
        const auto bytes = narrow.Bytes();
        result.hasText = true;
        result.text = FromCodePage(bytes.substr(0, strnlen(bytes.data(), bytes.size())));
    }
}

// False when there is no list.
bool ReadFiles(IDataObject& data, std::vector<std::string>& result) {
    const Medium list(data, Wanted(CF_HDROP));
    if (!list || list.Bytes().size() < sizeof(DROPFILES)) return false;
    const auto files = static_cast<HDROP>(list.Get().hGlobal);
    const UINT count = DragQueryFileW(files, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring path(DragQueryFileW(files, i, nullptr, 0) + 1, L'\0');
        path.resize(DragQueryFileW(files, i, path.data(), static_cast<UINT>(path.size())));
        result.push_back(FromWide(path));
    }
    return true;
}

// Our own drag copies its documents when they are asked for: not before they are dropped.
void OfferFiles(IDataObject& data, ExchangeData& result) {
    auto wanted = Wanted(CF_HDROP);
    result.hasFiles = data.QueryGetData(&wanted) == S_OK;
    if (!result.hasFiles) return;
    result.makeFiles = [source = ComPtr<IDataObject>(&data)] {
        std::vector<std::string> files;
        try {
            ReadFiles(*source, files);
        } catch (const std::exception&) { // not the clipboard: nobody holds it open
        }
        return files;
    };
}

[[noreturn]] void Refused(HRESULT result) {
    throw Error(static_cast<std::int32_t>(result),
                "The program that offers the file does not hand it over: " + HresultText(result));
}

void Demand(HRESULT result) {
    if (FAILED(result)) Refused(result);
}

std::string ReadStream(IStream& stream) {
    LARGE_INTEGER start{};
    stream.Seek(start, STREAM_SEEK_SET, nullptr); // some hand it over at its end
    std::string bytes;
    char part[65536];
    for (;;) {
        ULONG read = 0;
        Demand(stream.Read(part, sizeof part, &read));
        if (read == 0) return bytes;
        bytes.append(part, read);
    }
}

// A mail comes as a storage: copied into one in memory, its bytes are the saved mail's.
std::string ReadStorage(IStorage& storage) {
    ComPtr<ILockBytes> memory;
    ComPtr<IStorage> copy;
    Demand(CreateILockBytesOnHGlobal(nullptr, TRUE, memory.Put()));
    Demand(StgCreateDocfileOnILockBytes(
        memory.Get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0, copy.Put()));
    Demand(storage.CopyTo(0, nullptr, nullptr, copy.Get()));
    Demand(copy->Commit(STGC_DEFAULT));
    Demand(memory->Flush());
    STATSTG facts{};
    Demand(memory->Stat(&facts, STATFLAG_NONAME));
    HGLOBAL block = nullptr;
    Demand(GetHGlobalFromILockBytes(memory.Get(), &block));
    const auto* bytes = static_cast<const char*>(GlobalLock(block));
    if (!bytes) Refused(E_OUTOFMEMORY);
    std::string result(bytes, static_cast<std::size_t>(facts.cbSize.QuadPart));
    GlobalUnlock(block);
    return result;
}

// `size` is what the descriptor tells; a block of memory may be larger than its content.
std::string ReadContents(IDataObject& data, LONG index, std::uint64_t size) {
    constexpr DWORD ways[] = {TYMED_ISTREAM | TYMED_HGLOBAL, TYMED_ISTORAGE};
    for (const DWORD media : ways) {
        const Medium medium(data, Wanted(Formats().contents, index, media));
        if (!medium) continue;
        const auto& held = medium.Get();
        if (held.tymed == TYMED_ISTREAM && held.pstm) return ReadStream(*held.pstm);
        if (held.tymed == TYMED_ISTORAGE && held.pstg) return ReadStorage(*held.pstg);
        if (held.tymed == TYMED_HGLOBAL)
            return std::string(medium.Bytes().substr(0, size ? static_cast<std::size_t>(size)
                                                             : std::string_view::npos));
    }
    Refused(DV_E_FORMATETC);
}

std::string WithoutFolders(const std::string& name) {
    return name.substr(name.find_last_of("\\/:") + 1);
}

template <class Group>
void ReadDescriptors(IDataObject& data, CLIPFORMAT format, ExchangeData& result) {
    const Medium medium(data, Wanted(format));
    const auto bytes = medium.Bytes();
    if (!medium || bytes.size() < sizeof(UINT)) return;
    const auto& group = *reinterpret_cast<const Group*>(bytes.data());
    const auto room = (bytes.size() - sizeof(UINT)) / sizeof group.fgd[0];
    for (UINT i = 0; i < group.cItems && i < room; ++i) {
        const auto& file = group.fgd[i];
        if ((file.dwFlags & FD_ATTRIBUTES) && (file.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            continue; // its files follow with their own names
        std::string name;
        if constexpr (sizeof file.cFileName[0] == sizeof(wchar_t))
            name = FromWide({file.cFileName, wcsnlen(file.cFileName, MAX_PATH)});
        else
            name = FromCodePage({file.cFileName, strnlen(file.cFileName, MAX_PATH)});
        const std::uint64_t size =
            file.dwFlags & FD_FILESIZE
                ? static_cast<std::uint64_t>(file.nFileSizeHigh) << 32 | file.nFileSizeLow
                : 0;
        const ComPtr<IDataObject> source(&data);
        result.virtualFiles.push_back({WithoutFolders(name), [source, i, size] {
                                           return ReadContents(*source, static_cast<LONG>(i), size);
                                       }});
    }
}

} // namespace

ExchangeData ReadExchange(IDataObject& data) {
    ExchangeData result;
    if (const Medium own(data, Wanted(Formats().own)); own) result.own = own.Bytes();
    if (result.own == ownDrag)
        OfferFiles(data, result);
    else
        result.hasFiles = ReadFiles(data, result.files);
    ReadText(data, result);
    ReadDescriptors<FILEGROUPDESCRIPTORW>(data, Formats().descriptorsWide, result);
    if (result.virtualFiles.empty())
        ReadDescriptors<FILEGROUPDESCRIPTORA>(data, Formats().descriptorsNarrow, result);
    return result;
}

} // namespace kavidex::platform::win32
