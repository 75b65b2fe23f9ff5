#include "platform/win32/NewFile.h"

#include <algorithm>
#include <vector>

#include <objbase.h>

#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

// Short, so that a target of the longest allowed name has room for it.
std::wstring TemporaryName() {
    GUID guid{};
    wchar_t name[40] = L"{0}";
    if (SUCCEEDED(CoCreateGuid(&guid))) StringFromGUID2(guid, name, 40);
    return L"kavidex-" + std::wstring(name).substr(1, 18) + L".tmp";
}

DWORD Rename(const std::wstring& from, const std::wstring& to, DWORD how) {
    return MoveFileExW(from.c_str(), to.c_str(), how) ? 0 : GetLastError();
}

// A file that somebody has open is not replaced by a rename, however he shares it; it can be put
// aside, where it stays until it is closed. 0 or a GetLastError number; the target is there then
// as well.
DWORD ReplaceOpen(const std::wstring& temporary, const std::wstring& target, DWORD how) {
    const std::wstring aside = FolderPart(target) + TemporaryName();
    if (!ReplaceFileW(target.c_str(), temporary.c_str(), aside.c_str(),
                      REPLACEFILE_IGNORE_MERGE_ERRORS | REPLACEFILE_IGNORE_ACL_ERRORS, nullptr,
                      nullptr)) {
        const DWORD failed = GetLastError();
        if (GetFileAttributesW(aside.c_str()) == INVALID_FILE_ATTRIBUTES) return failed;
        // Half done: the old one is aside, and the new one did not take its name.
        if (Rename(temporary, target, how) != 0) {
            Rename(aside, target, how);
            return failed;
        }
    }
    SetFileAttributesW(aside.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(aside.c_str());
    return 0;
}

} // namespace

NewFile::NewFile(const std::wstring& folder)
    : lclTemporary(folder + TemporaryName()),
      lclFile(CreateFileW(lclTemporary.c_str(), GENERIC_WRITE | GENERIC_READ, 0, nullptr,
                          CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)) {
    if (!lclFile) {
        lclError = GetLastError();
        lclTemporary.clear();
    }
}

NewFile::~NewFile() {
    lclFile.Close();
    if (lclTemporary.empty()) return;
    SetFileAttributesW(lclTemporary.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(lclTemporary.c_str());
}

DWORD NewFile::Finish(DWORD attributes, bool flush) {
    if (flush && !FlushFileBuffers(lclFile.Get())) return GetLastError();
    lclFile.Close();
    constexpr DWORD kept = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    if (attributes & kept) SetFileAttributesW(lclTemporary.c_str(), attributes & kept);
    return 0;
}

DWORD NewFile::PutInPlace(const std::wstring& target, bool failIfExists, DWORD attributes,
                          bool flush) {
    if (const DWORD failed = Finish(attributes, flush)) return failed;
    const DWORD how =
        (flush ? MOVEFILE_WRITE_THROUGH : 0) | (failIfExists ? 0 : MOVEFILE_REPLACE_EXISTING);
    DWORD failed = Rename(lclTemporary, target, how);
    const bool held = failed == ERROR_ACCESS_DENIED || failed == ERROR_SHARING_VIOLATION;
    if (held && !failIfExists && ReplaceOpen(lclTemporary, target, how) == 0) failed = 0;
    if (!failed) lclTemporary.clear();
    return failed;
}

DWORD NewFile::Keep(DWORD attributes, std::wstring& name) {
    if (const DWORD failed = Finish(attributes, true)) return failed;
    name = lclTemporary.substr(FolderPart(lclTemporary).size());
    lclTemporary.clear();
    return 0;
}

std::wstring FolderPart(const std::wstring& path) {
    const auto last = path.find_last_of(L"\\/");
    return last == std::wstring::npos ? L"" : path.substr(0, last + 1);
}

DWORD WriteFully(HANDLE file, std::string_view bytes) {
    constexpr std::size_t most = 1 << 20;
    while (!bytes.empty()) {
        DWORD written = 0;
        if (!WriteFile(file, bytes.data(), static_cast<DWORD>(std::min(bytes.size(), most)),
                       &written, nullptr))
            return GetLastError();
        if (written == 0) return ERROR_HANDLE_DISK_FULL;
        bytes.remove_prefix(written);
    }
    return 0;
}

DWORD ReadFully(HANDLE file, char* room, std::size_t size, std::size_t& got) {
    constexpr std::size_t most = 1 << 20;
    for (got = 0; got < size;) {
        DWORD read = 0;
        if (!ReadFile(file, room + got, static_cast<DWORD>(std::min(size - got, most)), &read,
                      nullptr))
            return GetLastError();
        if (read == 0) break;
        got += read;
    }
    return 0;
}

std::wstring WidePath(std::string_view path) {
    if (path.empty() || path.find('\0') != std::string_view::npos) return {};
    std::wstring wide = ToWide(path);
    const DWORD needed = GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
    std::vector<wchar_t> buffer(needed + 1);
    const DWORD length = GetFullPathNameW(wide.c_str(), needed + 1, buffer.data(), nullptr);
    if (length == 0 || length > needed) return wide;
    wide.assign(buffer.data(), length);
    // Short paths stay as they are; the folder calls allow 12 characters less than MAX_PATH, and a
    // temporary name may be longer than its target.
    constexpr DWORD comfortable = MAX_PATH - 12 - 40;
    if (length <= comfortable || wide.rfind(L"\\\\?\\", 0) == 0 || wide.rfind(L"\\\\.\\", 0) == 0)
        return wide;
    return wide.rfind(L"\\\\", 0) == 0 ? L"\\\\?\\UNC\\" + wide.substr(2) : L"\\\\?\\" + wide;
}

} // namespace kavidex::platform::win32
