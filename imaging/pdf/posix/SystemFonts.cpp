// The distribution's font files.
#include <algorithm>

#include "imaging/pdf/FontSource.h"
#include "platform/Bytes.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::imaging {

namespace {

class WholeFile : public FontFile {
public:
    explicit WholeFile(std::string bytes) : lclBytes(std::move(bytes)) {}

    std::string Table(std::string_view tag) override {
        constexpr std::size_t head = 12, entry = 16;
        if (lclBytes.size() < head) return {};
        const std::size_t count = platform::ReadBig<std::uint16_t>(lclBytes, 4);
        for (std::size_t at = head; at < head + count * entry && at + entry <= lclBytes.size();
             at += entry) {
            if (lclBytes.compare(at, 4, tag) != 0) continue;
            const std::size_t place = platform::ReadBig<std::uint32_t>(lclBytes, at + 8);
            if (place > lclBytes.size()) return {};
            return lclBytes.substr(place, platform::ReadBig<std::uint32_t>(lclBytes, at + 12));
        }
        return {};
    }

private:
    std::string lclBytes;
};

struct Family {
    const char *face, *file;
    const char* styles[4]; // regular, bold, italic, both
};

constexpr Family families[] = {
    {"Arial", "liberation\\LiberationSans", {"-Regular", "-Bold", "-Italic", "-BoldItalic"}},
    {"Times New Roman",
     "liberation\\LiberationSerif",
     {"-Regular", "-Bold", "-Italic", "-BoldItalic"}},
    {"Courier New", "liberation\\LiberationMono", {"-Regular", "-Bold", "-Italic", "-BoldItalic"}},
    {"DejaVu Sans", "dejavu\\DejaVuSans", {"", "-Bold", "-Oblique", "-BoldOblique"}},
};

class InstalledFonts : public FontSource {
public:
    std::unique_ptr<FontFile> Open(std::string_view face, bool bold, bool italic) override {
        const Family* family = &families[0];
        for (const Family& known : families)
            if (platform::EqualNoCase(known.face, face)) family = &known;
        const std::string path = std::string("\\usr\\share\\fonts\\truetype\\") + family->file +
                                 family->styles[(bold ? 1 : 0) + (italic ? 2 : 0)] + ".ttf";
        platform::Files& files = platform::TheWorkstation().files;
        if (!files.FileExists(path)) return nullptr;
        return std::make_unique<WholeFile>(files.ReadAll(path));
    }

    std::vector<std::string> Fallbacks() override { return {"Arial", "DejaVu Sans"}; }
};

} // namespace

FontSource& SystemFonts() {
    static InstalledFonts fonts;
    return fonts;
}

} // namespace kavidex::imaging
