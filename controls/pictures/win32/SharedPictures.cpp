#include "controls/pictures/win32/SharedPictures.h"

#include <algorithm>
#include <mutex>

#include "controls/pictures/NamedPictures.h"
#include "controls/pictures/win32/PictureIcon.h"

namespace kavidex::controls::win32 {

namespace {

std::mutex guard; // hosts may show forms on several threads
std::vector<std::shared_ptr<SharedPictures>> kept;

// Looks that nobody shows go, when there is another size or other colours.
void DropUnused() {
    std::erase_if(kept, [](const auto& one) { return one.use_count() == 1; });
}

// Without colour, and faint: not every system makes disabled pictures that one can tell apart.
Picture FaintOf(Picture picture) {
    for (auto& pixel : picture.pixels) {
        const auto grey =
            (3 * (pixel >> 16 & 255) + 6 * (pixel >> 8 & 255) + (pixel & 255)) / 10 * 2 / 5;
        pixel = (pixel >> 24) * 2 / 5 << 24 | grey << 16 | grey << 8 | grey;
    }
    return picture;
}

bool Add(HIMAGELIST list, const Picture& picture) {
    const HICON icon = IconOf(picture);
    if (!icon) return false;
    const bool added = list && ImageList_ReplaceIcon(list, -1, icon) >= 0;
    DestroyIcon(icon);
    return added;
}

HIMAGELIST MakeList(int size) {
    return ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 16, 16);
}

PictureColours ColoursOf(PictureSet set) {
    return set == PictureSet::Items ? SystemColours(COLOR_WINDOWTEXT, COLOR_WINDOW)
                                    : SystemColours(COLOR_BTNTEXT, COLOR_BTNFACE);
}

} // namespace

SharedPictures::SharedPictures(PictureSet set, int size, const PictureColours& colours)
    : lclSet(set), lclSize(size), lclColours(colours), lclList(MakeList(size)) {
    if (set == PictureSet::Buttons)
        lclFaint = MakeList(size);
    else
        for (const auto& row : ItemPictures()) Index(row.name);
}

SharedPictures::~SharedPictures() {
    for (const HIMAGELIST list : {lclList, lclFaint})
        if (list) ImageList_Destroy(list);
}

int SharedPictures::Index(std::string_view name) {
    const std::lock_guard lock(guard);
    const auto known = std::ranges::find(lclNames, name);
    if (known != lclNames.end()) return static_cast<int>(known - lclNames.begin());
    if (lclFaint) {
        auto colours = lclColours;
        if (colours.highContrast) colours.fore = SystemColours(COLOR_GRAYTEXT, COLOR_BTNFACE).fore;
        const auto picture = DrawPicture(name, lclSize, colours);
        if (!Add(lclFaint, colours.highContrast ? picture : FaintOf(picture))) return -1;
    }
    if (!Add(lclList, DrawPicture(name, lclSize, lclColours))) {
        if (lclFaint) ImageList_Remove(lclFaint, ImageList_GetImageCount(lclFaint) - 1);
        return -1;
    }
    lclNames.emplace_back(name);
    return static_cast<int>(lclNames.size()) - 1;
}

bool SharedPictures::Is(PictureSet set, int size, const PictureColours& colours) const {
    return set == lclSet && size == lclSize && colours == lclColours;
}

std::shared_ptr<SharedPictures> PicturesOf(PictureSet set, int size) {
    const auto colours = ColoursOf(set);
    const auto matches = [&](const auto& one) { return one->Is(set, size, colours); };
    {
        const std::lock_guard lock(guard);
        const auto known = std::ranges::find_if(kept, matches);
        if (known != kept.end()) return *known;
    }
    auto made = std::make_shared<SharedPictures>(set, size, colours);
    const std::lock_guard lock(guard);
    if (kept.size() >= 8) DropUnused();
    kept.push_back(made);
    return made;
}

void ReleasePictures() {
    const std::lock_guard lock(guard);
    DropUnused();
}

} // namespace kavidex::controls::win32
