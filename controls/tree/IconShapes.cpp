#include "controls/tree/IconShapes.h"

#include <array>
#include <cmath>
#include <span>

namespace kavidex::controls {

namespace {

struct Point {
    float x, y;
};

// A filled polygon on a square of 16 units, or an ellipse: centre and radii. The last of a
// picture's layers is on top. `back` takes the background's place in high contrast.
struct Layer {
    std::uint32_t colour;
    bool back;
    bool ellipse;
    int count;
    std::array<Point, 8> points;
};

constexpr Layer closedTab[] = {
    {0xB27A12, false, false, 6, {{{1, 3}, {6, 3}, {7.5F, 4.5F}, {15, 4.5F}, {15, 14}, {1, 14}}}},
    {0xE8B03A, true, false, 6, {{{2, 4}, {5.6F, 4}, {7.1F, 5.5F}, {14, 5.5F}, {14, 7}, {2, 7}}}},
    {0xFFD471, true, false, 4, {{{2, 7}, {14, 7}, {14, 13}, {2, 13}}}},
};
constexpr Layer openTab[] = {
    {0xB27A12, false, false, 6, {{{1, 3}, {6, 3}, {7.5F, 4.5F}, {13, 4.5F}, {13, 14}, {1, 14}}}},
    {0xE8B03A, true, false, 6, {{{2, 4}, {5.6F, 4}, {7.1F, 5.5F}, {12, 5.5F}, {12, 13}, {2, 13}}}},
    {0xB27A12, false, false, 4, {{{3.5F, 7}, {16, 7}, {13.5F, 14}, {1, 14}}}},
    {0xFFD471, true, false, 4, {{{4.2F, 8}, {14.6F, 8}, {12.8F, 13}, {2.4F, 13}}}},
};
constexpr Layer note[] = {
    {0x9A8A2E, false, false, 5, {{{2, 1}, {14, 1}, {14, 11}, {10, 15}, {2, 15}}}},
    {0xFFF3A6, true, false, 5, {{{3, 2}, {13, 2}, {13, 10.6F}, {9.6F, 14}, {3, 14}}}},
    {0xD9C65A, false, false, 3, {{{9.6F, 10.6F}, {13, 10.6F}, {9.6F, 14}}}},
    {0x8B7B25, false, false, 4, {{{4.5F, 4}, {11.5F, 4}, {11.5F, 5}, {4.5F, 5}}}},
    {0x8B7B25, false, false, 4, {{{4.5F, 6.5F}, {11.5F, 6.5F}, {11.5F, 7.5F}, {4.5F, 7.5F}}}},
    {0x8B7B25, false, false, 4, {{{4.5F, 9}, {8.5F, 9}, {8.5F, 10}, {4.5F, 10}}}},
};
constexpr Layer users[] = {
    {0x6C8FB5, false, true, 2, {{{11, 5.5F}, {2.5F, 2.5F}}}},
    {0x6C8FB5, false, false, 6, {{{7, 14}, {7, 11}, {9, 9}, {13, 9}, {15, 11}, {15, 14}}}},
    {0xFFFFFF, true, true, 2, {{{5.5F, 5.5F}, {3.6F, 3.6F}}}},
    {0xFFFFFF, true, false, 6, {{{0, 15}, {0, 11}, {2.5F, 8.5F}, {8.5F, 8.5F}, {11, 11}, {11, 15}}}},
    {0x2E5E91, false, true, 2, {{{5.5F, 5.5F}, {2.8F, 2.8F}}}},
    {0x2E5E91, false, false, 6, {{{1, 14}, {1, 11.5F}, {3, 9.5F}, {8, 9.5F}, {10, 11.5F}, {10, 14}}}},
};
constexpr Layer selectedUser[] = {
    {0x2E5E91, false, true, 2, {{{8, 5}, {3.4F, 3.4F}}}},
    {0x2E5E91, false, false, 6, {{{2, 15}, {2, 12}, {5, 9.5F}, {11, 9.5F}, {14, 12}, {14, 15}}}},
    {0x8DB4DC, true, true, 2, {{{8, 5}, {2.2F, 2.2F}}}},
};
constexpr Layer unknown[] = {
    {0x7A7A7A, false, false, 5, {{{3, 1}, {10, 1}, {14, 5}, {14, 15}, {3, 15}}}},
    {0xFFFFFF, true, false, 5, {{{4, 2}, {9.5F, 2}, {13, 5.5F}, {13, 14}, {4, 14}}}},
    {0x7A7A7A, false, false, 3, {{{9.5F, 2}, {13, 5.5F}, {9.5F, 5.5F}}}},
};

struct Row {
    std::string_view key;
    std::span<const Layer> layers;
};
constexpr Row rows[] = {
    {"closedtab", closedTab}, {"opentab", openTab},           {"attachtment", note},
    {"Users", users},         {"SelectedUser", selectedUser}, {"unknown", unknown},
};

bool Covers(const Layer& layer, float x, float y) {
    if (layer.ellipse) {
        const float dx = (x - layer.points[0].x) / layer.points[1].x;
        const float dy = (y - layer.points[0].y) / layer.points[1].y;
        return dx * dx + dy * dy <= 1;
    }
    bool inside = false;
    const auto count = static_cast<std::size_t>(layer.count);
    for (std::size_t i = 0, j = count - 1; i < count; j = i++) {
        const auto& a = layer.points[i];
        const auto& b = layer.points[j];
        if ((a.y > y) != (b.y > y) && x < (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

constexpr int samples = 4; // a side, in each pixel

float Coverage(const Layer& layer, int column, int line, float unit) {
    int hits = 0;
    for (int i = 0; i < samples * samples; ++i) {
        const float x = static_cast<float>(column) + (static_cast<float>(i % samples) + 0.5F) / samples;
        const float y = static_cast<float>(line) + (static_cast<float>(i / samples) + 0.5F) / samples;
        hits += Covers(layer, x * unit, y * unit) ? 1 : 0;
    }
    return static_cast<float>(hits) / (samples * samples);
}

// `colour` over `pixel` by that coverage.
std::uint32_t Blend(std::uint32_t pixel, std::uint32_t colour, float coverage) {
    std::uint32_t result = 0;
    for (int shift = 0; shift <= 24; shift += 8) {
        const float source = shift == 24 ? 255.0F : static_cast<float>((colour >> shift) & 255);
        const float below = static_cast<float>((pixel >> shift) & 255);
        const auto mixed = static_cast<std::uint32_t>(
            std::lround(source * coverage + below * (1 - coverage)));
        result |= mixed << shift;
    }
    return result;
}

} // namespace

std::vector<std::string_view> PictureKeys() {
    std::vector<std::string_view> keys;
    for (const auto& row : rows) keys.push_back(row.key);
    return keys;
}

Picture DrawPicture(std::string_view key, int size, const PictureColours& colours) {
    std::span<const Layer> layers = unknown;
    for (const auto& row : rows)
        if (row.key == key) layers = row.layers;
    Picture picture{size, std::vector<std::uint32_t>(static_cast<std::size_t>(size) * size)};
    const float unit = 16.0F / static_cast<float>(size);
    for (const auto& layer : layers) {
        const auto colour = !colours.highContrast ? layer.colour
                            : layer.back          ? colours.back
                                                  : colours.fore;
        for (int line = 0; line < size; ++line)
            for (int column = 0; column < size; ++column)
                if (const float coverage = Coverage(layer, column, line, unit); coverage > 0) {
                    auto& pixel = picture.pixels[static_cast<std::size_t>(line) * size + column];
                    pixel = Blend(pixel, colour, coverage);
                }
    }
    return picture;
}

} // namespace kavidex::controls
