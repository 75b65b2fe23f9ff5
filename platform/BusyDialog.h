// The small modeless window (frmBusy) that long work shows: a caption, one line of text, progress.
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
    // Lets the message loop handle what waits, without blocking.
    virtual void PumpMessages() = 0;

private:
    friend class BusyScope;
    int lclScopes = 0;
};

// Closes the dialog on every way out; nested scopes close it with the outermost.
class BusyScope {
public:
    BusyScope(BusyDialog& dialog, std::string_view caption, std::string_view text);
    ~BusyScope();
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

    void Text(std::string_view caption, std::string_view text);
    void Progress(int done, int total);

private:
    BusyDialog& lclDialog;
};

} // namespace kavidex::platform
