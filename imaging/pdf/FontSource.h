// Where the fonts that a PDF file embeds come from.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::imaging {

// One TrueType font.
class FontFile {
public:
    virtual ~FontFile() = default;
    virtual std::string Table(std::string_view tag) = 0; // empty when it has none
};

class FontSource {
public:
    virtual ~FontSource() = default;
    // What the system gives for that name, which may be another; null when it gives none.
    virtual std::unique_ptr<FontFile> Open(std::string_view face, bool bold, bool italic) = 0;
    // Faces to turn to, in order, for characters that a font lacks.
    virtual std::vector<std::string> Fallbacks() = 0;
};

// The fonts of this machine; one object a process.
FontSource& SystemFonts();

} // namespace kavidex::imaging
