#include "controls/common/OperationLock.h"

#include "platform/Workstation.h"

namespace kavidex::controls {

Operation::Operation(OperationLock& lock) : lclLock(lock), lclMine(!lock.lclHeld) {
    if (lclMine) lclLock.lclHeld = true;
}

Operation::~Operation() { End(); }

void Operation::End() {
    lclBusy.reset(); // its last messages still find the lock held
    if (lclMine) lclLock.lclHeld = false;
    lclMine = false;
}

void Operation::Show(std::string_view caption, std::string_view text, std::string_view stop) {
    if (!lclMine) return;
    if (lclBusy)
        lclBusy->Text(caption, text);
    else
        lclBusy.emplace(lclLock.lclWorkstation.busy, caption, text, stop);
}

bool Operation::Step(int done, int total) {
    if (!lclMine) return false;
    if (lclBusy) {
        lclBusy->Progress(done, total);
        lclStopped = lclStopped || lclBusy->StopAsked();
    }
    return !lclStopped;
}

} // namespace kavidex::controls
