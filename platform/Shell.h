// What the desktop offers: the programs that files belong to, and printers.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::platform {

class Printers;

class Shell {
public:
    virtual ~Shell() = default;
    // Opens the file with its default program; throws platform::Error when there is none.
    virtual void OpenDefault(std::string_view path) = 0;
    // Has that program print the file; throws platform::Error when it has none that can.
    virtual void PrintDefault(std::string_view path) = 0;
    virtual bool HasPrinters() = 0;
    virtual platform::Printers& Printers() = 0;
    // The machine's default mail program, as it is registered; empty: none.
    virtual std::string MailClient() = 0;
    // What the system calls files of that extension (without the dot); never empty.
    virtual std::string TypeDescription(std::string_view extension) = 0;

    // Whether the web browser control can show pages, and whether it shows files of a MIME type in
    // place.
    virtual bool HasBrowserEngine() = 0;
    virtual bool BrowserShows(std::string_view mimeType) = 0;
};

} // namespace kavidex::platform
