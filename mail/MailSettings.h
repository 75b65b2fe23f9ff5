// What the workstation's options say of mails that are sent from here.
#pragma once

#include <string>

#include "data/Texts.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::mail {

struct MailSettings {
    std::string subject; // never empty
    std::string body;
    int bodyFormat = 0;   // as the mail program numbers them; 0: its own choice
    bool retrieve = true; // look for the sent mail
};

MailSettings ReadMailSettings(const platform::Workstation& workstation,
                              const data::Translation& translation);

} // namespace kavidex::mail
