#include "controls/pictures/Pictures.h"

#include <cmath>

namespace kavidex::controls {

namespace {

bool Covers(const PictureLayer& layer, float x, float y) {
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

float Coverage(const PictureLayer& layer, int column, int line, float unit) {
    int hits = 0;
    for (int i = 0; i < samples * samples; ++i) {
        const int row = i / samples;
        const float x =
            static_cast<float>(column) + (static_cast<float>(i % samples) + 0.5F) / samples;
        const float y = static_cast<float>(line) + (static_cast<float>(row) + 0.5F) / samples;
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
        const auto mixed =
            static_cast<std::uint32_t>(std::lround(source * coverage + below * (1 - coverage)));
        result |= mixed << shift;
    }
    return result;
}

} // namespace

Picture DrawLayers(std::span<const PictureLayer> layers, int size, const PictureColours& colours) {
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
