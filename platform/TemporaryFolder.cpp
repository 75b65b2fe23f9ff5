#include "platform/TemporaryFolder.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <system_error>

#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"
#include "platform/text.h"

namespace kavidex::platform {

namespace {

constexpr std::string_view where = "TemporaryFolder"; // in the log
constexpr std::size_t dayLength = 8;

std::chrono::sys_days DayOf(int year, int month, int day) {
    using namespace std::chrono;
    return sys_days(std::chrono::year(year) / std::chrono::month(static_cast<unsigned>(month)) /
                    std::chrono::day(static_cast<unsigned>(day)));
}

// `name`: from its day on.
std::optional<std::chrono::sys_days> DayOf(std::string_view name) {
    const auto digits = name.substr(0, dayLength);
    if (digits.size() < dayLength || digits.find_first_not_of("0123456789") != digits.npos)
        return std::nullopt;
    const auto number = static_cast<int>(Val(digits));
    return DayOf(number / 10000, number / 100 % 100, number % 100);
}

template <class Step>
void Noted(const Workstation& machine, Step step) {
    try {
        step();
    } catch (const std::exception& error) {
        machine.log.Write(where, error.what());
    }
}

void RemoveOlder(const Workstation& machine, const std::string& prefix, int days) {
    const auto now = machine.clock.Now();
    const auto today = DayOf(now.year, now.month, now.day);
    const auto temporary = machine.files.TemporaryFolder();
    for (const auto& name : machine.files.List(temporary, prefix + "*", true)) {
        const auto day = DayOf(std::string_view(name).substr(prefix.size()));
        const auto path = JoinPath(temporary, name);
        if (day && today - *day > std::chrono::days(days) && machine.files.DirectoryExists(path))
            RemoveTemporaryFolder(machine, path);
    }
}

} // namespace

std::string MakeTemporaryFolder(const Workstation& workstation, std::string_view kind, int days) {
    const auto prefix = "Kavidex-" + std::string(kind) + "-";
    Noted(workstation, [&] { RemoveOlder(workstation, prefix, days); });
    std::string guid;
    if (CreateGuid(workstation, guid) != 0)
        throw Error(errors::fail, "No name for a folder among the temporary files");
    const auto path = workstation.files.TemporaryFolder() + prefix +
                      DateNumber(workstation.clock.Now()) + "-" + guid.substr(1, guid.size() - 2);
    workstation.files.CreateDirectories(path);
    return path;
}

void RemoveTemporaryFolder(const Workstation& workstation, const std::string& folder) {
    Noted(workstation, [&] {
        for (const auto& name : workstation.files.List(folder, "*"))
            Noted(workstation, [&] {
                const auto path = JoinPath(folder, name);
                // As another program may have saved it, and as it was copied from the store.
                workstation.files.SetAttributes(path, attributes::normal);
                workstation.files.Remove(path);
            });
    });
    const auto native = NativePath(folder);
    std::error_code failed;
    std::filesystem::remove(std::u8string(native.begin(), native.end()), failed);
    if (failed) workstation.log.Write(where, folder + " stays behind: " + failed.message());
}

} // namespace kavidex::platform
