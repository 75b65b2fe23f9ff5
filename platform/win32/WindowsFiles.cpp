#include "platform/win32/WindowsFiles.h"

#include <algorithm>
#include <memory>

#include "platform/SameBytes.h"
#include "platform/text.h"
#include "platform/win32/Failure.h"
#include "platform/win32/NewFile.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

std::wstring Checked(std::string_view path, std::string_view action) {
    std::wstring wide = WidePath(path);
    if (wide.empty()) Fail(ERROR_INVALID_NAME, action, path);
    return wide;
}

DWORD AttributesOf(std::string_view path) {
    const std::wstring wide = WidePath(path);
    return wide.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(wide.c_str());
}

bool Is(DWORD attributes, DWORD bit) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & bit) != 0;
}

void RefuseReadOnly(std::string_view path, std::string_view action) {
    constexpr DWORD protecting = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
    if (Is(AttributesOf(path), protecting)) Fail(ERROR_ACCESS_DENIED, action, path);
}

// Whoever else works with the file is not kept from it.
constexpr DWORD withAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

FileHandle OpenForReading(std::string_view path, std::string_view action, DWORD sharing = withAll) {
    FileHandle file(CreateFileW(Checked(path, action).c_str(), GENERIC_READ, sharing, nullptr,
                                OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file) Fail(GetLastError(), action, path);
    return file;
}

std::uint64_t SizeOf(HANDLE file, std::string_view path, std::string_view action) {
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(file, &size)) Fail(GetLastError(), action, path);
    return static_cast<std::uint64_t>(size.QuadPart);
}

// 0 or a GetLastError number.
DWORD CopyBytes(HANDLE from, HANDLE to) {
    constexpr std::size_t block = 256 * 1024;
    const std::unique_ptr<char[]> buffer(new char[block]);
    for (;;) {
        std::size_t got = 0;
        if (const DWORD failed = ReadFully(from, buffer.get(), block, got)) return failed;
        if (const DWORD failed = WriteFully(to, {buffer.get(), got})) return failed;
        if (got < block) return 0;
    }
}

// Writes the source's bytes and time; 0 or a GetLastError number. The copy is checked while it is
// at hand.
DWORD Fill(const NewFile& copy, const FileHandle& from, std::string_view source,
           std::string_view target, std::string_view action) {
    if (const DWORD failed = copy.Error()) return failed;
    if (const DWORD failed = CopyBytes(from.Get(), copy.Handle())) return failed;
    if (SizeOf(from.Get(), source, action) != SizeOf(copy.Handle(), target, action))
        return ERROR_WRITE_FAULT;
    FILETIME written{};
    if (GetFileTime(from.Get(), nullptr, nullptr, &written))
        SetFileTime(copy.Handle(), nullptr, nullptr, &written);
    return 0;
}

DWORD KnownAttributesOf(std::string_view path) {
    const DWORD found = AttributesOf(path);
    return found == INVALID_FILE_ATTRIBUTES ? 0 : found;
}

class WindowsReader : public FileReader {
public:
    explicit WindowsReader(std::string_view path)
        : lclFile(OpenForReading(path, "read")), lclPath(path) {}

    std::uint64_t Size() override { return SizeOf(lclFile.Get(), lclPath, "find the size of"); }
    std::size_t Read(std::uint64_t offset, void* room, std::size_t size) override {
        LARGE_INTEGER place{};
        place.QuadPart = static_cast<LONGLONG>(offset);
        std::size_t got = 0;
        if (!SetFilePointerEx(lclFile.Get(), place, nullptr, FILE_BEGIN))
            Fail(GetLastError(), "read", lclPath);
        if (const DWORD failed = ReadFully(lclFile.Get(), static_cast<char*>(room), size, got))
            Fail(failed, "read", lclPath);
        return got;
    }

private:
    FileHandle lclFile;
    std::string lclPath;
};

class WindowsWriter : public FileWriter {
public:
    explicit WindowsWriter(std::string_view path)
        : lclPath(path), lclWide(Checked(path, writing)), lclFile(FolderPart(lclWide)) {
        RefuseReadOnly(path, writing);
        if (const DWORD failed = lclFile.Error()) Fail(failed, writing, path);
    }

    void Write(std::string_view bytes) override {
        if (const DWORD failed = WriteFully(lclFile.Handle(), bytes))
            Fail(failed, writing, lclPath);
    }
    void PutInPlace(bool failIfExists, bool flush) override {
        if (const DWORD failed =
                lclFile.PutInPlace(lclWide, failIfExists, KnownAttributesOf(lclPath), flush))
            Fail(failed, writing, lclPath);
    }

private:
    static constexpr std::string_view writing = "write";
    std::string lclPath;
    std::wstring lclWide;
    NewFile lclFile;
};

struct WindowsLock : FileLock {
    explicit WindowsLock(FileHandle held) : file(std::move(held)) {}
    FileHandle file;
};

