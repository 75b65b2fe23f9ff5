#include "imaging/pdf/JpegParts.h"

#include <algorithm>

#include "platform/Bytes.h"

namespace kavidex::imaging {

namespace {

using platform::AppendBig;
using platform::ReadBig;

namespace marker {
constexpr std::uint8_t baseline = 0xC0, extended = 0xC1, huffman = 0xC4, arithmetic = 0xCC,
                       lossless = 0xC8, lastFrame = 0xCF, begin = 0xD8, end = 0xD9, scan = 0xDA,
                       restart = 0xDD, jfif = 0xE0, exif = 0xE1, adobe = 0xEE, firstRestart = 0xD0;
} // namespace marker

constexpr std::string_view beginning = "\xFF\xD8", ending = "\xFF\xD9";

bool IsFrame(std::uint8_t code) {
    return code >= marker::baseline && code <= marker::lastFrame && code != marker::huffman &&
           code != marker::lossless && code != marker::arithmetic;
}

bool ReadFrame(std::string_view segment, std::uint8_t code, JpegParts& parts) {
    constexpr std::size_t head = 10;
    if (segment.size() < head || segment[4] != 8) return false;
    parts.height = ReadBig<std::uint16_t>(segment, 5);
    parts.width = ReadBig<std::uint16_t>(segment, 7);
    parts.components = static_cast<std::uint8_t>(segment[9]);
    if (segment.size() < head + 3 * std::size_t{parts.components} || parts.width == 0) return false;
    parts.sequential = code == marker::baseline || code == marker::extended;
    // The blocks of a lone component stand one by one, whatever its factors.
    for (unsigned i = 0; parts.components > 1 && i < parts.components; ++i) {
        const auto factors = static_cast<std::uint8_t>(segment[head + 3 * i + 1]);
        parts.unitWidth = std::max(parts.unitWidth, 8u * (factors >> 4));
        parts.unitHeight = std::max(parts.unitHeight, 8u * (factors & 15));
    }
    parts.frame = segment;
    return true;
}

void ReadDensity(std::string_view segment, JpegParts& parts) {
    if (segment.size() < 16 || segment.substr(4, 4) != "JFIF") return;
    const double perInch = segment[11] == 1 ? 1 : segment[11] == 2 ? 2.54 : 0;
    parts.xDpi = ReadBig<std::uint16_t>(segment, 12) * perInch;
    parts.yDpi = ReadBig<std::uint16_t>(segment, 14) * perInch;
}

// What a camera says of its picture is a small TIFF file.
void ReadOrientation(std::string_view segment, JpegParts& parts) {
    constexpr std::string_view name("Exif\0\0", 6);
    constexpr std::size_t before = 4, entrySize = 12;
    constexpr std::uint16_t tag = 0x112;
    if (segment.substr(before, name.size()) != name) return;
    const std::string_view file = segment.substr(before + name.size());
    const bool little = file.starts_with("II");
    const auto number = [&]<class Number>(std::size_t at, Number) -> std::size_t {
        if (at > file.size() || file.size() - at < sizeof(Number)) return 0;
        return little ? platform::ReadLittle<Number>(file, at) : ReadBig<Number>(file, at);
    };
    const std::size_t list = number(4, std::uint32_t{}), count = number(list, std::uint16_t{});
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = list + 2 + entrySize * i;
        if (number(entry, std::uint16_t{}) != tag) continue;
        const std::size_t value = number(entry + 8, std::uint16_t{});
        if (value >= 1 && value <= 8) parts.orientation = static_cast<int>(value);
        return;
    }
}

// Up to and with the scan's segment; false when that is not reached.
bool ReadSegments(std::string_view& bytes, JpegParts& parts) {
    while (bytes.size() >= 4 && bytes[0] == '\xFF') {
        const auto code = static_cast<std::uint8_t>(bytes[1]);
        if (code == 0xFF) { // filling
            bytes.remove_prefix(1);
            continue;
        }
        const std::size_t size = std::size_t{2} + ReadBig<std::uint16_t>(bytes, 2);
        if (code == marker::begin || code == marker::end || size < 4 || size > bytes.size())
            return false;
        const std::string_view segment = bytes.substr(0, size);
        bytes.remove_prefix(size);
        if (code == marker::scan) {
            parts.scan = segment;
            return !parts.frame.empty();
        }
        if (IsFrame(code)) {
            if (!parts.frame.empty() || !ReadFrame(segment, code, parts)) return false;
            continue;
        }
        if (code == marker::restart) parts.restarts = true;
        if (code == marker::adobe) parts.adobe = true;
        if (code == marker::jfif) ReadDensity(segment, parts);
        if (code == marker::exif) ReadOrientation(segment, parts);
        parts.tables += segment;
    }
    return false;
}

} // namespace

std::string JpegParts::Whole() const {
    return std::string(beginning) + tables + frame + scan + entropy + std::string(ending);
}

std::optional<JpegParts> ReadJpeg(std::string_view bytes, std::string_view shared) {
    if (!bytes.starts_with(beginning)) return std::nullopt;
    JpegParts parts;
    // A table told twice is told last by the strip.
    parts.tables = shared;
    bytes.remove_prefix(beginning.size());
    if (!ReadSegments(bytes, parts)) return std::nullopt;
    const std::size_t end = bytes.rfind(ending);
    parts.entropy = bytes.substr(0, end);
    return parts;
}

std::optional<std::string> JoinJpegs(const std::vector<JpegParts>& strips, std::uint32_t width,
                                     std::uint32_t height, std::uint32_t rows) {
    if (strips.empty() || height > 0xFFFF) return std::nullopt;
    const JpegParts& first = strips.front();
    if (strips.size() == 1) {
        if (first.width != width || first.height != height) return std::nullopt;
        return first.Whole();
    }
    const std::uint64_t units = std::uint64_t{(width + first.unitWidth - 1) / first.unitWidth} *
                                ((rows + first.unitHeight - 1) / first.unitHeight);
    if (rows % first.unitHeight != 0 || units > 0xFFFF) return std::nullopt;
    constexpr std::size_t heightAt = 5;
    for (const JpegParts& strip : strips) {
        std::string frame = strip.frame;
        frame.replace(heightAt, 2, first.frame, heightAt, 2);
        const bool alike = strip.sequential && !strip.restarts && strip.width == width &&
                           strip.tables == first.tables && strip.scan == first.scan &&
                           frame == first.frame;
        if (!alike) return std::nullopt;
    }
    std::string frame = first.frame, size;
    AppendBig(size, static_cast<std::uint16_t>(height));
    frame.replace(heightAt, 2, size);
    std::string whole = std::string(beginning) + first.tables + frame;
    whole += "\xFF\xDD";
    AppendBig(whole, std::uint16_t{4});
    AppendBig(whole, static_cast<std::uint16_t>(units));
    whole += first.scan;
    for (std::size_t i = 0; i < strips.size(); ++i) {
        if (i > 0) {
            whole += '\xFF';
            whole += static_cast<char>(marker::firstRestart + (i - 1) % 8);
        }
        whole += strips[i].entropy;
    }
    return whole + std::string(ending);
}

} // namespace kavidex::imaging
