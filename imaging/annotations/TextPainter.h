// Letters for the marks on a page, by the system's fonts.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::imaging::annotations {

struct TextLook {
    std::string face;
    bool bold = false, italic = false, underline = false, strikeOut = false;
    double height = 12; // of the letters, in elements of the picture
    double stretch = 1; // of their width
};

// How much of each element is covered, 0 to 255, row by row from the top.
struct Coverage {
    std::uint32_t width = 0, height = 0;
    std::vector<std::uint8_t> values;

    std::uint8_t At(std::uint32_t x, std::uint32_t y) const {
        return values[std::size_t{y} * width + x];
    }
};

class TextPainter {
public:
    virtual ~TextPainter() = default;
    virtual double Width(const TextLook& look, std::string_view line) = 0;
    virtual double LineHeight(const TextLook& look) = 0;
    // One line from left to right, as high as a line; empty where it cannot be drawn.
    virtual Coverage Line(const TextLook& look, std::string_view line) = 0;
};

// By the system's fonts; null where the system draws no letters.
std::unique_ptr<TextPainter> MakeTextPainter();

} // namespace kavidex::imaging::annotations
