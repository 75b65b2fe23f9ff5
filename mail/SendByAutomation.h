// A mail sent with the program that is driven by automation, and found again among the sent ones.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "data/Texts.h"
#include "mail/MailSettings.h"
#include "mail/OutgoingMail.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::mail {

class MailAutomation;
class PromptTool;

struct AutomationTools {
    const platform::Workstation& machine;
    const data::Translation& translation;
    MailAutomation& program;
    PromptTool& prompts;
    const std::function<void(std::chrono::milliseconds)>& pause;
};

// The sent mail may take its time to appear: so many looks, and so long between two, that together
// they last more than a minute.
inline constexpr int searchAttempts = 5000;
inline constexpr std::chrono::milliseconds betweenAttempts{15};

struct AutomationResult {
    static constexpr int sent = 1, notSent = 0, failed = -1;
    int code = notSent;
    std::string saved;       // the sent mail as a file; empty: not looked for, or not found
    std::int32_t number = 0; // of the error where it failed
    std::string error;
};

// Never throws. `folder` takes the saved mail.
AutomationResult SendByAutomation(const AutomationTools& tools, const OutgoingMail& mail,
                                  const MailSettings& settings, const std::string& folder);

} // namespace kavidex::mail
