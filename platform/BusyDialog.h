// The small modeless window (frmBusy) that long work shows: a caption, one line of text, progress,
// and a button that asks the work to stop where it can.
#pragma once

#include <string_view>

namespace kavidex::platform {

class BusyDialog {
public:
    virtual ~BusyDialog() = default;

    // Shows the window, or changes its texts when it is up already.
    virtual void Show(std::string_view caption, std::string_view text) = 0;
    virtual void Progress(int done, int total) = 0; // total 0: unknown length
    virtual void Close() = 0;                       // must not throw
    // A button of that caption (empty: none) in the window that is up; whether it, or the Escape
    // key, was pressed since.
    virtual void OfferStop(std::string_view caption) = 0;
    virtual bool StopAsked() = 0;
    // Lets the message loop handle what waits, without blocking.
    virtual void PumpMessages() = 0;

private:
    friend class BusyScope;
    int lclScopes = 0;
};

// Closes the dialog on every way out; nested scopes close it with the outermost.
class BusyScope {
public:
    // `stop`: the caption of the button that asks to stop; empty: none, as for nested scopes.
    BusyScope(BusyDialog& dialog, std::string_view caption, std::string_view text,
              std::string_view stop = {});
    ~BusyScope();
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

    void Text(std::string_view caption, std::string_view text);
    void Progress(int done, int total);
    bool StopAsked() const { return lclDialog.StopAsked(); }

private:
    BusyDialog& lclDialog;
};

} // namespace kavidex::platform
