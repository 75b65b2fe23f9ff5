#include "controls/pictures/win32/IconStore.h"

#include <algorithm>

#include <shellapi.h>

#include "controls/common/win32/Look.h"
#include "controls/pictures/IconKeys.h"
#include "controls/pictures/NamedPictures.h"
#include "controls/pictures/win32/PictureIcon.h"
#include "controls/pictures/win32/SharedPictures.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

int listsAlive = 0;

SHFILEINFOW AskShell(const std::wstring& name, UINT what) {
    SHFILEINFOW info{};
    SHGetFileInfoW(name.c_str(), FILE_ATTRIBUTE_NORMAL, &info, sizeof info,
                   what | SHGFI_USEFILEATTRIBUTES);
    return info;
}

// A type that the system does not know gets the sheet that it shows for any such file.
bool SystemKnows(const std::wstring& name) {
    static const int any =
        AskShell(L"x.kavidex-no-such-type", SHGFI_SYSICONINDEX | SHGFI_SMALLICON).iIcon;
    return AskShell(name, SHGFI_SYSICONINDEX | SHGFI_SMALLICON).iIcon != any;
}

// Null when the system has none.
HICON SystemIcon(std::string_view extension, int size) {
    const auto name = L"x." + platform::win32::ToWide(extension);
    if (!SystemKnows(name)) return nullptr;
    const UINT choice = size > GetSystemMetrics(SM_CXSMICON) ? SHGFI_LARGEICON : SHGFI_SMALLICON;
    return AskShell(name, SHGFI_ICON | choice).hIcon;
}

HICON Drawn(std::string_view name, int size) {
    return IconOf(DrawPicture(name, size, SystemColours(COLOR_WINDOWTEXT, COLOR_WINDOW)));
}

// Null when neither the system nor we have one for the type.
HICON FileIcon(std::string_view extension, int size) {
    if (const HICON icon = SystemIcon(extension, size)) return icon;
    const auto family = FamilyOf(extension);
    return family.empty() ? nullptr : Drawn(family, size);
}

} // namespace

int IconStore::ListsAlive() { return listsAlive; }

HICON IconFor(std::string_view key, int size) {
    HICON icon = key.starts_with('.') ? FileIcon(key.substr(1), size) : nullptr;
    return icon ? icon : Drawn(key, size);
}

void IconStore::Build(int dpi) {
    Destroy();
    lclSize = Scaled(lclUnits, dpi);
    lclList = ImageList_Duplicate(PicturesOf(PictureSet::Items, lclSize)->Handle());
    if (!lclList) return;
    ++listsAlive;
    const auto own = ItemPictures();
    if (lclEntries.empty())
        for (const auto& row : own) lclEntries.push_back({std::string(row.name), {}});
    for (std::size_t i = own.size(); i < lclEntries.size(); ++i)
        if (!AddToList(lclEntries[i])) AddToList({"unknown", {}}); // the numbers behind must hold
}

void IconStore::Destroy() {
    if (!lclList) return;
    ImageList_Destroy(lclList);
    lclList = nullptr;
    --listsAlive;
}

int IconStore::Index(std::string_view key) const {
    for (std::size_t i = 0; i < lclEntries.size(); ++i)
        if (lclEntries[i].key == key) return static_cast<int>(i);
    return -1;
}

bool IconStore::AddFileIcon(std::string_view extension, std::string_view key) {
    Entry entry{std::string(key), std::string(extension)};
    if (!AddToList(entry)) return false;
    lclEntries.push_back(std::move(entry));
    return true;
}

int IconStore::Of(std::string_view key) {
    if (const int known = Index(key); known >= 0) return known;
    Entry entry{std::string(key), {}};
    if (key.starts_with('.')) entry.extension = key.substr(1);
    // Kept under its key also where it looks like "unknown": the type is asked for once.
    if (!AddToList(entry) && !AddToList({"unknown", {}})) return -1;
    lclEntries.push_back(std::move(entry));
    return static_cast<int>(lclEntries.size()) - 1;
}

bool IconStore::AddToList(const Entry& entry) {
    const HICON icon =
        entry.extension.empty() ? Drawn(entry.key, lclSize) : FileIcon(entry.extension, lclSize);
    if (!icon || !lclList) return false;
    const int index = ImageList_ReplaceIcon(lclList, -1, icon);
    DestroyIcon(icon);
    return index >= 0;
}

} // namespace kavidex::controls::win32
