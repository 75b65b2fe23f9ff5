#include "imaging/pdf/PdfFonts.h"

#include <algorithm>

#include "imaging/pdf/Flate.h"
#include "imaging/pdf/PdfWriter.h"
#include "imaging/pdf/TrueType.h"
#include "platform/Error.h"
#include "platform/utf8.h"

namespace kavidex::imaging {

namespace {

std::string Hex(std::uint32_t value) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (int shift = 12; shift >= 0; shift -= 4) text += digits[(value >> shift) & 15];
    return text;
}

std::string HexUtf16(char32_t character) {
    if (character < 0x10000) return Hex(character);
    const std::uint32_t rest = character - 0x10000;
    return Hex(0xD800 + (rest >> 10)) + Hex(0xDC00 + (rest & 0x3FF));
}

} // namespace

PdfFont::PdfFont(std::string name, int object, std::unique_ptr<TrueType> font)
    : lclName(std::move(name)), lclObject(object), lclFont(std::move(font)) {}
PdfFont::~PdfFont() = default;

bool PdfFont::Has(char32_t character) const { return lclFont->GlyphOf(character) != 0; }

double PdfFont::Width(char32_t character) const {
    return lclFont->Advance(lclFont->GlyphOf(character)) / 1000.0;
}

// Every character has a code and a glyph of its own, even where the font draws two alike: the code
// tells the character.
std::string PdfFont::Code(char32_t character) {
    const auto [place, isNew] =
        lclCodes.try_emplace(character, static_cast<std::uint16_t>(lclShown.size() + 1));
    if (isNew) lclShown.push_back(character);
    return Hex(place->second);
}

std::string PdfFont::Characters() const {
    std::string map = "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                      "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
                      "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
                      "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    constexpr std::size_t most = 100; // in one list
    for (std::size_t first = 0; first < lclShown.size(); first += most) {
        const std::size_t count = std::min(most, lclShown.size() - first);
        map += std::to_string(count) + " beginbfchar\n";
        for (std::size_t i = first; i < first + count; ++i)
            map += "<" + Hex(static_cast<std::uint32_t>(i + 1)) + "> <" + HexUtf16(lclShown[i]) +
                   ">\n";
        map += "endbfchar\n";
    }
    return map + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
}

void PdfFont::Write(PdfWriter& writer) const {
    std::vector<std::uint16_t> glyphs{0};
    std::string widths;
    for (const char32_t character : lclShown) {
        glyphs.push_back(lclFont->GlyphOf(character));
        widths += " " + std::to_string(lclFont->Advance(glyphs.back()));
    }
    // The tag before the name tells that the font is a part, and of which file's part.
    std::string name = "KAVID";
    name += static_cast<char>('A' + lclObject % 26);
    name += "+" + lclName;
    const std::string file = lclFont->Subset(glyphs);
    const int fontFile = writer.Stream(
        "/Filter /FlateDecode /Length1 " + std::to_string(file.size()), Deflated(file, 9));
    std::string box;
    for (int side = 0; side < 4; ++side) box += " " + std::to_string(lclFont->Box(side));
    const int descriptor = writer.Object(
        "<< /Type /FontDescriptor /FontName /" + name + " /Flags 4 /FontBBox [" + box +
        " ] /ItalicAngle 0 /Ascent " + std::to_string(lclFont->Ascent()) + " /Descent " +
        std::to_string(lclFont->Descent()) + " /CapHeight " + std::to_string(lclFont->Ascent()) +
        " /StemV 80 /FontFile2 " + PdfReference(fontFile) + " >>");
    const int descendant = writer.Object(
        "<< /Type /Font /Subtype /CIDFontType2 /BaseFont /" + name +
        " /CIDSystemInfo << /Registry (Adobe) /Ordering (Identity) /Supplement 0 >> "
        "/FontDescriptor " +
        PdfReference(descriptor) + " /CIDToGIDMap /Identity /DW 0 /W [1 [" + widths + " ]] >>");
    const int characters = writer.Stream("/Filter /FlateDecode", Deflated(Characters(), 9));
    writer.Object(lclObject, "<< /Type /Font /Subtype /Type0 /BaseFont /" + name +
                                 " /Encoding /Identity-H /DescendantFonts [" +
                                 PdfReference(descendant) + "] /ToUnicode " +
                                 PdfReference(characters) + " >>");
}

