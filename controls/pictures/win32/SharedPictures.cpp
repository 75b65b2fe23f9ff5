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

PictureColours ColoursOf(PictureSet set) {
    return set == PictureSet::Items ? SystemColours(COLOR_WINDOWTEXT, COLOR_WINDOW)
                                    : SystemColours(COLOR_BTNTEXT, COLOR_BTNFACE);
}

} // namespace

SharedPictures::SharedPictures(PictureSet set, int size, const PictureColours& colours)
    : lclSet(set), lclSize(size), lclColours(colours),
      lclList(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 16, 16)) {
    if (set == PictureSet::Items)
        for (const auto& row : ItemPictures()) Index(row.name);
}

SharedPictures::~SharedPictures() {
    if (lclList) ImageList_Destroy(lclList);
}

int SharedPictures::Index(std::string_view name) {
    const std::lock_guard lock(guard);
    const auto known = std::ranges::find(lclNames, name);
    if (known != lclNames.end()) return static_cast<int>(known - lclNames.begin());
    const HICON icon = IconOf(DrawPicture(name, lclSize, lclColours));
    if (!icon) return -1;
    const int index = lclList ? ImageList_ReplaceIcon(lclList, -1, icon) : -1;
    DestroyIcon(icon);
    if (index >= 0) lclNames.emplace_back(name);
    return index;
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
