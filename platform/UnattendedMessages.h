// Message boxes where nobody may be there to answer: a service, a script in the night. With the
// workstation option "Unattended" (section "DebugFlags") the texts go to the log, and the answer is
// the careful one: Ok where that is all there is, otherwise No or Cancel.
#pragma once

#include "platform/Messages.h"

namespace kavidex::platform {

class Log;
class Registry;

class UnattendedMessages : public Messages {
public:
    UnattendedMessages(Messages& boxes, Registry& registry, Log& log)
        : lclBoxes(boxes), lclRegistry(registry), lclLog(log) {}
    Answer Show(const Message& message) override;

private:
    bool Unattended() const;

    Messages& lclBoxes;
    Registry& lclRegistry;
    Log& lclLog;
};

} // namespace kavidex::platform
