// Pictures of ours, drawn once for all windows that show them in one size and one look. A form
// that is shown again draws none.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include <commctrl.h>

#include "controls/pictures/Pictures.h"

namespace kavidex::controls::win32 {

enum class PictureSet {
    Items,  // on the ground of a window: all of ItemPictures() in their order, and no other
    Buttons // on the ground of a button: each from its first use on
};

class SharedPictures {
public:
    SharedPictures(PictureSet set, int size, const PictureColours& colours);
    ~SharedPictures();
    SharedPictures(const SharedPictures&) = delete;
    SharedPictures& operator=(const SharedPictures&) = delete;

    HIMAGELIST Handle() const { return lclList; }
    HIMAGELIST Faint() const { return lclFaint; } // of Buttons: as they look when disabled
    int Index(std::string_view name);             // the same in both; -1: Windows refuses it
    bool Is(PictureSet set, int size, const PictureColours& colours) const;

private:
    PictureSet lclSet;
    int lclSize;
    PictureColours lclColours;
    HIMAGELIST lclList, lclFaint = nullptr;
    std::vector<std::string> lclNames;
};

// In the system's present colours; `size` in pixels.
std::shared_ptr<SharedPictures> PicturesOf(PictureSet set, int size);

// Destroys those that no window shows; before the library goes.
void ReleasePictures();

} // namespace kavidex::controls::win32
