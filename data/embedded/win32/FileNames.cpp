#include "data/embedded/FileNames.h"

#include <windows.h>

#include "data/Error.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

std::wstring Wide(std::string_view path) {
    const std::u16string text = platform::ToUtf16(path);
    return std::wstring(text.begin(), text.end());
}

// The file's place on its volume; all zero when it cannot be opened.
BY_HANDLE_FILE_INFORMATION PlaceOf(std::string_view path) {
    BY_HANDLE_FILE_INFORMATION place = {};
    const HANDLE file =
        CreateFileW(Wide(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return place;
    if (!GetFileInformationByHandle(file, &place)) place = {};
    CloseHandle(file);
    return place;
}

[[noreturn]] void Fail(std::string_view path, const char* what) {
    const DWORD code = GetLastError();
    throw Error(errors::unspecified,
                "The file '" + std::string(path) + "' cannot be " + what + " (system error " +
                    std::to_string(code) + ").",
                "EmbeddedDatabase");
}

} // namespace

std::string NativeName(std::string_view path) {
    const std::string name(path);
    return name.substr(0, 5) == "file:" || name.substr(0, 1) == ":" ? ".\\" + name : name;
}

std::optional<std::uint64_t> FileSize(std::string_view path) {
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(Wide(path).c_str(), GetFileExInfoStandard, &data))
        return std::nullopt;
    return (static_cast<std::uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

std::string FirstBytes(std::string_view path, std::size_t count) {
    const HANDLE file = CreateFileW(Wide(path).c_str(), GENERIC_READ,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) Fail(path, "opened");
    std::string bytes(count, '\0');
    DWORD got = 0;
    const BOOL read = ReadFile(file, bytes.data(), static_cast<DWORD>(count), &got, nullptr);
    CloseHandle(file);
    if (!read) Fail(path, "read");
    bytes.resize(got);
    return bytes;
}

void RemoveFile(std::string_view path) noexcept { DeleteFileW(Wide(path).c_str()); }

bool SameFile(std::string_view a, std::string_view b) {
    const BY_HANDLE_FILE_INFORMATION one = PlaceOf(a), other = PlaceOf(b);
    return one.nNumberOfLinks > 0 && one.dwVolumeSerialNumber == other.dwVolumeSerialNumber &&
           one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

std::string TemporaryBeside(std::string_view path) {
    static unsigned count = 0;
    return std::string(path) + "." + std::to_string(GetCurrentProcessId()) + "-" +
           std::to_string(++count) + ".tmp";
}

bool RenameFile(std::string_view from, std::string_view to, bool replace) {
    const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0);
    if (MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), flags)) return true;
    const DWORD code = GetLastError();
    if (!replace && (code == ERROR_ALREADY_EXISTS || code == ERROR_FILE_EXISTS)) return false;
    SetLastError(code);
    Fail(to, replace ? "replaced" : "made");
}

} // namespace kavidex::data::embedded
