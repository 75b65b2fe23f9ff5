// A window as a target of OLE drags, with the dragged object's image where the shell draws one.
#pragma once

#include <windows.h>

#include <functional>

#include <ole2.h>

#include "controls/exchange/DragDrop.h"
#include "platform/win32/ComPtr.h"

struct IDropTargetHelper;

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls::win32 {

// A window that takes drops for as long as this object, and OLE, hold it; Revoke before the window
// goes. The system may keep the target longer: it reports nothing any more then.
class DropRegistration {
public:
    DropRegistration() = default;
    ~DropRegistration() { Revoke(); }
    DropRegistration(const DropRegistration&) = delete;
    DropRegistration& operator=(const DropRegistration&) = delete;

    // A refusal leaves a line in the log: the window works without.
    void Register(HWND window, DropReceiver& receiver, const platform::Workstation& workstation);
    void Revoke();
    IDropTarget* Target() const { return lclTarget.Get(); }

private:
    platform::win32::ComPtr<IDropTarget> lclTarget;
    HWND lclWindow = nullptr;
    bool lclOleReady = false;
};

// What the source of a drag hears; what is not set is not asked.
struct DragListeners {
    std::function<void()> dataAsked{}; // a target asks for the text, the first time
    std::function<void(std::int32_t& effect, bool& defaultPointers)> feedback{};
};

// Drags the data as the left button is held, from `window`, which lends its look to the image;
// waits until it is dropped. The effect, none when it was dropped nowhere.
std::int32_t Drag(const DropData& data, std::int32_t allowed, HWND window,
                  const DragListeners& listeners = {});

} // namespace kavidex::controls::win32
