// A window whose messages go to an object of ours.
#pragma once

#include <exception>

#include <windows.h>

#include "controls/common/win32/GdiObject.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/OwnCall.h"
#include "platform/win32/Owner.h"

namespace kavidex::controls::win32 {

// Registers the class on first use; `object` receives the messages through its
//     LRESULT Handle(UINT message, WPARAM w, LPARAM l)
// and keeps the handle in `window` from the first message to the last. Null when Windows refuses.
// No exception passes to Windows: what is thrown goes into the log.
template <class Object>
class WindowOf {
public:
    static HWND Create(Object& object, HWND& window, const wchar_t* className, const wchar_t* title,
                       DWORD style, DWORD exStyle, const RECT& place, HWND parent,
                       const platform::Workstation& workstation) {
        const HINSTANCE module = platform::win32::OwnModule();
        WNDCLASSEXW type{};
        type.cbSize = sizeof type;
        if (!GetClassInfoExW(module, className, &type)) {
            type = {};
            type.cbSize = sizeof type;
            type.style = CS_DBLCLKS;
            type.lpfnWndProc = Procedure;
            type.hInstance = module;
            type.hCursor = LoadCursorW(nullptr, IDC_ARROW);
            type.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
            type.lpszClassName = className;
            if (!RegisterClassExW(&type)) return nullptr;
        }
        Binding binding{&object, &window, &workstation};
        CreateWindowExW(exStyle, className, title, style, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, parent, nullptr, module,
                        &binding);
        return window;
    }

private:
    struct Binding {
        Object* object;
        HWND* window;
        const platform::Workstation* workstation;
    };

    static LRESULT CALLBACK Procedure(HWND handle, UINT message, WPARAM w, LPARAM l) {
        auto* binding = reinterpret_cast<Binding*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
        if (message == WM_NCCREATE) {
            binding = new Binding(
                *static_cast<Binding*>(reinterpret_cast<CREATESTRUCTW*>(l)->lpCreateParams));
            *binding->window = handle;
            SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(binding));
        }
        if (!binding) return DefWindowProcW(handle, message, w, l);
        const platform::win32::OwnCall call; // the host may drop the control meanwhile
        const platform::Workstation& workstation = *binding->workstation;
        LRESULT result = 0;
        try {
            result = binding->object->Handle(message, w, l); // may end the window, and the binding
        } catch (const std::exception& error) {
            workstation.log.Write("window", error.what());
        }
        if (message == WM_NCDESTROY) {
            SetWindowLongPtrW(handle, GWLP_USERDATA, 0);
            *binding->window = nullptr;
            delete binding;
        }
        return result;
    }
};

} // namespace kavidex::controls::win32
