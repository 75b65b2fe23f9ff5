#include "platform/posix/NewFile.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

#include "platform/posix/paths.h"

namespace kavidex::platform::posix {

namespace {

// Short, so that a target of the longest allowed name has room for it.
std::string TemporaryName() {
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != sizeof number)
        number = static_cast<std::uint64_t>(::getpid());
    char name[40];
    std::snprintf(name, sizeof name, "/.kavidex-%016llx.tmp",
                  static_cast<unsigned long long>(number));
    return name;
}

} // namespace

NewFile::NewFile(const std::string& nativeFolder, unsigned mode)
    : lclTemporary(nativeFolder + TemporaryName()),
      lclFile(::open(lclTemporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)) {
    if (!lclFile) {
        lclError = errno;
        lclTemporary.clear();
    }
}

NewFile::~NewFile() {
    if (!lclTemporary.empty()) ::unlink(lclTemporary.c_str());
}

int NewFile::Finish(bool flush) {
    return (!flush || ::fsync(lclFile.Get()) == 0) && lclFile.Close() ? 0 : errno;
}

int NewFile::PutInPlace(const std::string& nativeTarget, bool failIfExists, bool flush) {
    if (const int failed = Finish(flush)) return failed;
    if (failIfExists) {
        if (const int failed = RenameNew(lclTemporary, nativeTarget)) return failed;
    } else if (::rename(lclTemporary.c_str(), nativeTarget.c_str()) != 0) {
        return errno;
    }
    lclTemporary.clear();
    return flush ? FlushFolder(NativeFolder(nativeTarget)) : 0;
}

int NewFile::Keep(std::string& nativePath) {
    if (const int failed = Finish()) return failed;
    nativePath = std::exchange(lclTemporary, {});
    return 0;
}

int RenameNew(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
    // A file system without that call: a second name is refused as atomically.
    if (::link(from.c_str(), to.c_str()) != 0) return errno;
    return ::unlink(from.c_str()) == 0 ? 0 : errno;
}

int FlushFolder(const std::string& nativeFolder) {
    const OpenFile folder(::open(nativeFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return errno == EACCES ? 0 : errno; // a folder one may write in but not list
    // Some network file systems flush no folders, and need no such flush.
    return ::fsync(folder.Get()) == 0 || errno == EINVAL || errno == ENOTSUP ? 0 : errno;
}

} // namespace kavidex::platform::posix
