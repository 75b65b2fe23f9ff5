// The file system. Paths are UTF-8 with backslashes on every platform; the posix side translates.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileStreams.h"

namespace kavidex::platform {

// Attribute bits as Windows numbers them; normal means none.
namespace attributes {
constexpr std::uint32_t readOnly = 1, hidden = 2, system = 4, directory = 16, archive = 32;
constexpr std::uint32_t normal = 128;
} // namespace attributes

// Keeps others out, in this process or another one, on this machine or another, for as long as it
// lives; it ends with the process at the latest.
class FileLock {
public:
    virtual ~FileLock() = default;
};

// Every failing operation throws platform::Error whose text names the path and the cause.
class Files {
public:
    virtual ~Files() = default;

    virtual bool FileExists(std::string_view path) = 0;
    virtual bool DirectoryExists(std::string_view path) = 0;
    // Makes the folder and its missing parents; no error when it is there already.
    virtual void CreateDirectories(std::string_view path) = 0;

    // Copies through a temporary name beside the target, flushed to disk, compared in size with the
    // source and then renamed, so that the target is whole or absent. An existing target is
    // replaced, or refused with errors::alreadyExists when `failIfExists`.
    virtual void Copy(std::string_view source, std::string_view target, bool failIfExists) = 0;
    // The first half of that: a whole, flushed copy under a new temporary name in `folder`, whose
    // path is given. Rename puts it in place. `atRest`: a source that somebody has open to write is
    // refused with errors::sharingViolation, where the system tells.
    virtual std::string CopyAside(std::string_view source, std::string_view folder,
                                  bool atRest = false) = 0;
    // Within one volume, on disk when it returns; an existing target is refused with
    // errors::alreadyExists.
    virtual void Rename(std::string_view from, std::string_view to) = 0;
    // A file; a read-only one is refused with errors::accessDenied, as by Copy and WriteAll.
    virtual void Remove(std::string_view path) = 0;

    virtual std::uint64_t Size(std::string_view path) = 0;
    virtual bool SameBytes(std::string_view path, std::string_view other) = 0;
    // Whether both name one file, however they are spelled (links, short names, shares). Throws
    // when it cannot tell.
    virtual bool SameFile(std::string_view path, std::string_view other) = 0;
    virtual std::uint32_t Attributes(std::string_view path) = 0;
    virtual void SetAttributes(std::string_view path, std::uint32_t attributes) = 0;

    virtual std::string ReadAll(std::string_view path) = 0;
    // Whole or not at all: temporary name, flush, rename.
    virtual void WriteAll(std::string_view path, std::string_view bytes) = 0;

    // Keeps nobody from the file, which may be replaced or deleted while it is read.
    virtual std::unique_ptr<FileReader> Reader(std::string_view path) = 0;
    // A new file for this path, under a temporary name beside it until it is put in place.
    virtual std::unique_ptr<FileWriter> Writer(std::string_view path) = 0;

    // Names (not paths) in `folder` that match `pattern` (* and ?, without case), sorted by name
    // without case; subfolders too where `folders` says so. A missing folder has no entries.
    virtual std::vector<std::string> List(std::string_view folder, std::string_view pattern,
                                          bool folders = false) = 0;

    // Whether List would name any file.
    virtual bool Holds(std::string_view folder, std::string_view pattern) = 0;

    // Through a file of that name, made where there is none, which goes with the lock. Null while
    // somebody else holds it.
    virtual std::unique_ptr<FileLock> Lock(std::string_view path) = 0;

    virtual std::string TemporaryFolder() = 0; // ends in a backslash
};

std::string JoinPath(std::string_view folder, std::string_view name);
std::string FileName(std::string_view path);  // after the last separator
std::string FolderOf(std::string_view path);  // before the last separator, empty when there is none
std::string Extension(std::string_view path); // without the dot, as written; empty when none
std::string WithoutExtension(std::string_view fileName);

// Whether Windows takes it as the name of one file or folder.
bool IsFileName(std::string_view name);
bool CanBeInFileName(char c);

// Whether Windows takes the name for a device ("CON", "com1.txt") and gives no file or folder it.
bool IsDeviceName(std::string_view fileName);

// * and ? against a whole name, without case; "*.*" matches every name.
bool MatchesPattern(std::string_view name, std::string_view pattern);

// As List orders them.
void SortNames(std::vector<std::string>& names);

// The path as this system's own calls and libraries take it, in UTF-8.
std::string NativePath(std::string_view path);

} // namespace kavidex::platform
