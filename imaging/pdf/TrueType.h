// A TrueType font as far as measuring, drawing and embedding need it.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/pdf/FontSource.h"

namespace kavidex::imaging {

class TrueType {
public:
    // Null when the font has no outlines of this kind, forbids embedding, or is damaged.
    static std::unique_ptr<TrueType> Read(FontFile& file);

    // 0 for a character that it lacks.
    std::uint16_t GlyphOf(char32_t character) const;
    // All in thousandths of the letter height.
    int Advance(std::uint16_t glyph) const;
    int Ascent() const { return Thousandths(lclAscent); }
    int Descent() const { return Thousandths(lclDescent); }       // negative
    int Box(int side) const { return Thousandths(lclBox[side]); } // left, bottom, right, top

    // A font of these glyphs only, the first of them 0, in their order; what they are composed of
    // comes behind.
    std::string Subset(const std::vector<std::uint16_t>& glyphs) const;

private:
    struct Range {
        std::uint32_t first, last;
        std::int32_t delta;
        std::size_t table; // where the glyphs are listed; 0: first + delta
    };

    int Thousandths(int units) const { return units * 1000 / lclUnits; }
    bool ReadCharacters(std::string_view cmap);
    void ReadSegments(std::size_t at);
    void ReadGroups(std::size_t at);
    std::string_view Outline(std::uint16_t glyph) const;
    std::string Renumbered(std::uint16_t glyph, std::vector<std::uint16_t>& glyphs) const;

    std::string lclCmap, lclHead, lclHhea, lclMaxp, lclHmtx, lclLoca, lclGlyf, lclCvt, lclFpgm,
        lclPrep;
    std::vector<Range> lclRanges;
    int lclUnits = 1000, lclAscent = 0, lclDescent = 0, lclBox[4] = {};
    std::uint32_t lclGlyphs = 0, lclMetrics = 0;
    bool lclLongPlaces = false;
};

} // namespace kavidex::imaging
