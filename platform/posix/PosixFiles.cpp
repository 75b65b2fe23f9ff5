#include "platform/posix/PosixFiles.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/Links.h"
#include "platform/SameBytes.h"
#include "platform/posix/NewFile.h"
#include "platform/posix/OpenFile.h"
#include "platform/posix/paths.h"

namespace kavidex::platform::posix {

namespace {

using FileInfo = struct stat;

// A path that the system would cut short or take for the current folder is refused.
std::string Checked(std::string_view path, std::string_view action) {
    if (path.empty() || path.find('\0') != std::string_view::npos) Fail(EINVAL, action, path);
    return ToNative(path);
}

bool Find(std::string_view path, FileInfo& info) {
    if (path.empty() || path.find('\0') != std::string_view::npos) return false;
    return ::stat(ToNative(path).c_str(), &info) == 0;
}

FileInfo InfoOf(std::string_view path, std::string_view action) {
    FileInfo info{};
    if (::stat(Checked(path, action).c_str(), &info) != 0) Fail(errno, action, path);
    return info;
}

// Read-only protects a file as it does on Windows; here the folder's permissions alone would not.
void RefuseReadOnly(std::string_view path, std::string_view action) {
    FileInfo info{};
    if (!Find(path, info)) return;
    if (S_ISDIR(info.st_mode)) Fail(EISDIR, action, path);
    if (!(info.st_mode & S_IWUSR)) Fail(EACCES, action, path);
}

OpenFile OpenForReading(std::string_view path, std::string_view action, FileInfo& info) {
    OpenFile file(::open(Checked(path, action).c_str(), O_RDONLY | O_CLOEXEC));
    if (!file || ::fstat(file.Get(), &info) != 0) Fail(errno, action, path);
    if (S_ISDIR(info.st_mode)) Fail(EISDIR, action, path);
    return file;
}

// 0 or an errno.
int CopyBytes(int from, int to) {
    constexpr std::size_t block = std::size_t{256} * 1024;
    const std::unique_ptr<char[]> buffer(new char[block]);
    for (;;) {
        std::size_t got = 0;
        if (const int failed = ReadFully(from, buffer.get(), block, got)) return failed;
        if (const int failed = WriteFully(to, {buffer.get(), got})) return failed;
        if (got < block) return 0;
    }
}

// Writes the source's bytes and time; 0 or an errno. The copy is checked while it is at hand.
int Fill(const NewFile& copy, const OpenFile& from) {
    FileInfo after{}, written{};
    if (const int failed = copy.Error()) return failed;
    if (const int failed = CopyBytes(from.Get(), copy.Descriptor())) return failed;
    if (::fstat(from.Get(), &after) != 0 || ::fstat(copy.Descriptor(), &written) != 0) return errno;
    if (written.st_size != after.st_size) return EIO;
    const timespec times[] = {after.st_atim, after.st_mtim};
    ::futimens(copy.Descriptor(), times); // a kindness; the copy is good without
    return 0;
}

class PosixReader : public FileReader {
public:
    PosixReader(OpenFile file, std::string_view path) : lclFile(std::move(file)), lclPath(path) {}

    std::uint64_t Size() override {
        FileInfo info{};
        if (::fstat(lclFile.Get(), &info) != 0) Fail(errno, "find the size of", lclPath);
        return static_cast<std::uint64_t>(info.st_size);
    }
    std::size_t Read(std::uint64_t offset, void* room, std::size_t size) override {
        std::size_t got = 0;
        while (got < size) {
            const ssize_t read = ::pread(lclFile.Get(), static_cast<char*>(room) + got, size - got,
                                         static_cast<off_t>(offset + got));
            if (read < 0 && errno == EINTR) continue;
            if (read < 0) Fail(errno, "read", lclPath);
            if (read == 0) break;
            got += static_cast<std::size_t>(read);
        }
        return got;
    }

private:
    OpenFile lclFile;
    std::string lclPath;
};

class PosixLock : public FileLock {
public:
    PosixLock(OpenFile file, std::string native)
        : lclFile(std::move(file)), lclNative(std::move(native)) {}
    ~PosixLock() override { ::unlink(lclNative.c_str()); } // while it is held

private:
    OpenFile lclFile;
    std::string lclNative;
};

// Calls `met` with each name that matches, for as long as it answers true.
template <class Met>
void Walk(std::string_view folder, std::string_view pattern, bool folders, Met met) {
    constexpr std::string_view action = "list";
    const std::string native = Checked(folder, action);
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(native.c_str()), &::closedir);
    if (!open && errno == ENOENT) return;
    if (!open) Fail(errno, action, folder);

