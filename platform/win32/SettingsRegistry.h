// Workstation options where the hosts of this library keep their own settings, so that options of
// earlier versions are found and a host can read them by its own means.
#pragma once

#include "platform/Registry.h"

namespace kavidex::platform::win32 {

// HKCU\Software\VB and VBA Program Settings\<application>\<section>, text values.
class SettingsRegistry : public Registry {
public:
    std::optional<std::string> Read(std::string_view application, std::string_view section,
                                    std::string_view key) override;
    void Write(std::string_view application, std::string_view section, std::string_view key,
               std::string_view value) override;
};

} // namespace kavidex::platform::win32
