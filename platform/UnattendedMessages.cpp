#include "platform/UnattendedMessages.h"

#include "platform/Error.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Registry.h"
#include "platform/text.h"

namespace kavidex::platform {

bool UnattendedMessages::Unattended() const {
    try {
        const auto option = lclRegistry.Read(applicationName, "DebugFlags", "Unattended");
        return option && EqualNoCase(*option, "True");
    } catch (const Error& error) {
        lclLog.Write("Unattended", error.what());
        return false;
    }
}

Answer UnattendedMessages::Show(const Message& message) {
    if (!Unattended()) return lclBoxes.Show(message);
    lclLog.Write("message", message.caption + ": " + message.text);
    switch (message.buttons) {
    case Buttons::Ok: return Answer::Ok;
    case Buttons::YesNo: return Answer::No;
    default: return Answer::Cancel;
    }
}

} // namespace kavidex::platform
