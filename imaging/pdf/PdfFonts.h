// The fonts of one PDF file: each holds only the characters that were shown, and tells which they
// are, so that the text can be searched and copied.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "imaging/pdf/FontSource.h"

namespace kavidex::imaging {

class PdfWriter;
class TrueType;

class PdfFont {
public:
    PdfFont(std::string name, int object, std::unique_ptr<TrueType> font);
    ~PdfFont();

    const std::string& Name() const { return lclName; } // among a page's resources
    bool Has(char32_t character) const;
    const TrueType& Outlines() const { return *lclFont; }
    double Width(char32_t character) const; // in letter heights
    // The character's code in four hexadecimal digits.
    std::string Code(char32_t character);

    int Object() const { return lclObject; }
    void Write(PdfWriter& writer) const;

private:
    std::string Characters() const;

    std::string lclName;
    int lclObject;
    std::unique_ptr<TrueType> lclFont;
    std::map<char32_t, std::uint16_t> lclCodes;
    std::vector<char32_t> lclShown; // by code - 1
};

// Part of a line in one font.
struct TextRun {
    PdfFont* font;
    std::string codes;
    double width; // in letter heights
};

class PdfFonts {
public:
    PdfFonts(PdfWriter& writer, FontSource& source) : lclWriter(writer), lclSource(source) {}
    ~PdfFonts();

    struct Style {
        std::string face = "Arial";
        bool bold = false, italic = false;
        auto Key() const { return std::tie(face, bold, italic); }
        bool operator<(const Style& other) const { return Key() < other.Key(); }
    };

    // Characters that the style's font lacks come from others; one that none has shows as a box and
    // is still the character when copied. Throws platform::Error when the machine has no font at
    // all.
    std::vector<TextRun> Runs(const Style& style, std::string_view text);
    double Width(const Style& style, std::string_view text); // in letter heights
    double Ascent(const Style& style);
    double Descent(const Style& style); // positive

    // All that were asked for, as entries of a page's resources.
    std::string Resources() const;
    void Finish();

private:
    using Fonts = std::vector<PdfFont*>;
    PdfFont& FontFor(const Style& style, char32_t character);
    Fonts& FontsOf(const Style& style);
    PdfFont* Open(const Style& style);
    bool OpenNext(const Style& style);

    PdfWriter& lclWriter;
    FontSource& lclSource;
    std::map<Style, PdfFont*> lclOpened; // null where there is none
    std::map<Style, Fonts> lclFonts;     // the style's own, then those it turned to
    std::map<Style, std::size_t> lclTried;
    std::vector<std::unique_ptr<PdfFont>> lclAll;
};

} // namespace kavidex::imaging
