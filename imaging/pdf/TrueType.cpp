#include "imaging/pdf/TrueType.h"

#include <algorithm>

#include "platform/Bytes.h"

namespace kavidex::imaging {

namespace {

using platform::AppendBig;
using platform::ReadBig;

constexpr std::size_t metricSize = 4;

// 0 behind the end, as damaged fonts ask for.
template <class Number>
Number At(std::string_view table, std::size_t at) {
    return at + sizeof(Number) <= table.size() ? ReadBig<Number>(table, at) : Number{};
}

namespace composite {
constexpr std::uint16_t words = 1, scale = 8, more = 32, twoScales = 64, matrix = 128;
} // namespace composite

bool MayBeEmbedded(std::string_view os2) {
    constexpr std::uint16_t restricted = 2, mask = 15;
    return os2.size() < 10 || (At<std::uint16_t>(os2, 8) & mask) != restricted;
}

} // namespace

std::unique_ptr<TrueType> TrueType::Read(FontFile& file) {
    auto font = std::make_unique<TrueType>();
    font->lclHead = file.Table("head");
    font->lclHhea = file.Table("hhea");
    font->lclMaxp = file.Table("maxp");
    font->lclHmtx = file.Table("hmtx");
    font->lclLoca = file.Table("loca");
    font->lclGlyf = file.Table("glyf");
    const bool whole = font->lclHead.size() >= 54 && font->lclHhea.size() >= 36 &&
                       font->lclMaxp.size() >= 6 && !font->lclGlyf.empty();
    if (!whole || !MayBeEmbedded(file.Table("OS/2"))) return nullptr;
    font->lclUnits = std::max<int>(1, At<std::uint16_t>(font->lclHead, 18));
    for (int side = 0; side < 4; ++side)
        font->lclBox[side] = At<std::int16_t>(font->lclHead, 36 + 2 * side);
    font->lclLongPlaces = At<std::int16_t>(font->lclHead, 50) != 0;
    font->lclAscent = At<std::int16_t>(font->lclHhea, 4);
    font->lclDescent = At<std::int16_t>(font->lclHhea, 6);
    font->lclMetrics = At<std::uint16_t>(font->lclHhea, 34);
    font->lclGlyphs = At<std::uint16_t>(font->lclMaxp, 4);
    const std::size_t places = (std::size_t{font->lclGlyphs} + 1) * (font->lclLongPlaces ? 4 : 2);
    if (font->lclMetrics == 0 || font->lclMetrics > font->lclGlyphs ||
        font->lclHmtx.size() < font->lclMetrics * metricSize || font->lclLoca.size() < places)
        return nullptr;
    if (!font->ReadCharacters(file.Table("cmap"))) return nullptr;
    font->lclCvt = file.Table("cvt ");
    font->lclFpgm = file.Table("fpgm");
    font->lclPrep = file.Table("prep");
    return font;
}

bool TrueType::ReadCharacters(std::string_view cmap) {
    lclCmap = cmap;
    std::size_t segments = 0, groups = 0;
    for (std::size_t i = 0; i < At<std::uint16_t>(cmap, 2); ++i) {
        const std::size_t at = 4 + 8 * i;
        const auto platform = At<std::uint16_t>(cmap, at),
                   encoding = At<std::uint16_t>(cmap, at + 2);
        const std::size_t table = At<std::uint32_t>(cmap, at + 4);
        const auto format = At<std::uint16_t>(cmap, table);
        const bool unicode = platform == 0 || (platform == 3 && (encoding == 1 || encoding == 10));
        if (unicode && format == 4) segments = table;
        if (unicode && format == 12) groups = table;
    }
    if (groups != 0)
        ReadGroups(groups);
    else if (segments != 0)
        ReadSegments(segments);
    std::sort(lclRanges.begin(), lclRanges.end(),
              [](const Range& a, const Range& b) { return a.last < b.last; });
    return !lclRanges.empty();
}

void TrueType::ReadSegments(std::size_t at) {
    const std::size_t twice = At<std::uint16_t>(lclCmap, at + 6) & ~std::size_t{1};
    for (std::size_t i = 0; i < twice; i += 2) {
        const std::size_t last = at + 14 + i, first = last + 2 + twice, delta = first + twice,
                          offset = delta + twice;
        const std::size_t list = At<std::uint16_t>(lclCmap, offset);
        lclRanges.push_back({At<std::uint16_t>(lclCmap, first), At<std::uint16_t>(lclCmap, last),
                             At<std::int16_t>(lclCmap, delta), list == 0 ? 0 : offset + list});
    }
}

void TrueType::ReadGroups(std::size_t at) {
    const std::size_t count =
        std::min<std::size_t>(At<std::uint32_t>(lclCmap, at + 12), lclCmap.size() / 12);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t group = at + 16 + 12 * i;
        const auto first = At<std::uint32_t>(lclCmap, group),
                   glyph = At<std::uint32_t>(lclCmap, group + 8);
        lclRanges.push_back({first, At<std::uint32_t>(lclCmap, group + 4),
                             static_cast<std::int32_t>(glyph - first), 0});
    }
}

std::uint16_t TrueType::GlyphOf(char32_t character) const {
    const auto range =
        std::lower_bound(lclRanges.begin(), lclRanges.end(), character,
                         [](const Range& a, char32_t wanted) { return a.last < wanted; });
    if (range == lclRanges.end() || character < range->first) return 0;
    std::uint32_t glyph = 0;
    if (range->table == 0) {
        glyph = static_cast<std::uint32_t>(character) + static_cast<std::uint32_t>(range->delta);
    } else {
        const auto listed = At<std::uint16_t>(
            lclCmap, range->table + 2 * static_cast<std::size_t>(character - range->first));
        glyph = listed == 0 ? 0 : listed + static_cast<std::uint32_t>(range->delta);
    }
    glyph &= 0xFFFF;
    return glyph < lclGlyphs ? static_cast<std::uint16_t>(glyph) : std::uint16_t{0};
}

