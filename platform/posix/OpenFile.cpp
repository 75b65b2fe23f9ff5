#include "platform/posix/OpenFile.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/Error.h"

namespace kavidex::platform::posix {

namespace {

struct Cause {
    int number;
    std::int32_t error;
};

constexpr Cause causes[] = {
    {ENOENT, errors::notFound},        {ENOTDIR, errors::pathNotFound},
    {EACCES, errors::accessDenied},    {EPERM, errors::accessDenied},
    {EROFS, errors::accessDenied},     {EISDIR, errors::accessDenied},
    {EEXIST, errors::alreadyExists},   {ENOTEMPTY, errors::alreadyExists},
    {ENOSPC, errors::diskFull},        {EDQUOT, errors::diskFull},
    {EBUSY, errors::sharingViolation}, {ETXTBSY, errors::sharingViolation},
    {EINVAL, errors::invalidArgument},
};

std::int32_t ErrorOf(int cause) {
    for (const Cause& known : causes)
        if (known.number == cause) return known.error;
    return errors::fail;
}

} // namespace

bool OpenFile::Close() {
    if (lclDescriptor < 0) return true;
    const int descriptor = lclDescriptor;
    lclDescriptor = -1;
    return ::close(descriptor) == 0 || errno == EINTR;
}

void Fail(int cause, std::string_view action, std::string_view path, std::string_view target) {
    std::string text = "Cannot ";
    text.append(action).append(" \"").append(path).append("\"");
    if (!target.empty()) text.append(" to \"").append(target).append("\"");
    text.append(": ").append(std::generic_category().message(cause));
    throw Error(ErrorOf(cause), text);
}

int WriteFully(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

int ReadFully(int descriptor, char* room, std::size_t size, std::size_t& got) {
    for (got = 0; got < size;) {
        const ssize_t read = ::read(descriptor, room + got, size - got);
        if (read < 0 && errno == EINTR) continue;
        if (read < 0) return errno;
        if (read == 0) break;
        got += static_cast<std::size_t>(read);
    }
    return 0;
}

} // namespace kavidex::platform::posix
