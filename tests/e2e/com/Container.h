// The library's own container with one control in a real window: it records what the control tells
// its site.
#pragma once

#include <windows.h>
#include <ole2.h>
#include <olectl.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Library.h"
#include "platform/win32/ole/ControlSite.h"

namespace kavidex::tests {

class Container {
public:
    Container();
    ~Container(); // finds references that the control kept
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    // Sites and connects the control; `show` also activates it in place.
    void Take(const ComPtr<IDispatch>& control, bool show);
    void Drop();
    IOleClientSite* Site() const { return site; }

    HWND window = nullptr;
    RECT place{0, 0, 300, 200};
    bool uiDead = false;
    std::optional<bool> userMode; // false: a form designer
    bool takesKeys = false;       // what the site answers to a key given back
    std::vector<std::string> log; // calls by name
    std::vector<std::pair<DISPID, std::vector<Variant>>> events;
    std::vector<DISPID> changes;
    std::function<void(DISPID, DISPPARAMS&)> onEvent;

    ComPtr<IDispatch> control;
    template <class Interface>
    ComPtr<Interface> As(REFIID iid) const {
        return tests::As<Interface>(control, iid);
    }
    HWND ControlWindow() const { return site->ControlWindow(); }
    std::size_t Count(const std::string& call) const;

private:
    platform::win32::ControlSite* site;
};

} // namespace kavidex::tests