int TrueType::Advance(std::uint16_t glyph) const {
    const std::size_t metric = std::min<std::size_t>(glyph, lclMetrics - 1);
    return Thousandths(At<std::uint16_t>(lclHmtx, metric * metricSize));
}

std::string_view TrueType::Outline(std::uint16_t glyph) const {
    const auto place = [&](std::size_t i) {
        return lclLongPlaces ? std::size_t{At<std::uint32_t>(lclLoca, 4 * i)}
                             : std::size_t{At<std::uint16_t>(lclLoca, 2 * i)} * 2;
    };
    const std::size_t begin = place(glyph), end = place(glyph + std::size_t{1});
    if (begin >= end || end > lclGlyf.size()) return {};
    return std::string_view(lclGlyf).substr(begin, end - begin);
}

// A composed glyph names its parts: those that are not there yet are added, and named anew.
std::string TrueType::Renumbered(std::uint16_t glyph, std::vector<std::uint16_t>& glyphs) const {
    std::string outline(Outline(glyph));
    if (outline.size() < 10 || At<std::int16_t>(outline, 0) >= 0) return outline;
    std::uint16_t flags = composite::more;
    for (std::size_t at = 10; (flags & composite::more) && at + 4 <= outline.size();) {
        flags = At<std::uint16_t>(outline, at);
        const auto part = At<std::uint16_t>(outline, at + 2);
        auto found = std::find(glyphs.begin(), glyphs.end(), part);
        if (found == glyphs.end()) found = glyphs.insert(glyphs.end(), part < lclGlyphs ? part : 0);
        const auto number = static_cast<std::uint16_t>(found - glyphs.begin());
        outline[at + 2] = static_cast<char>(number >> 8);
        outline[at + 3] = static_cast<char>(number);
        at += flags & composite::words ? 8 : 6;
        at += flags & composite::scale       ? 2
              : flags & composite::twoScales ? 4
              : flags & composite::matrix    ? 8
                                             : 0;
    }
    return outline;
}

namespace {

std::uint32_t Sum(std::string_view table) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < table.size(); i += 4)
        for (std::size_t j = 0; j < 4; ++j)
            sum += i + j < table.size()
                       ? std::uint32_t{static_cast<unsigned char>(table[i + j])} << (24 - 8 * j)
                       : 0;
    return sum;
}

struct NamedTable {
    const char* name;
    std::string_view bytes;
};

std::string Bound(const std::vector<NamedTable>& tables) {
    std::string file;
    AppendBig(file, std::uint32_t{0x00010000});
    const auto count = static_cast<std::uint16_t>(tables.size());
    std::uint16_t power = 0;
    while ((2 << power) <= count) ++power;
    AppendBig(file, count);
    AppendBig(file, static_cast<std::uint16_t>(16 << power));
    AppendBig(file, power);
    AppendBig(file, static_cast<std::uint16_t>(16 * count - (16 << power)));
    std::size_t place = 12 + 16 * tables.size();
    for (const NamedTable& table : tables) {
        file += table.name;
        AppendBig(file, Sum(table.bytes));
        AppendBig(file, static_cast<std::uint32_t>(place));
        AppendBig(file, static_cast<std::uint32_t>(table.bytes.size()));
        place += (table.bytes.size() + 3) / 4 * 4;
    }
    for (const NamedTable& table : tables) {
        file += table.bytes;
        file.resize((file.size() + 3) / 4 * 4);
    }
    return file;
}

void Set16(std::string& table, std::size_t at, std::size_t value) {
    table[at] = static_cast<char>(value >> 8);
    table[at + 1] = static_cast<char>(value);
}

} // namespace

std::string TrueType::Subset(const std::vector<std::uint16_t>& wanted) const {
    std::vector<std::uint16_t> glyphs = wanted;
    std::string glyf, loca, hmtx;
    for (std::size_t i = 0; i < glyphs.size() && i < 0xFFFF; ++i) { // grows while it is walked
        AppendBig(loca, static_cast<std::uint32_t>(glyf.size()));
        glyf += Renumbered(glyphs[i], glyphs);
        glyf.resize((glyf.size() + 3) / 4 * 4);
        const std::size_t metric = std::min<std::size_t>(glyphs[i], lclMetrics - 1);
        hmtx += lclHmtx.substr(metric * metricSize, metricSize);
    }
    AppendBig(loca, static_cast<std::uint32_t>(glyf.size()));
    std::string head = lclHead, hhea = lclHhea, maxp = lclMaxp;
    Set16(head, 50, 1);
    std::fill_n(head.begin() + 8, 4, '\0'); // the sum over the whole file, which viewers pass over
    Set16(hhea, 34, hmtx.size() / metricSize);
    Set16(maxp, 4, hmtx.size() / metricSize);
    std::vector<NamedTable> tables;
    const NamedTable all[] = {{"cvt ", lclCvt}, {"fpgm", lclFpgm}, {"glyf", glyf},
                              {"head", head},   {"hhea", hhea},    {"hmtx", hmtx},
                              {"loca", loca},   {"maxp", maxp},    {"prep", lclPrep}};
    for (const NamedTable& table : all)
        if (!table.bytes.empty()) tables.push_back(table);
    return Bound(tables);
}

} // namespace kavidex::imaging
