// What the desktop offers: default programs, printers.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::platform {

class Shell {
public:
    virtual ~Shell() = default;
    // Opens the file with its default program; throws platform::Error when there is none.
    virtual void OpenDefault(std::string_view path) = 0;
    virtual bool HasPrinters() = 0;
    // What the system calls files of that extension (without the dot); never empty.
    virtual std::string TypeDescription(std::string_view extension) = 0;
};

} // namespace kavidex::platform