PdfFonts::~PdfFonts() = default;

PdfFont* PdfFonts::Open(const Style& style) {
    const auto [place, isNew] = lclOpened.try_emplace(style, nullptr);
    if (!isNew) return place->second;
    const std::unique_ptr<FontFile> file = lclSource.Open(style.face, style.bold, style.italic);
    if (!file) return nullptr;
    std::unique_ptr<TrueType> font = TrueType::Read(*file);
    if (!font) return nullptr;
    lclAll.push_back(std::make_unique<PdfFont>("F" + std::to_string(lclAll.size() + 1),
                                               lclWriter.Reserve(), std::move(font)));
    return place->second = lclAll.back().get();
}

// The style's next font to turn to; false behind the last.
bool PdfFonts::OpenNext(const Style& style) {
    const std::vector<std::string> others = lclSource.Fallbacks();
    std::size_t& tried = lclTried[style];
    if (tried > others.size()) return false;
    const std::string face = tried == 0 ? style.face : others[tried - 1];
    ++tried;
    Fonts& fonts = lclFonts[style];
    PdfFont* font = Open({face, style.bold, style.italic});
    if (font && std::find(fonts.begin(), fonts.end(), font) == fonts.end()) fonts.push_back(font);
    return true;
}

PdfFonts::Fonts& PdfFonts::FontsOf(const Style& style) {
    while (lclFonts[style].empty())
        if (!OpenNext(style))
            throw platform::Error(platform::errors::notFound,
                                  "No font was found that a PDF file can hold");
    return lclFonts[style];
}

PdfFont& PdfFonts::FontFor(const Style& style, char32_t character) {
    Fonts& fonts = FontsOf(style);
    for (std::size_t i = 0;; ++i) {
        while (i >= fonts.size())
            if (!OpenNext(style)) return *fonts.front();
        if (fonts[i]->Has(character)) return *fonts[i];
    }
}

std::vector<TextRun> PdfFonts::Runs(const Style& style, std::string_view text) {
    std::vector<TextRun> runs;
    for (std::size_t i = 0; i < text.size();) {
        const platform::CodePoint point = platform::DecodeUtf8(text, i);
        i += point.length;
        const char32_t character = point.valid ? point.value : U'\uFFFD';
        PdfFont& font = FontFor(style, character);
        if (runs.empty() || runs.back().font != &font) runs.push_back({&font, {}, 0});
        runs.back().codes += font.Code(character);
        runs.back().width += font.Width(character);
    }
    return runs;
}

double PdfFonts::Width(const Style& style, std::string_view text) {
    double width = 0;
    for (std::size_t i = 0; i < text.size();) {
        const platform::CodePoint point = platform::DecodeUtf8(text, i);
        i += point.length;
        const char32_t character = point.valid ? point.value : U'\uFFFD';
        width += FontFor(style, character).Width(character);
    }
    return width;
}

double PdfFonts::Ascent(const Style& style) {
    return FontsOf(style).front()->Outlines().Ascent() / 1000.0;
}

double PdfFonts::Descent(const Style& style) {
    return -FontsOf(style).front()->Outlines().Descent() / 1000.0;
}

std::string PdfFonts::Resources() const {
    std::string text = "/Font <<";
    for (const auto& font : lclAll)
        text += " /" + font->Name() + " " + PdfReference(font->Object());
    return text + " >> ";
}

void PdfFonts::Finish() {
    for (const auto& font : lclAll) font->Write(lclWriter);
}

} // namespace kavidex::imaging
