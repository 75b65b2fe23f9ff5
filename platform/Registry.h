// Per-user workstation options: texts by application, section and key.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kavidex::platform {

class Registry {
public:
    virtual ~Registry() = default;

    // Null when the key is missing. Both throw platform::Error when the store refuses.
    virtual std::optional<std::string> Read(std::string_view application, std::string_view section,
                                            std::string_view key) = 0;
    virtual void Write(std::string_view application, std::string_view section, std::string_view key,
                       std::string_view value) = 0;
};

} // namespace kavidex::platform
