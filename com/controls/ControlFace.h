// The COM face of a control's logic: what the controls of the house have in common on this side.
#pragma once

#include <olectl.h>

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "com/control/Control.h"
#include "com/controls/HostObjects.h"

// Rows of one property of the logic that can be read and written: Name() and SetName(value).
#define KAVIDEX_GETLET(Name, id)                                                                   \
    Row::template Get<&Logic::Name>(L"" #Name, id),                                                \
        Row::template Put<&Logic::Set##Name>(L"" #Name, id)
// The same for a property of the face that holds an object.
#define KAVIDEX_GETSET(Name, id)                                                                   \
    Row::template Get<&Self::Name>(L"" #Name, id),                                                 \
        Row::template PutRef<&Self::Set##Name>(L"" #Name, id)

namespace kavidex::com {

// The id of an event by its name, looked up while compiling.
template <std::size_t count>
consteval DISPID EventId(const EventRow (&table)[count], std::wstring_view name) {
    for (const EventRow& row : table)
        if (row.name == name) return row.id;
    throw "no such event";
}

template <class L>
class ControlFace : public Control {
public:
    template <class... Arguments>
    explicit ControlFace(const ClassRow& row, Arguments&&... arguments)
        : Control(row), lclLogic(std::make_unique<L>(std::forward<Arguments>(arguments)...)) {
        RaiseStandardEvents();
    }

    L& Logic() const { return *lclLogic; }

    // The host gets back the very objects that it gave,
    // or, where it gave none, the translator that the control made itself.
    ComPtr<IDispatch> Translate() const {
        if (!lclTranslate) lclTranslate = TranslatorFace(Logic().Translate());
        return lclTranslate;
    }
    void SetTranslate(const ComPtr<IDispatch>& object) {
        auto translator = TranslatorOf(object);
        lclTranslate = object; // what the logic hands on is the host's own
        Logic().SetTranslate(std::move(translator));
    }
    ComPtr<IDispatch> UserAuth() const { return lclUserAuth; }
    void SetUserAuth(const ComPtr<IDispatch>& object) {
        auto rights = RightsOf(object);
        lclUserAuth = object;
        Logic().SetUserAuth(std::move(rights));
    }
    ComPtr<IDispatch> Font() const { return FontObject(Logic().Font()); }
    void SetFont(const ComPtr<IDispatch>& object) { Logic().SetFont(FontFrom(object)); }

    void LoadProperties(controls::PropertyBag& bag) override { Logic().LoadProperties(bag); }
    void SaveProperties(controls::PropertyBag& bag) const override { Logic().SaveProperties(bag); }

protected:
    ~ControlFace() override {
        Shutdown();       // the window first, it draws from the logic
        lclLogic.reset(); // its last events still find their subscribers
    }

    template <class Event, class Handler>
    void On(Event& event, Handler handler) {
        lclSubscriptions.push_back(event.Subscribe(std::move(handler)));
    }

private:
    void RaiseStandardEvents() {
        auto& logic = Logic();
        On(logic.PropertyChanged, [this](std::string_view name) { Changed(name); });
        if constexpr (requires { logic.Click; }) RaiseInput(logic);
    }
    void RaiseInput(L& logic) {
        On(logic.Click, [this] { Raise(DISPID_CLICK); });
        On(logic.DblClick, [this] { Raise(DISPID_DBLCLICK); });
        On(logic.KeyDown,
           [this](std::int16_t& key, std::int16_t shift) { Raise(DISPID_KEYDOWN, &key, shift); });
        On(logic.KeyUp,
           [this](std::int16_t& key, std::int16_t shift) { Raise(DISPID_KEYUP, &key, shift); });
        On(logic.KeyPress, [this](std::int16_t& key) { Raise(DISPID_KEYPRESS, &key); });
        RaiseMouse(logic.MouseDown, DISPID_MOUSEDOWN);
        RaiseMouse(logic.MouseMove, DISPID_MOUSEMOVE);
        RaiseMouse(logic.MouseUp, DISPID_MOUSEUP);
    }
    template <class Event>
    void RaiseMouse(Event& event, DISPID id) {
        On(event, [this, id](std::int16_t button, std::int16_t shift, float x, float y) {
            Raise(id, button, shift, x, y);
        });
    }

    std::vector<std::shared_ptr<void>> lclSubscriptions;
    std::unique_ptr<L> lclLogic;
    mutable ComPtr<IDispatch> lclTranslate;
    ComPtr<IDispatch> lclUserAuth;
};

} // namespace kavidex::com
