// A window of the sample host with one control of an administrator in it.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "platform/win32/ole/ControlSite.h"

namespace kavidex::host {

// A Tab that the only control of a window gives back goes around in it.
std::function<bool(MSG&, DWORD)> TabAround(HWND frame);

class ControlFrame {
public:
    // Shows the control to a user with these rights; throws platform::Error where it cannot be
    // made.
    ControlFrame(HWND owner, const wchar_t* progId, const std::string& title,
                 const platform::win32::ComPtr<IDispatch>& connection,
                 const platform::win32::ComPtr<IDispatch>& rights, std::string saveQuestion);
    ~ControlFrame();
    ControlFrame(const ControlFrame&) = delete;
    ControlFrame& operator=(const ControlFrame&) = delete;

    bool IsOpen() const { return lclWindow != nullptr; }
    bool TranslateKey(MSG& message) {
        return lclWindow && GetAncestor(message.hwnd, GA_ROOT) == lclWindow &&
               lclSite->TranslateKey(message);
    }
    bool MayClose(); // asks about what is not saved
    void Close();    // without a question

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
    LRESULT Handle(UINT message, WPARAM w, LPARAM l);
    std::string lclSaveQuestion;
    HWND lclWindow = nullptr;
    platform::win32::ControlSite* lclSite = nullptr;
};

} // namespace kavidex::host
