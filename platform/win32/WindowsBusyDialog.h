// frmBusy: a small window over the host's that never takes the focus.
#pragma once

#include <string>

#include <windows.h>

#include "platform/BusyDialog.h"

namespace kavidex::platform::win32 {

class WindowsBusyDialog : public BusyDialog {
public:
    ~WindowsBusyDialog() override { Close(); }

    void Show(std::string_view caption, std::string_view text) override;
    void Progress(int done, int total) override;
    void Close() override;
    // Paints, timers, and posted and sent messages are handled; keys and clicks wait for the end of
    // the work, so that the user cannot start it again inside itself.
    void PumpMessages() override;

    HWND Handle() const { return lclWindow; } // null while closed

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
    bool Create();
    void ChooseFont();
    void Arrange();
    void Marquee(bool on);

    HWND lclWindow = nullptr, lclText = nullptr, lclBar = nullptr;
    HFONT lclFont = nullptr;
    int lclDpi = 96;
};

} // namespace kavidex::platform::win32
