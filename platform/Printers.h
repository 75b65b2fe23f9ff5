// The printers of the workstation, and pages of pictures sent to one.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kavidex::platform {

// Rows run from the top, and each begins at a byte of its own.
struct PrintPicture {
    unsigned bits =
        1; // an element: 1 (1 is white), 8 (grey, 255 is white) or 24 (red, green, blue)
    std::uint32_t width = 0, height = 0;
    std::span<const std::uint8_t> bytes;
};

struct PrintPlace {
    int x = 0, y = 0, width = 0, height = 0;
    bool operator==(const PrintPlace&) const = default;
};

// The part of a page that can be printed on, in the printer's own dots.
struct PrintPaper {
    double xDpi = 0, yDpi = 0;
    int width = 0, height = 0;
    bool colour = false;
};

struct PrintChoice {
    std::string printer;
    int from = 0, to = 0; // pages from 1; 0: all
    int copies = 1; // that the caller is to make; what the printer makes by itself is not here
    bool collate = false; // all pages of a copy before those of the next
    std::string settings; // of the printer's driver, for Begin alone
};

// Sent to the printer by End, taken back without it. Every failing call throws platform::Error.
class PrintJob {
public:
    virtual ~PrintJob() = default;
    virtual PrintPaper BeginPage(bool landscape) = 0;
    virtual void Draw(const PrintPicture& picture, const PrintPlace& place) = 0;
    virtual void EndPage() = 0;
    virtual void End() = 0;
};

// Reached through the Shell.
class Printers {
public:
    virtual ~Printers() = default;
    // The system's own dialog, which begins with what was chosen last. A range can be chosen where
    // there are `pages` (0: none can). Nothing when the user cancelled; throws platform::Error.
    virtual std::optional<PrintChoice> Ask(int pages) = 0;
    // Null when the user cancelled it: some printers ask for the file to print to.
    virtual std::unique_ptr<PrintJob> Begin(const PrintChoice& choice, std::string_view title) = 0;
};

} // namespace kavidex::platform
