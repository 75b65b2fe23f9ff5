// The ways by which mail leaves this workstation.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::mail {

class MailAutomation;
class PromptTool;
class SimpleMail;

struct MailRoads {
    std::shared_ptr<MailAutomation> automation;
    std::shared_ptr<SimpleMail> simple;
    std::shared_ptr<PromptTool> prompts;
    std::function<void(std::chrono::milliseconds)> pause; // between two looks at the sent folder
};

} // namespace kavidex::mail
