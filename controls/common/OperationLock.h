// Long work lets the message loop run, and with it the user and the host: the lock keeps a second
// operation out of the first, and tells how far it is.
#pragma once

#include <optional>
#include <string_view>

#include "platform/BusyDialog.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

// One a binder, shared by its parts. Everything on the thread of the user interface.
class OperationLock {
public:
    explicit OperationLock(const platform::Workstation& workstation)
        : lclWorkstation(workstation) {}
    OperationLock(const OperationLock&) = delete;
    OperationLock& operator=(const OperationLock&) = delete;

    bool Held() const { return lclHeld; }

private:
    friend class Operation;
    const platform::Workstation& lclWorkstation;
    bool lclHeld = false;
};

// One operation, for as long as it lives. False as a condition when another one runs: then it does
// nothing, and the caller must not begin.
class Operation {
public:
    // Without a dialog: for work that shows none, or not yet.
    explicit Operation(OperationLock& lock);
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

    explicit operator bool() const { return lclMine; }

    // Shows the busy dialog; `stop` is the caption of the button that asks to stop, empty where the
    // work cannot stop between two of its steps.
    void Show(std::string_view caption, std::string_view text, std::string_view stop = {});
    // Between two steps: shows how many of all are done and lets messages through. False when the
    // user asked to stop: what is done stays done.
    bool Step(int done, int total);
    bool Stopped() const { return lclStopped; }
    // Closes the dialog and lets the next one begin; the end of its life does so at the latest.
    void End();

private:
    OperationLock& lclLock;
    bool lclMine, lclStopped = false;
    std::optional<platform::BusyScope> lclBusy;
};

} // namespace kavidex::controls
