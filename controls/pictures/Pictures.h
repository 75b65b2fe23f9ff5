// Small pictures as layers of shapes, drawn sharp at any size.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace kavidex::controls {

// 0xAARRGGBB, colours multiplied by alpha, rows from the top.
struct Picture {
    int size = 0;
    std::vector<std::uint32_t> pixels;
};

// In high contrast every shape is drawn in these two colours (0xRRGGBB).
struct PictureColours {
    bool highContrast = false;
    std::uint32_t fore = 0, back = 0xFFFFFF;
    bool operator==(const PictureColours&) const = default;
};

struct PicturePoint {
    float x, y;
};

// A filled polygon on a square of 16 units, or an ellipse: centre and radii. The last of a
// picture's layers is on top. `back` takes the background's place in high contrast.
struct PictureLayer {
    std::uint32_t colour;
    bool back;
    bool ellipse;
    int count;
    std::array<PicturePoint, 8> points;
};

Picture DrawLayers(std::span<const PictureLayer> layers, int size,
                   const PictureColours& colours = {});

} // namespace kavidex::controls
