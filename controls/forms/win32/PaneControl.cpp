// Room for another control of the house.
#include "controls/forms/win32/ControlPane.h"
#include "controls/forms/win32/FieldControl.h"

namespace kavidex::controls::forms::win32 {

namespace {

class PaneControl final : public FieldControl {
public:
    using FieldControl::FieldControl;
    ~PaneControl() override {
        if (auto* window = Content()) window->Destroy();
    }

    bool Create(HWND parent, int id) override {
        if (!Child(parent, id, L"STATIC", WS_GROUP | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT))
            return false;
        auto* window = Content();
        return !window || window->Create(lclWindow, {0, 0, 1, 1});
    }
    void MoveTo(const RECT& place) override {
        FieldControl::MoveTo(place);
        if (auto* window = Content())
            window->Place({0, 0, place.right - place.left, place.bottom - place.top});
    }
    bool Owns(HWND window) const override {
        return FieldControl::Owns(window) || (window && IsChild(lclWindow, window));
    }

private:
    controls::win32::ControlWindow* Content() const {
        const auto* pane = dynamic_cast<ControlPane*>(lclField.Pane());
        return pane ? pane->window.get() : nullptr;
    }
};

} // namespace

std::unique_ptr<FieldControl> MakePaneControl(Form& form, Field& field, FormLook& look) {
    return std::make_unique<PaneControl>(form, field, look);
}

} // namespace kavidex::controls::forms::win32
