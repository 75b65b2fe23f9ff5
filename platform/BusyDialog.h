// The small modeless window (frmBusy) that long work shows: a caption, one line of text, progress,
// and a button that asks the work to stop where it can.
#pragma once

#include <atomic>
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
    // Lets the message loop handle what waits, without blocking; only paints while a PaintOnly
    // lives.
    void PumpMessages() { Pump(PaintsOnly()); }
    bool PaintsOnly() const { return lclPaintOnly > 0; }

protected:
    virtual void Pump(bool paintOnly) = 0;

private:
    friend class BusyScope;
    friend class PaintOnly;
    int lclScopes = 0;
    std::atomic<int> lclPaintOnly = 0; // transactions of several threads
};

// For work within a transaction: what a timer of the host did meanwhile would become a part of it,
// and be undone with it. Windows are painted and the dialog is alive; all else waits.
class PaintOnly {
public:
    explicit PaintOnly(BusyDialog& dialog) : lclDialog(dialog) { ++lclDialog.lclPaintOnly; }
    ~PaintOnly() { --lclDialog.lclPaintOnly; }
    PaintOnly(const PaintOnly&) = delete;
    PaintOnly& operator=(const PaintOnly&) = delete;

private:
    BusyDialog& lclDialog;
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