// Calls `met` with each name that matches, for as long as it answers true.
template <class Met>
void Walk(std::string_view folder, std::string_view pattern, bool folders, Met met) {
    constexpr std::string_view action = "list";
    // All names are asked for: Windows' own patterns would match short names (8.3) too.
    const std::wstring all = Checked(JoinPath(folder, "*"), action);
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW(all.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD cause = GetLastError();
        if (cause == ERROR_FILE_NOT_FOUND || cause == ERROR_PATH_NOT_FOUND) return;
        Fail(cause, action, folder);
    }
    const std::unique_ptr<void, BOOL(WINAPI*)(HANDLE)> closing(search, &FindClose);

    do {
        std::string name = FromWide(entry.cFileName);
        if (name == "." || name == ".." || !MatchesPattern(name, pattern)) continue;
        if (!folders && (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) continue;
        if (!met(name)) return;
    } while (FindNextFileW(search, &entry));
    if (const DWORD cause = GetLastError(); cause != ERROR_NO_MORE_FILES)
        Fail(cause, action, folder);
}

} // namespace

bool WindowsFiles::FileExists(std::string_view path) {
    const DWORD found = AttributesOf(path);
    return found != INVALID_FILE_ATTRIBUTES && !(found & FILE_ATTRIBUTE_DIRECTORY);
}

bool WindowsFiles::DirectoryExists(std::string_view path) {
    return Is(AttributesOf(path), FILE_ATTRIBUTE_DIRECTORY);
}

void WindowsFiles::CreateDirectories(std::string_view path) {
    constexpr std::string_view action = "create the folder";
    if (DirectoryExists(path)) return;
    const std::wstring wide = Checked(path, action);
    if (CreateDirectoryW(wide.c_str(), nullptr)) return;
    DWORD cause = GetLastError();
    if (cause == ERROR_PATH_NOT_FOUND) {
        const std::string parent = FolderOf(path.substr(0, path.find_last_not_of("\\/") + 1));
        if (parent.empty()) Fail(cause, action, path);
        CreateDirectories(parent);
        if (CreateDirectoryW(wide.c_str(), nullptr)) return;
        cause = GetLastError();
    }
    // Another process may have been quicker.
    if (cause != ERROR_ALREADY_EXISTS || !DirectoryExists(path)) Fail(cause, action, path);
}

void WindowsFiles::Copy(std::string_view source, std::string_view target, bool failIfExists) {
    constexpr std::string_view action = "copy";
    const std::wstring wide = Checked(target, action);
    FileHandle from = OpenForReading(source, action);
    if (!failIfExists) RefuseReadOnly(target, "replace");

    NewFile copy(FolderPart(wide));
    DWORD failed = Fill(copy, from, source, target, action);
    from.Close(); // the source may be the target itself
    if (!failed) failed = copy.PutInPlace(wide, failIfExists, KnownAttributesOf(source));
    if (failed) Fail(failed, action, source, target);
}

std::string WindowsFiles::CopyAside(std::string_view source, std::string_view folder, bool atRest) {
    constexpr std::string_view action = "copy";
    const std::wstring wide = Checked(JoinPath(folder, "*"), action);
    const FileHandle from =
        OpenForReading(source, action, atRest ? FILE_SHARE_READ | FILE_SHARE_DELETE : withAll);
    NewFile copy(FolderPart(wide));
    std::wstring name;
    DWORD failed = Fill(copy, from, source, folder, action);
    if (!failed) failed = copy.Keep(KnownAttributesOf(source), name);
    if (failed) Fail(failed, action, source, folder);
    return JoinPath(folder, FromWide(name));
}

void WindowsFiles::Rename(std::string_view from, std::string_view to) {
    constexpr std::string_view action = "rename";
    if (!MoveFileExW(Checked(from, action).c_str(), Checked(to, action).c_str(),
                     MOVEFILE_WRITE_THROUGH))
        Fail(GetLastError(), action, from, to);
}

void WindowsFiles::Remove(std::string_view path) {
    constexpr std::string_view action = "delete";
    RefuseReadOnly(path, action);
    if (!DeleteFileW(Checked(path, action).c_str())) Fail(GetLastError(), action, path);
}

std::uint64_t WindowsFiles::Size(std::string_view path) {
    constexpr std::string_view action = "find the size of";
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(Checked(path, action).c_str(), GetFileExInfoStandard, &data))
        Fail(GetLastError(), action, path);
    return static_cast<std::uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
}

bool WindowsFiles::SameBytes(std::string_view path, std::string_view other) {
    constexpr std::string_view action = "compare";
    const auto reader = [&](const FileHandle& file, std::string_view name) {
        return [&file, name](char* room, std::size_t size) {
            std::size_t got = 0;
            if (const DWORD failed = ReadFully(file.Get(), room, size, got))
                Fail(failed, action, name);
            return got;
        };
    };
    const FileHandle file = OpenForReading(path, action), otherFile = OpenForReading(other, action);
    return SizeOf(file.Get(), path, action) == SizeOf(otherFile.Get(), other, action) &&
           platform::SameBytes(reader(file, path), reader(otherFile, other));
}

