// The tree's own pictures as shapes, drawn sharp at any size.
#pragma once

#include <cstdint>
#include <string_view>
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
};

// "closedtab", "opentab", "attachtment", "Users", "SelectedUser", "unknown", in this order.
std::vector<std::string_view> PictureKeys();

// An unknown key gives the picture of "unknown".
Picture DrawPicture(std::string_view key, int size, const PictureColours& colours = {});

} // namespace kavidex::controls