    const auto isFolder = [&](const dirent& entry) {
        FileInfo info{};
        if (entry.d_type != DT_UNKNOWN && entry.d_type != DT_LNK) return entry.d_type == DT_DIR;
        return ::fstatat(::dirfd(open.get()), entry.d_name, &info, 0) == 0 && S_ISDIR(info.st_mode);
    };
    errno = 0;
    while (const dirent* entry = ::readdir(open.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != ".." && MatchesPattern(name, pattern) &&
            (folders || !isFolder(*entry)) && !met(entry->d_name))
            return;
        errno = 0;
    }
    if (errno != 0) Fail(errno, action, folder);
}

unsigned ModeFor(std::string_view path) {
    FileInfo old{};
    return Find(path, old) ? old.st_mode & 0777 : 0666;
}

class PosixWriter : public FileWriter {
public:
    explicit PosixWriter(std::string_view path)
        : lclPath(path), lclNative(Checked(path, writing)),
          lclFile(NativeFolder(lclNative), ModeFor(path)) {
        RefuseReadOnly(path, writing);
        if (const int failed = lclFile.Error()) Fail(failed, writing, path);
    }

    void Write(std::string_view bytes) override {
        if (const int failed = WriteFully(lclFile.Descriptor(), bytes))
            Fail(failed, writing, lclPath);
    }
    void PutInPlace(bool failIfExists, bool flush) override {
        if (const int failed = lclFile.PutInPlace(lclNative, failIfExists, flush))
            Fail(failed, writing, lclPath);
    }

private:
    static constexpr std::string_view writing = "write";
    std::string lclPath, lclNative;
    NewFile lclFile;
};

} // namespace

bool PosixFiles::FileExists(std::string_view path) {
    FileInfo info{};
    return Find(path, info) && !S_ISDIR(info.st_mode);
}

bool PosixFiles::DirectoryExists(std::string_view path) {
    FileInfo info{};
    return Find(path, info) && S_ISDIR(info.st_mode);
}

void PosixFiles::CreateDirectories(std::string_view path) {
    constexpr std::string_view action = "create the folder";
    const std::string native = Checked(path, action);
    for (std::size_t end = native.find('/', 1);; end = native.find('/', end + 1)) {
        const std::string part = native.substr(0, end);
        if (::mkdir(part.c_str(), 0777) == 0) {
            // What is flushed in it later must not go with a lost name of the folder itself.
            if (const int failed = FlushFolder(NativeFolder(part))) Fail(failed, action, path);
        } else {
            const int cause = errno;
            FileInfo info{};
            const bool there = ::stat(part.c_str(), &info) == 0;
            if (!there) Fail(cause, action, path);
            if (!S_ISDIR(info.st_mode)) Fail(EEXIST, action, path);
        }
        if (end == std::string::npos) return;
    }
}

void PosixFiles::Copy(std::string_view source, std::string_view target, bool failIfExists) {
    constexpr std::string_view action = "copy";
    const std::string native = Checked(target, action);
    FileInfo info{};
    const OpenFile from = OpenForReading(source, action, info);
    if (!failIfExists) RefuseReadOnly(target, "replace");

    NewFile copy(NativeFolder(native), info.st_mode & 0777);
    int failed = Fill(copy, from);
    if (!failed) failed = copy.PutInPlace(native, failIfExists);
    if (failed) Fail(failed, action, source, target);
}

std::string PosixFiles::CopyAside(std::string_view source, std::string_view folder, bool) {
    constexpr std::string_view action = "copy";
    const std::string native = Checked(folder, action);
    FileInfo info{};
    const OpenFile from = OpenForReading(source, action, info);
    NewFile copy(native, info.st_mode & 0777);
    std::string path;
    int failed = Fill(copy, from);
    if (!failed) failed = copy.Keep(path);
    if (failed) Fail(failed, action, source, folder);
    return FromNative(path);
}

void PosixFiles::Rename(std::string_view from, std::string_view to) {
    constexpr std::string_view action = "rename";
    const std::string nativeFrom = Checked(from, action), nativeTo = Checked(to, action);
    int failed = RenameNew(nativeFrom, nativeTo);
    if (!failed) failed = FlushFolder(NativeFolder(nativeTo));
    if (failed) Fail(failed, action, from, to);
}

void PosixFiles::Remove(std::string_view path) {
    constexpr std::string_view action = "delete";
    RefuseReadOnly(path, action);
    if (::unlink(Checked(path, action).c_str()) != 0) Fail(errno, action, path);
}

std::uint64_t PosixFiles::Size(std::string_view path) {
    return static_cast<std::uint64_t>(InfoOf(path, "find the size of").st_size);
}

