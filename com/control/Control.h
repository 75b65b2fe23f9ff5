// A control as hosts see it: automation, the OLE control protocol, persistence and events together.
// A control of the house derives from it, binds its rows to its logic, makes its window, and raises
// its events.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "com/control/ClassInfo.h"
#include "com/control/ConnectionPointHub.h"
#include "com/control/OleControl.h"
#include "com/control/OleInPlace.h"
#include "com/control/OleInPlaceActive.h"
#include "com/control/OleObject.h"
#include "com/control/PersistBag.h"
#include "com/control/PersistStore.h"
#include "com/control/PersistStream.h"
#include "com/control/PropertyBrowsing.h"
#include "com/control/ViewObject.h"
#include "com/dispatch/Automation.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::com {

// A yes/no variable that a handler may change.
struct Flagged {
    VARIANT_BOOL* flag;
};

// One event of a control, as the type library has it.
struct EventRow {
    const wchar_t* name;
    DISPID id;
};

class Control : public Automation,
                public OleObject,
                public OleInPlace,
                public OleInPlaceActive,
                public OleControl,
                public ViewObject,
                public PersistStream,
                public PersistBag,
                public PersistStore,
                public ClassInfo,
                public PropertyBrowsing,
                public ConnectionPointHub,
                public ControlOwner,
                public PersistentOwner {
public:
    explicit Control(const ClassRow& row);

    const ClassRow& Class() const final { return lclRow; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) final {
        return Automation::QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() final { return Automation::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() final { return Automation::Release(); }

    // Shared by several of the interfaces.
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) final;
    HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) final;
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) final { return S_OK; }

protected:
    // A derived destructor calls Shutdown first: the window needs the logic.
    ~Control() override;
    // Leaves the host at once; what a call into the control still needs goes after that call.
    void Destroy() final;
    void Shutdown();

    void* Further(REFIID iid) override;
    ControlCore& Core() final { return lclCore; }
    PersistentOwner& Persistent() final { return *this; }
    Automation& Browsed() final { return *this; }
    IOleObject& Object() final { return *this; }
    IOleInPlaceActiveObject& ActiveObject() final { return *this; }

    // Calls the host's handlers; arguments in the order of the declaration. A variable that
    // handlers may change is given by pointer. Nothing is raised while the host has events frozen.
    template <class... Arguments>
    void Raise(DISPID event, Arguments&&... arguments) {
        Variant list[sizeof...(Arguments) + 1] = {Out(std::forward<Arguments>(arguments))...};
        RaiseList(event, {list, sizeof...(Arguments)});
    }
    // Tells the host that a saved property changed. A name that is no member's reports "several".
    void Changed(std::string_view savedName);

private:
    static Variant Reference(VARTYPE type, void* place);
    static Variant Out(std::int16_t* value) { return Reference(VT_I2, value); }
    static Variant Out(std::int32_t* value) { return Reference(VT_I4, value); }
    static Variant Out(Flagged value) { return Reference(VT_BOOL, value.flag); }
    static Variant Out(float value) {
        VARIANT raw;
        raw.vt = VT_R4;
        raw.fltVal = value;
        return Variant::Attach(raw);
    }
    template <class T>
    static Variant Out(T&& value) {
        return Variant(std::forward<T>(value));
    }
    void RaiseList(DISPID event, std::span<const Variant> arguments);

    const ClassRow& lclRow;
    ControlCore lclCore;
};

} // namespace kavidex::com
