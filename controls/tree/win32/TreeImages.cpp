#include "controls/tree/win32/TreeImages.h"

#include <algorithm>

#include <shellapi.h>

#include "controls/common/win32/Look.h"
#include "controls/pictures/win32/PictureIcon.h"
#include "controls/pictures/NamedPictures.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

int listsAlive = 0;

HICON SystemIcon(const std::string& extension, int size) {
    const auto name = L"x." + platform::win32::ToWide(extension);
    const UINT choice = size > GetSystemMetrics(SM_CXSMICON) ? SHGFI_LARGEICON : SHGFI_SMALLICON;
    SHFILEINFOW info{};
    const auto found = SHGetFileInfoW(name.c_str(), FILE_ATTRIBUTE_NORMAL, &info, sizeof info,
                                      SHGFI_ICON | SHGFI_USEFILEATTRIBUTES | choice);
    return found ? info.hIcon : nullptr;
}

} // namespace

int TreeImages::ListsAlive() { return listsAlive; }

void TreeImages::Build(int dpi) {
    Destroy();
    lclSize = Scaled(16, dpi);
    lclList = ImageList_Create(lclSize, lclSize, ILC_COLOR32 | ILC_MASK, 16, 16);
    if (!lclList) return;
    ++listsAlive;
    if (lclEntries.empty())
        for (const auto key : PictureNames()) lclEntries.push_back({std::string(key), {}});
    for (const auto& entry : lclEntries)
        if (!AddToList(entry)) AddToList({"unknown", {}}); // the numbers behind it must hold
}

void TreeImages::Destroy() {
    if (!lclList) return;
    ImageList_Destroy(lclList);
    lclList = nullptr;
    --listsAlive;
}

int TreeImages::Index(std::string_view key) const {
    for (std::size_t i = 0; i < lclEntries.size(); ++i)
        if (lclEntries[i].key == key) return static_cast<int>(i);
    return -1;
}

bool TreeImages::AddFileIcon(std::string_view extension, std::string_view key) {
    Entry entry{std::string(key), std::string(extension)};
    if (!AddToList(entry)) return false;
    lclEntries.push_back(std::move(entry));
    return true;
}

bool TreeImages::AddToList(const Entry& entry) {
    HICON icon = nullptr;
    if (entry.extension.empty()) {
        icon =
            IconOf(DrawPicture(entry.key, lclSize, SystemColours(COLOR_WINDOWTEXT, COLOR_WINDOW)));
    } else {
        icon = SystemIcon(entry.extension, lclSize);
    }
    if (!icon || !lclList) return false;
    const int index = ImageList_ReplaceIcon(lclList, -1, icon);
    DestroyIcon(icon);
    return index >= 0;
}

} // namespace kavidex::controls::win32