bool PosixFiles::SameBytes(std::string_view path, std::string_view other) {
    static constexpr std::string_view action = "compare"; // needs no capture
    const auto reader = [&](const OpenFile& file, std::string_view name) {
        return [&file, name](char* room, std::size_t size) {
            std::size_t got = 0;
            if (const int failed = ReadFully(file.Get(), room, size, got))
                Fail(failed, action, name);
            return got;
        };
    };
    FileInfo info{}, otherInfo{};
    const OpenFile file = OpenForReading(path, action, info);
    const OpenFile otherFile = OpenForReading(other, action, otherInfo);
    return info.st_size == otherInfo.st_size &&
           platform::SameBytes(reader(file, path), reader(otherFile, other));
}

bool PosixFiles::SameFile(std::string_view path, std::string_view other) {
    constexpr std::string_view action = "compare";
    const FileInfo info = InfoOf(path, action), otherInfo = InfoOf(other, action);
    return info.st_dev == otherInfo.st_dev && info.st_ino == otherInfo.st_ino;
}

std::uint32_t PosixFiles::Attributes(std::string_view path) {
    const FileInfo info = InfoOf(path, "find the attributes of");
    std::uint32_t bits = 0;
    FileInfo own{};
    if (S_ISDIR(info.st_mode)) {
        bits |= attributes::directory;
        if (::lstat(ToNative(path).c_str(), &own) == 0 && S_ISLNK(own.st_mode))
            bits |= attributes::link;
    }
    if (!(info.st_mode & S_IWUSR)) bits |= attributes::readOnly;
    return bits ? bits : attributes::normal;
}

void PosixFiles::SetAttributes(std::string_view path, std::uint32_t bits) {
    constexpr std::string_view action = "change the attributes of";
    const FileInfo info = InfoOf(path, action);
    constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    const mode_t permissions = info.st_mode & 07777;
    const mode_t wanted =
        bits & attributes::readOnly ? permissions & ~anyWrite : permissions | S_IWUSR;
    if (wanted != permissions && ::chmod(ToNative(path).c_str(), wanted) != 0)
        Fail(errno, action, path);
}

std::string PosixFiles::ReadAll(std::string_view path) {
    constexpr std::string_view action = "read";
    FileInfo info{};
    const OpenFile file = OpenForReading(path, action, info);
    std::string bytes(static_cast<std::size_t>(info.st_size), '\0');
    std::size_t filled = 0;
    // The size is a first guess: the file may grow or shrink meanwhile, or have none to tell.
    for (;;) {
        if (filled == bytes.size()) bytes.resize(filled + 4096);
        std::size_t got = 0;
        if (const int failed =
                ReadFully(file.Get(), bytes.data() + filled, bytes.size() - filled, got))
            Fail(failed, action, path);
        if (got == 0) break;
        filled += got;
    }
    bytes.resize(filled);
    return bytes;
}

void PosixFiles::WriteAll(std::string_view path, std::string_view bytes) {
    PosixWriter file(path);
    file.Write(bytes);
    file.PutInPlace(false, true);
}

std::unique_ptr<FileReader> PosixFiles::Reader(std::string_view path) {
    FileInfo info{};
    OpenFile file = OpenForReading(path, "read", info);
    return std::make_unique<PosixReader>(std::move(file), path);
}

std::unique_ptr<FileWriter> PosixFiles::Writer(std::string_view path) {
    return std::make_unique<PosixWriter>(path);
}

std::vector<std::string> PosixFiles::List(std::string_view folder, std::string_view pattern,
                                          bool folders) {
    std::vector<std::string> names;
    Walk(folder, pattern, folders, [&](const char* name) {
        names.emplace_back(name);
        return true;
    });
    SortNames(names);
    return names;
}

bool PosixFiles::Holds(std::string_view folder, std::string_view pattern) {
    bool found = false;
    Walk(folder, pattern, false, [&](const char*) {
        found = true;
        return false;
    });
    return found;
}

std::unique_ptr<FileLock> PosixFiles::Lock(std::string_view path) {
    constexpr std::string_view action = "lock";
    const std::string native = Checked(path, action);
    for (;;) {
        OpenFile file(::open(native.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
        if (!file) Fail(errno, action, path);
        if (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK) return nullptr;
            Fail(errno, action, path);
        }
        // Whoever held it before may have taken the file away with it.
        FileInfo held{}, named{};
        if (::fstat(file.Get(), &held) != 0) Fail(errno, action, path);
        if (::stat(native.c_str(), &named) == 0 && named.st_ino == held.st_ino)
            return std::make_unique<PosixLock>(std::move(file), native);
    }
}

std::string PosixFiles::TemporaryFolder() {
    const char* named = std::getenv("TMPDIR");
    return FromNative(JoinPath(named && *named ? named : "/tmp", ""));
}

} // namespace kavidex::platform::posix
