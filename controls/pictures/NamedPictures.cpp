#include "controls/pictures/NamedPictures.h"

namespace kavidex::controls {

namespace {

template <class Visit>
void Each(Visit visit) {
    for (const auto table :
         {ItemPictures(), FilePictures(), ToolbarPictures(), ViewerPictures(), AdminPictures()})
        for (const auto& row : table) visit(row);
}

const NamedPicture* Find(std::string_view name) {
    const NamedPicture* found = nullptr;
    Each([&](const NamedPicture& row) {
        if (row.name == name) found = &row;
    });
    return found;
}

} // namespace

std::vector<std::string_view> PictureNames() {
    std::vector<std::string_view> names;
    Each([&](const NamedPicture& row) { names.push_back(row.name); });
    return names;
}

bool HasPicture(std::string_view name) { return Find(name) != nullptr; }

Picture DrawPicture(std::string_view name, int size, const PictureColours& colours) {
    const auto* row = Find(name);
    return DrawLayers((row ? row : Find("unknown"))->layers, size, colours);
}

} // namespace kavidex::controls