bool WindowsFiles::SameFile(std::string_view path, std::string_view other) {
    constexpr std::string_view action = "compare";
    const auto identity = [&](std::string_view name) {
        BY_HANDLE_FILE_INFORMATION info{};
        const FileHandle file = OpenForReading(name, action);
        if (!GetFileInformationByHandle(file.Get(), &info)) Fail(GetLastError(), action, name);
        return info;
    };
    const auto info = identity(path), otherInfo = identity(other);
    if (info.nFileSizeHigh != otherInfo.nFileSizeHigh ||
        info.nFileSizeLow != otherInfo.nFileSizeLow)
        return false;
    const bool known = info.nFileIndexHigh != 0 || info.nFileIndexLow != 0;
    if (known && info.dwVolumeSerialNumber == otherInfo.dwVolumeSerialNumber)
        return info.nFileIndexHigh == otherInfo.nFileIndexHigh &&
               info.nFileIndexLow == otherInfo.nFileIndexLow;
    // Two shares of one disk may tell two serial numbers, and some servers none at all; but a file
    // that is held alone cannot be opened under its other name.
    const FileHandle alone = OpenForReading(path, action, 0);
    const FileHandle second(CreateFileW(Checked(other, action).c_str(), GENERIC_READ, withAll,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
    if (second) return false;
    if (const DWORD cause = GetLastError(); cause != ERROR_SHARING_VIOLATION)
        Fail(cause, action, other);
    return true;
}

std::uint32_t WindowsFiles::Attributes(std::string_view path) {
    constexpr std::string_view action = "find the attributes of";
    const DWORD found = GetFileAttributesW(Checked(path, action).c_str());
    if (found == INVALID_FILE_ATTRIBUTES) Fail(GetLastError(), action, path);
    return found;
}

void WindowsFiles::SetAttributes(std::string_view path, std::uint32_t bits) {
    constexpr std::string_view action = "change the attributes of";
    if (!SetFileAttributesW(Checked(path, action).c_str(), bits ? bits : FILE_ATTRIBUTE_NORMAL))
        Fail(GetLastError(), action, path);
}

std::string WindowsFiles::ReadAll(std::string_view path) {
    constexpr std::string_view action = "read";
    const FileHandle file = OpenForReading(path, action);
    std::string bytes(static_cast<std::size_t>(SizeOf(file.Get(), path, action)), '\0');
    std::size_t filled = 0;
    // The size is a first guess: the file may grow or shrink meanwhile.
    for (;;) {
        if (filled == bytes.size()) bytes.resize(filled + 4096);
        std::size_t got = 0;
        if (const DWORD failed =
                ReadFully(file.Get(), bytes.data() + filled, bytes.size() - filled, got))
            Fail(failed, action, path);
        if (got == 0) break;
        filled += got;
    }
    bytes.resize(filled);
    return bytes;
}

void WindowsFiles::WriteAll(std::string_view path, std::string_view bytes) {
    WindowsWriter file(path);
    file.Write(bytes);
    file.PutInPlace(false, true);
}

std::unique_ptr<FileReader> WindowsFiles::Reader(std::string_view path) {
    return std::make_unique<WindowsReader>(path);
}

std::unique_ptr<FileWriter> WindowsFiles::Writer(std::string_view path) {
    return std::make_unique<WindowsWriter>(path);
}

std::vector<std::string> WindowsFiles::List(std::string_view folder, std::string_view pattern,
                                            bool folders) {
    std::vector<std::string> names;
    Walk(folder, pattern, folders, [&](std::string& name) {
        names.push_back(std::move(name));
        return true;
    });
    SortNames(names);
    return names;
}

bool WindowsFiles::Holds(std::string_view folder, std::string_view pattern) {
    bool found = false;
    Walk(folder, pattern, false, [&](const std::string&) {
        found = true;
        return false;
    });
    return found;
}

std::unique_ptr<FileLock> WindowsFiles::Lock(std::string_view path) {
    constexpr std::string_view action = "lock";
    FileHandle file(CreateFileW(
        Checked(path, action).c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
        FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (file) return std::make_unique<WindowsLock>(std::move(file));
    if (const DWORD cause = GetLastError(); cause != ERROR_SHARING_VIOLATION)
        Fail(cause, action, path);
    return nullptr;
}

std::string WindowsFiles::TemporaryFolder() {
    wchar_t path[MAX_PATH + 2];
    const DWORD length = GetTempPathW(MAX_PATH + 1, path);
    if (length == 0 || length > MAX_PATH + 1)
        Fail(GetLastError(), "find", "the folder for temporary files");
    return JoinPath(FromWide({path, length}), "");
}

} // namespace kavidex::platform::win32
