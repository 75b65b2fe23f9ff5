#include "mail/MailProgram.h"
#include "platform/Error.h"

namespace kavidex::mail {

std::unique_ptr<OpenedMail> OpenByMailProgram(const platform::Workstation&, const std::string&) {
    throw platform::Error(platform::errors::fail, "There is no mail program here.");
}

} // namespace kavidex::mail
