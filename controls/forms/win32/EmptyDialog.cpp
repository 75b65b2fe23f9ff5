#include "controls/forms/win32/EmptyDialog.h"

#include "platform/win32/Owner.h"

namespace kavidex::controls::forms::win32 {

HWND MakeEmptyDialog(HWND parent, DWORD style, DWORD exStyle, DLGPROC procedure, LPARAM user) {
    struct alignas(DWORD) {
        DLGTEMPLATE head;
        WORD menu, type, title;
    } description{};
    description.head.style = style;
    description.head.dwExtendedStyle = exStyle;
    description.head.cx = description.head.cy = 10;
    return CreateDialogIndirectParamW(platform::win32::OwnModule(), &description.head, parent,
                                      procedure, user);
}

} // namespace kavidex::controls::forms::win32
