// File handles, and a file in the making under a temporary name beside its target.
#pragma once

#include <string>
#include <string_view>

#include <windows.h>

namespace kavidex::platform::win32 {

class FileHandle {
public:
    explicit FileHandle(HANDLE handle) : lclHandle(handle) {}
    ~FileHandle() { Close(); }
    FileHandle(FileHandle&& other) noexcept : lclHandle(other.lclHandle) {
        other.lclHandle = INVALID_HANDLE_VALUE;
    }
    FileHandle& operator=(FileHandle&&) = delete;

    explicit operator bool() const { return lclHandle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return lclHandle; }
    void Close() {
        if (*this) CloseHandle(lclHandle);
        lclHandle = INVALID_HANDLE_VALUE;
    }

private:
    HANDLE lclHandle;
};

// Gone unless it is put in place. The calls return 0 or a GetLastError number.
class NewFile {
public:
    explicit NewFile(std::wstring target);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    DWORD Error() const { return lclError; } // of the making
    HANDLE Handle() const { return lclFile.Get(); }
    // Flushes, closes, gives it its attributes, renames.
    DWORD PutInPlace(bool failIfExists, DWORD attributes);

private:
    std::wstring lclTarget, lclTemporary;
    FileHandle lclFile;
    DWORD lclError = 0;
};

DWORD WriteFully(HANDLE file, std::string_view bytes);

// The path as wide calls take it at any length; empty for one that no call could take.
std::wstring WidePath(std::string_view path);

} // namespace kavidex::platform::win32
