#include "data/embedded/FileNames.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#include "data/Error.h"

namespace kavidex::data::embedded {

namespace {

[[noreturn]] void Fail(std::string_view path, const char* what) {
    throw Error(errors::unspecified,
                "The file '" + std::string(path) + "' cannot be " + what + ": " +
                    std::strerror(errno) + ".",
                "EmbeddedDatabase");
}

// So that the new name survives a power failure.
void FlushFolderOf(const std::string& name) {
    const std::size_t slash = name.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : name.substr(0, slash + 1);
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return;
    fsync(handle);
    close(handle);
}

} // namespace

std::string NativeName(std::string_view path) {
    std::string name(path);
    for (char& c : name)
        if (c == '\\') c = '/';
    return name.substr(0, 5) == "file:" || name.substr(0, 1) == ":" ? "./" + name : name;
}

std::optional<std::uint64_t> FileSize(std::string_view path) {
    struct stat status {};
    if (stat(NativeName(path).c_str(), &status) != 0) return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

std::string FirstBytes(std::string_view path, std::size_t count) {
    std::ifstream file(NativeName(path), std::ios::binary);
    std::string bytes(count, '\0');
    if (!file) Fail(path, "opened");
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    if (file.bad()) Fail(path, "read");
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

void RemoveFile(std::string_view path) noexcept { unlink(NativeName(path).c_str()); }

bool SameFile(std::string_view a, std::string_view b) {
    struct stat one {
    }, other{};
    return stat(NativeName(a).c_str(), &one) == 0 && stat(NativeName(b).c_str(), &other) == 0 &&
           one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

std::string TemporaryBeside(std::string_view path) {
    static unsigned count = 0;
    return std::string(path) + "." + std::to_string(getpid()) + "-" + std::to_string(++count) +
           ".tmp";
}

bool RenameFile(std::string_view from, std::string_view to, bool replace) {
    const std::string source = NativeName(from), target = NativeName(to);
    if (replace) {
        if (std::rename(source.c_str(), target.c_str()) != 0) Fail(to, "replaced");
    } else if (link(source.c_str(), target.c_str()) == 0) {
        unlink(source.c_str());
    } else if (errno == EEXIST) {
        return false;
    } else { // a file system without links
        if (FileSize(to)) return false;
        if (std::rename(source.c_str(), target.c_str()) != 0) Fail(to, "made");
    }
    FlushFolderOf(target);
    return true;
}

} // namespace kavidex::data::embedded
