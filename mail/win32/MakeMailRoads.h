// The real mail program, the system's simple mail, and the window of the prompt tool.
#pragma once

#include "mail/MailRoads.h"

namespace kavidex::mail::win32 {

MailRoads MakeMailRoads(const platform::Workstation& workstation);

// Parts of it.
std::shared_ptr<MailAutomation> MakeOutlookAutomation();
std::shared_ptr<PromptTool> MakePromptTool();
std::shared_ptr<SimpleMail> MakeSimpleMail(const platform::Workstation& workstation);

} // namespace kavidex::mail::win32
