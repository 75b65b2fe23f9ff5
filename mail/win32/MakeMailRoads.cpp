#include "mail/win32/MakeMailRoads.h"

#include <windows.h>

namespace kavidex::mail::win32 {

MailRoads MakeMailRoads(const platform::Workstation& workstation) {
    return {MakeOutlookAutomation(), MakeSimpleMail(workstation), MakePromptTool(),
            [](std::chrono::milliseconds time) { Sleep(static_cast<DWORD>(time.count())); }};
}

} // namespace kavidex::mail::win32
