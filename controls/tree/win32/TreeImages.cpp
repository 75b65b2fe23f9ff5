#include "controls/tree/win32/TreeImages.h"

#include <algorithm>
#include <cstring>

#include <shellapi.h>

#include "controls/common/win32/Look.h"
#include "controls/tree/IconShapes.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

namespace {

int listsAlive = 0;

std::uint32_t RgbOf(int systemColour) {
    const COLORREF colour = GetSysColor(systemColour);
    return static_cast<std::uint32_t>(GetRValue(colour) << 16 | GetGValue(colour) << 8 |
                                      GetBValue(colour));
}

HICON IconOf(const Picture& picture) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = picture.size;
    info.bmiHeader.biHeight = -picture.size; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    ICONINFO icon{};
    icon.fIcon = TRUE;
    icon.hbmColor = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    // The mask serves displays that know no alpha.
    const int stride = (picture.size + 15) / 16 * 2;
    std::vector<BYTE> mask(static_cast<std::size_t>(stride) * picture.size);
    for (int line = 0; line < picture.size; ++line)
        for (int column = 0; column < picture.size; ++column) {
            const auto pixel = picture.pixels[static_cast<std::size_t>(line) * picture.size + column];
            if (pixel >> 24 < 128)
                mask[static_cast<std::size_t>(line) * stride + column / 8] |=
                    static_cast<BYTE>(0x80 >> column % 8);
        }
    icon.hbmMask = CreateBitmap(picture.size, picture.size, 1, 1, mask.data());
    HICON result = nullptr;
    if (bits && icon.hbmMask) {
        // Icons hold colours that are not multiplied by alpha.
        auto* target = static_cast<std::uint32_t*>(bits);
        for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
            const auto pixel = picture.pixels[i];
            const auto alpha = pixel >> 24;
            std::uint32_t plain = alpha << 24;
            for (int shift = 0; alpha && shift < 24; shift += 8)
                plain |= std::min<std::uint32_t>(255, ((pixel >> shift) & 255) * 255 / alpha)
                         << shift;
            target[i] = plain;
        }
        result = CreateIconIndirect(&icon);
    }
    if (icon.hbmColor) DeleteObject(icon.hbmColor);
    if (icon.hbmMask) DeleteObject(icon.hbmMask);
    return result;
}

HICON SystemIcon(const std::string& extension, int size) {
    const auto name = L"x." + platform::win32::ToWide(extension);
    const UINT choice =
        size > GetSystemMetrics(SM_CXSMICON) ? SHGFI_LARGEICON : SHGFI_SMALLICON;
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
        for (const auto key : PictureKeys()) lclEntries.push_back({std::string(key), {}});
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
        const PictureColours colours{HighContrast(), RgbOf(COLOR_WINDOWTEXT), RgbOf(COLOR_WINDOW)};
        icon = IconOf(DrawPicture(entry.key, lclSize, colours));
    } else {
        icon = SystemIcon(entry.extension, lclSize);
    }
    if (!icon || !lclList) return false;
    const int index = ImageList_ReplaceIcon(lclList, -1, icon);
    DestroyIcon(icon);
    return index >= 0;
}

} // namespace kavidex::controls::win32
