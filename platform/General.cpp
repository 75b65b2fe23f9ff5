#include "platform/General.h"

#include <exception>

#include "platform/Log.h"
#include "platform/Registry.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::platform {

namespace {

constexpr std::string_view missing = "$%$";

} // namespace

std::string GetRegSetting(const Workstation& workstation, std::string_view application,
                          std::string_view section, std::string_view key,
                          std::string_view fallback) {
    try {
        const auto stored = workstation.registry.Read(application, section, key);
        if (stored && TrimView(*stored) != missing) return *stored;
    } catch (const std::exception& error) {
        workstation.log.Write("GetRegSetting", error.what());
    }
    return std::string(fallback);
}

void SaveRegSetting(const Workstation& workstation, std::string_view application,
                    std::string_view section, std::string_view key, std::string_view value) {
    try {
        workstation.registry.Write(application, section, key, value);
    } catch (const std::exception& error) {
        workstation.log.Write("SaveRegSetting", error.what());
    }
}

bool GetRegFlag(const Workstation& workstation, std::string_view section, std::string_view key) {
    const std::string stored = GetRegSetting(workstation, applicationName, section, key, "False");
    return EqualAsciiNoCase(TrimView(stored), "true");
}

void SaveRegFlag(const Workstation& workstation, std::string_view section, std::string_view key,
                 bool value) {
    SaveRegSetting(workstation, applicationName, section, key, value ? "True" : "False");
}

} // namespace kavidex::platform
