// Which mail program the machine names as its default one.
#pragma once

#include <string_view>

namespace kavidex::mail {

// In the numbers of the default client query; only the first is driven by automation.
enum class MailClient {
    MicrosoftOutlook = 0,
    OutlookExpress = 1,
    LotusNotes = 2,
    Tobit = 3,
    Other = 4
};

// Of the name as the machine has it (Shell::MailClient), without case and blanks around it.
MailClient MailClientOf(std::string_view name);

} // namespace kavidex::mail
