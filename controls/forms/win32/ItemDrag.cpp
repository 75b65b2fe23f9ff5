#include "controls/forms/win32/ItemDrag.h"

#include <commctrl.h>

namespace kavidex::controls::forms::win32 {

namespace {

class Drag {
public:
    Drag(Form& form, const Field& source, FormLook& look, std::vector<std::int32_t> ids)
        : lclForm(form), lclSource(source), lclLook(look), lclIds(std::move(ids)) {}

    void Run() {
        SetCapture(lclLook.dialog);
        MSG message;
        while (GetCapture() == lclLook.dialog && GetMessageW(&message, nullptr, 0, 0) > 0) {
            const bool up = message.message == WM_LBUTTONUP;
            if (message.message == WM_MOUSEMOVE || up) Move(message.pt);
            if (up) break;
            if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) {
                Mark(nullptr, 0, Place::On);
                break;
            }
            if (message.message == WM_QUIT) PostQuitMessage(static_cast<int>(message.wParam));
            if (message.message != WM_MOUSEMOVE) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
        if (GetCapture() == lclLook.dialog) ReleaseCapture();
        FieldControl* target = lclTarget;
        Mark(nullptr, 0, Place::On);
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
        if (target) lclForm.Raise(Event(*target, What::Dropped));
    }

private:
    FieldEvent Event(FieldControl& target, What what) const {
        return {.field = target.Of(),
                .what = what,
                .item = lclItem,
                .source = &lclSource,
                .dragged = lclIds,
                .place = lclPlace};
    }

    void Move(POINT point) {
        FieldControl* control =
            lclLook.controlOf ? lclLook.controlOf(WindowFromPoint(point)) : nullptr;
        Place place = Place::On;
        const std::int32_t item = control ? control->ItemAt(point, place) : 0;
        if (control && lclForm.Handles(control->Of(), What::DragOver)) {
            lclItem = item;
            lclPlace = place;
            if (!lclForm.Raise(Event(*control, What::DragOver))) control = nullptr;
        } else {
            control = nullptr;
        }
        Mark(control, item, place);
        SetCursor(LoadCursorW(nullptr, control ? IDC_ARROW : IDC_NO));
    }

    void Mark(FieldControl* control, std::int32_t item, Place place) {
        if (lclTarget && lclTarget != control) lclTarget->MarkDrop(0, Place::On);
        lclTarget = control;
        if (control) control->MarkDrop(item, place);
    }

    Form& lclForm;
    const Field& lclSource;
    FormLook& lclLook;
    std::vector<std::int32_t> lclIds;
    FieldControl* lclTarget = nullptr;
    std::int32_t lclItem = 0;
    Place lclPlace = Place::On;
};

} // namespace

void BeginItemDrag(Form& form, const Field& source, FormLook& look, std::vector<std::int32_t> ids) {
    if (!ids.empty()) Drag(form, source, look, std::move(ids)).Run();
}

} // namespace kavidex::controls::forms::win32
