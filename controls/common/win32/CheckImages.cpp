#include "controls/common/win32/CheckImages.h"

#include <commctrl.h>

#include <iterator>
#include <string_view>

namespace kavidex::controls::win32 {

namespace {

constexpr UINT_PTR subclass = 17;

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                           DWORD_PTR setImages) {
    if (message == WM_DESTROY) {
        static_assert(LVSIL_STATE == TVSIL_STATE);
        const auto images = SendMessageW(window, static_cast<UINT>(setImages), LVSIL_STATE, 0);
        if (images) ImageList_Destroy(reinterpret_cast<HIMAGELIST>(images));
    }
    if (message == WM_NCDESTROY) RemoveWindowSubclass(window, Procedure, subclass);
    return DefSubclassProc(window, message, w, l);
}

} // namespace

void FreeCheckImages(HWND list) {
    wchar_t name[32] = L"";
    GetClassNameW(list, name, static_cast<int>(std::size(name)));
    const bool tree = std::wstring_view(name) == WC_TREEVIEWW;
    SetWindowSubclass(list, Procedure, subclass, tree ? TVM_SETIMAGELIST : LVM_SETIMAGELIST);
}

} // namespace kavidex::controls::win32
