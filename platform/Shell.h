// What the desktop offers: default programs, printers.
#pragma once

#include <string_view>

namespace kavidex::platform {

class Shell {
public:
    virtual ~Shell() = default;
    // Opens the file with its default program; throws platform::Error when there is none.
    virtual void OpenDefault(std::string_view path) = 0;
    virtual bool HasPrinters() = 0;
};

} // namespace kavidex::platform
