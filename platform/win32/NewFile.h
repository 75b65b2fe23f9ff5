// File handles, and a file in the making under a temporary name of its folder.
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

// Gone unless it is put in place or kept. The calls return 0 or a GetLastError number.
class NewFile {
public:
    explicit NewFile(const std::wstring& folder); // ends in a backslash, or is empty
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    DWORD Error() const { return lclError; } // of the making
    HANDLE Handle() const { return lclFile.Get(); }
    // Flushes where wanted, closes, gives it its attributes, renames within the folder.
    DWORD PutInPlace(const std::wstring& target, bool failIfExists, DWORD attributes,
                     bool flush = true);
    // Flushes, closes, gives it its attributes; it stays under its temporary name, which is handed
    // back without the folder.
    DWORD Keep(DWORD attributes, std::wstring& name);

private:
    DWORD Finish(DWORD attributes, bool flush);

    std::wstring lclTemporary;
    FileHandle lclFile;
    DWORD lclError = 0;
};

std::wstring FolderPart(const std::wstring& path); // with its backslash

DWORD WriteFully(HANDLE file, std::string_view bytes);
// Fills the room, less of it only at the file's end; 0 or a GetLastError number.
DWORD ReadFully(HANDLE file, char* room, std::size_t size, std::size_t& got);

// The path as wide calls take it at any length; empty for one that no call could take.
std::wstring WidePath(std::string_view path);

} // namespace kavidex::platform::win32
