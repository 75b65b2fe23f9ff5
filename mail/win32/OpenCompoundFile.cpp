// Compound files by the system's own storage functions.
#include <windows.h>

#include <objbase.h>

#include <algorithm>

#include "mail/CompoundFile.h"
#include "platform/Error.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Late.h"
#include "platform/win32/NewFile.h"
#include "platform/win32/Variant.h"

namespace kavidex::mail {

namespace {

using platform::win32::ComPtr;
using platform::win32::FromWide;
using platform::win32::ToWide;

constexpr DWORD readRoot = STGM_READ | STGM_SHARE_DENY_WRITE,
                readBelow = STGM_READ | STGM_SHARE_EXCLUSIVE;

class SystemStorage : public Storage {
public:
    explicit SystemStorage(ComPtr<IStorage> storage) : lclStorage(std::move(storage)) {}

    std::optional<std::string> Stream(std::string_view name, std::size_t most) override {
        ComPtr<IStream> stream;
        if (FAILED(
                lclStorage->OpenStream(ToWide(name).c_str(), nullptr, readBelow, 0, stream.Put())))
            return std::nullopt;
        STATSTG facts{};
        if (FAILED(stream->Stat(&facts, STATFLAG_NONAME))) return std::nullopt;
        std::string bytes;
        const auto size =
            static_cast<std::size_t>(std::min<ULONGLONG>(facts.cbSize.QuadPart, most));
        // In pieces: the size that a damaged file tells may be beyond any memory.
        while (bytes.size() < size) {
            constexpr std::size_t piece = 1024 * 1024;
            const std::size_t at = bytes.size();
            bytes.resize(std::min(size, at + piece));
            ULONG read = 0;
            const HRESULT result =
                stream->Read(bytes.data() + at, static_cast<ULONG>(bytes.size() - at), &read);
            if (FAILED(result) || read == 0) return std::nullopt; // part of it is gone
            bytes.resize(at + read);
        }
        return bytes;
    }

    std::unique_ptr<Storage> Folder(std::string_view name) override {
        ComPtr<IStorage> folder;
        if (FAILED(lclStorage->OpenStorage(ToWide(name).c_str(), nullptr, readBelow, nullptr, 0,
                                           folder.Put())))
            return nullptr;
        return std::make_unique<SystemStorage>(std::move(folder));
    }

    std::vector<std::string> Folders() override {
        constexpr std::size_t most = 1000000; // a damaged file may tie its list into a knot
        std::vector<std::string> names;
        ComPtr<IEnumSTATSTG> list;
        if (FAILED(lclStorage->EnumElements(0, nullptr, 0, list.Put()))) return names;
        STATSTG facts{};
        while (names.size() < most && list->Next(1, &facts, nullptr) == S_OK) {
            if (facts.type == STGTY_STORAGE) names.push_back(FromWide(facts.pwcsName));
            CoTaskMemFree(facts.pwcsName);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    ComPtr<IStorage> lclStorage;
};

} // namespace

std::unique_ptr<Storage> OpenCompoundFile(std::string_view path) {
    ComPtr<IStorage> root;
    const HRESULT result = StgOpenStorage(platform::win32::WidePath(path).c_str(), nullptr,
                                          readRoot, nullptr, 0, root.Put());
    if (FAILED(result))
        throw platform::Error(result, "Cannot read \"" + std::string(path) +
                                          "\": " + platform::win32::HresultText(result));
    return std::make_unique<SystemStorage>(std::move(root));
}

} // namespace kavidex::mail
