// The workstation options of one user in a text file: [application/section], then key=value lines.
#pragma once

#include <string>

#include "platform/Registry.h"

namespace kavidex::platform::posix {

// Names are compared without case. Every write takes a lock, reads the file anew and replaces it
// whole, so that several processes may share it.
class OptionFile : public Registry {
public:
    explicit OptionFile(std::string nativePath) : lclPath(std::move(nativePath)) {}

    std::optional<std::string> Read(std::string_view application, std::string_view section,
                                    std::string_view key) override;
    void Write(std::string_view application, std::string_view section, std::string_view key,
               std::string_view value) override;

private:
    std::string lclPath;
};

// $XDG_CONFIG_HOME/kavidex/options.ini, or the same under ~/.config.
std::string DefaultOptionFile();

} // namespace kavidex::platform::posix
