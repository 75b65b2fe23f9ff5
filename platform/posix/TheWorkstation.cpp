// The ports of a machine without a desktop: messages go to the error output, and no window opens.
#include <fcntl.h>
#include <pwd.h>
#include <spawn.h>
#include <sys/random.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/BusyDialog.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Exchange.h"
#include "platform/FileLog.h"
#include "platform/Guids.h"
#include "platform/Messages.h"
#include "platform/Printers.h"
#include "platform/Shell.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/posix/OpenFile.h"
#include "platform/posix/OptionFile.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/paths.h"
#include "platform/text.h"

namespace kavidex::platform {

namespace posix {

namespace {

class LocalClock : public Clock {
public:
    DateTime Now() override {
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME, &now);
        tm local{};
        ::localtime_r(&now.tv_sec, &local);
        return {local.tm_year + 1900,
                local.tm_mon + 1,
                local.tm_mday,
                local.tm_hour,
                local.tm_min,
                local.tm_sec,
                static_cast<int>(now.tv_nsec / 1000000)};
    }
};

class AccountUser : public User {
public:
    std::string Name() override {
        const passwd* account = ::getpwuid(::geteuid());
        return account && account->pw_name && *account->pw_name ? account->pw_name : "notpresent";
    }
};

class KernelGuids : public Guids {
public:
    std::optional<GuidBytes> New() override {
        GuidBytes bytes{};
        if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
            return std::nullopt;
        bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40); // version 4: random
        bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
        return bytes;
    }
};

// Nobody is there to agree: the answer is the one that does nothing.
class ErrorOutput : public Messages {
public:
    Answer Show(const Message& message) override {
        std::fprintf(stderr, "%s: %s\n", message.caption.c_str(), message.text.c_str());
        switch (message.buttons) {
        case Buttons::Ok: return Answer::Ok;
        case Buttons::YesNo: return Answer::No;
        default: return Answer::Cancel;
        }
    }
};

class NoBusyDialog : public BusyDialog {
public:
    void Show(std::string_view, std::string_view) override {}
    void Progress(int, int) override {}
    void Close() override {}
    void OfferStop(std::string_view) override {}
    bool StopAsked() override { return false; }
    void Pump(bool) override {}
};

// The exit code of a program found by PATH, its output dropped into `output`; -1 when not started.
int RunProgram(const char* const* arguments, int output) {
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
    pid_t child = 0;
    const int failed = ::posix_spawnp(&child, arguments[0], &actions, nullptr,
                                      const_cast<char* const*>(arguments), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (failed) return -1;
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Pages are drawn for printers on a desktop only.
class NoPrinters : public Printers {
public:
    std::optional<PrintChoice> Ask(int) override { return std::nullopt; }
    std::unique_ptr<PrintJob> Begin(const PrintChoice& choice, std::string_view) override {
        throw Error(errors::notFound, "There is no printer \"" + choice.printer + "\".");
    }
};

class DesktopTools : public Shell {
public:
    void OpenDefault(std::string_view path) override { Run("xdg-open", "open", path); }
    void PrintDefault(std::string_view path) override { Run("lp", "print", path); }

    // The control is part of Windows.
    bool HasBrowserEngine() override { return false; }
    bool BrowserShows(std::string_view) override { return false; }
    std::string MailClient() override { return {}; }

    // No desktop's own list is asked: the extension says as much.
    std::string TypeDescription(std::string_view extension) override {
        return UpperCase(extension);
    }

    bool HasPrinters() override {
        const char* const arguments[] = {"lpstat", "-v", nullptr};
        const OpenFile nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
        return RunProgram(arguments, nothing.Get()) == 0;
    }
    platform::Printers& Printers() override { return lclPrinters; }

private:
    static void Run(const char* program, const char* action, std::string_view path) {
        const std::string native = ToNative(path);
        const char* const arguments[] = {program, native.c_str(), nullptr};
        const OpenFile nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
        if (!PosixFiles().FileExists(path)) Fail(ENOENT, action, path);
        if (RunProgram(arguments, nothing.Get()) != 0)
            throw Error(errors::fail, std::string("Cannot ") + action + " \"" + std::string(path) +
                                          "\": no program is set for files of this kind");
    }

    NoPrinters lclPrinters;
};

struct Machine {
    OptionFile registry{DefaultOptionFile()};
    PosixFiles files;
    LocalClock clock;
    AccountUser user;
    KernelGuids guids;
    ErrorOutput messages;
    NoBusyDialog busy;
    DesktopTools shell;
    FileLog log{registry, clock, files};
    MemoryClipboard clipboard;
    Workstation workstation{registry, files, clock, user, guids,
                            messages, busy,  shell, log,  clipboard};
};

} // namespace

} // namespace posix

bool AppendToFile(const std::string& path, std::string_view bytes) {
    const posix::OpenFile file(
        ::open(posix::ToNative(path).c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666));
    return file && posix::WriteFully(file.Get(), bytes) == 0;
}

const Workstation& TheWorkstation() {
    static posix::Machine machine;
    return machine.workstation;
}

} // namespace kavidex::platform
