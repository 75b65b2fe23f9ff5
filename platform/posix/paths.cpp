#include "platform/posix/paths.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "platform/Files.h"

namespace kavidex::platform {

std::string NativePath(std::string_view path) { return posix::ToNative(path); }

namespace posix {

std::string ToNative(std::string_view path) {
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::string FromNative(std::string_view path) {
    std::string own(path);
    std::replace(own.begin(), own.end(), '/', '\\');
    return own;
}

std::string NativeFolder(const std::string& nativePath) {
    const auto slash = nativePath.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : nativePath.substr(0, slash);
}

std::string HomeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    const passwd* account = getpwuid(geteuid());
    return account && account->pw_dir ? account->pw_dir : "/";
}

} // namespace posix

} // namespace kavidex::platform
