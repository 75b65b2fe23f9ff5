// The pictures of our own, by name: of items, of file types, of toolbar buttons.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "controls/pictures/Pictures.h"

namespace kavidex::controls {

struct NamedPicture {
    std::string_view name;
    std::span<const PictureLayer> layers;
};

// Every name; "unknown" is among them.
std::vector<std::string_view> PictureNames();
bool HasPicture(std::string_view name);
// An unknown name gives the picture of "unknown".
Picture DrawPicture(std::string_view name, int size, const PictureColours& colours = {});

// The tables that these are made of.
std::span<const NamedPicture> ItemPictures(); // "closedtab", "opentab", "attachtment", "Users", ...
std::span<const NamedPicture> FilePictures(); // families of file types: "pdf", "word", "sheet", ...
std::span<const NamedPicture> ToolbarPictures();
std::span<const NamedPicture> ViewerPictures();
std::span<const NamedPicture> AdminPictures(); // settings, checklists

} // namespace kavidex::controls
