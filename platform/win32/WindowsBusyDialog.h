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
    void OfferStop(std::string_view caption) override;
    bool StopAsked() override { return lclStopAsked; }
    HWND Handle() const { return lclWindow; } // null while closed

protected:
    // Paints, timers, and posted and sent messages are handled; keys and clicks wait for the end of
    // the work, so that the user cannot start it again inside itself: all but Escape and a click on
    // the button that asks to stop. With `paintOnly` timers and posted messages of other windows
    // wait too; that any were looked for keeps Windows from calling the host hung.
    void Pump(bool paintOnly) override;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l);
    bool Create();
    void ChooseFont();
    void Arrange();
    void Paint() const;
    void Marquee(bool on);
    void TakeInput();
    void AskToStop();

    HWND lclWindow = nullptr, lclText = nullptr, lclBar = nullptr, lclStop = nullptr;
    HFONT lclFont = nullptr;
    int lclDpi = 96, lclWidth = 0;
    bool lclStopAsked = false;
};

} // namespace kavidex::platform::win32
