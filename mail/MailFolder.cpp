#include "mail/MailFolder.h"

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

namespace kavidex::mail {

namespace {

constexpr std::string_view prefix = "Kavidex-Mail-"; // then the day and a number of its own
constexpr std::size_t dayLength = 8;

std::chrono::sys_days DayOf(int year, int month, int day) {
    using namespace std::chrono;
    return sys_days(std::chrono::year(year) / std::chrono::month(static_cast<unsigned>(month)) /
                    std::chrono::day(static_cast<unsigned>(day)));
}

std::optional<std::chrono::sys_days> DayOf(std::string_view folder) {
    const auto digits = folder.substr(prefix.size(), dayLength);
    if (digits.size() < dayLength || digits.find_first_not_of("0123456789") != digits.npos)
        return std::nullopt;
    const auto number = static_cast<int>(platform::Val(digits));
    return DayOf(number / 10000, number / 100 % 100, number % 100);
}

void RemoveFolder(const platform::Workstation& machine, const std::string& folder) {
    const auto noted = [&](auto step) {
        try {
            step();
        } catch (const std::exception& error) {
            machine.log.Write("Mail", error.what());
        }
    };
    noted([&] {
        for (const auto& name : machine.files.List(folder, "*"))
            noted([&] {
                const auto path = platform::JoinPath(folder, name);
                // As the mail program may have saved it, and as it was copied from the store.
                machine.files.SetAttributes(path, platform::attributes::normal);
                machine.files.Remove(path);
            });
    });
    const auto native = platform::NativePath(folder);
    std::error_code failed;
    std::filesystem::remove(std::u8string(native.begin(), native.end()), failed);
    if (failed) machine.log.Write("Mail", folder + " stays behind: " + failed.message());
}

void RemoveOlder(const platform::Workstation& machine, const platform::DateTime& now) {
    const auto today = DayOf(now.year, now.month, now.day);
    const auto temporary = machine.files.TemporaryFolder();
    for (const auto& name : machine.files.List(temporary, std::string(prefix) + "*", true)) {
        const auto day = DayOf(std::string_view(name));
        const auto path = platform::JoinPath(temporary, name);
        // A mail that is open over midnight is not an old one.
        if (day && today - *day > std::chrono::days(1) && machine.files.DirectoryExists(path))
            RemoveFolder(machine, path);
    }
}

} // namespace

MailFolder::MailFolder(const platform::Workstation& workstation) : lclWorkstation(workstation) {
    const auto now = workstation.clock.Now();
    try {
        RemoveOlder(workstation, now);
    } catch (const std::exception& error) {
        workstation.log.Write("Mail", error.what());
    }
    std::string guid;
    if (platform::CreateGuid(workstation, guid) != 0)
        throw platform::Error(platform::errors::fail, "No name for the folder of the mail");
    lclPath = workstation.files.TemporaryFolder() + std::string(prefix) +
              platform::DateNumber(now) + "-" + guid.substr(1, guid.size() - 2);
    workstation.files.CreateDirectories(lclPath);
}

MailFolder::~MailFolder() { RemoveFolder(lclWorkstation, lclPath); }

} // namespace kavidex::mail
