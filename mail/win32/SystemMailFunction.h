// The system's simple mail function, MAPISendMailW or MAPISendMail. It shows the mail and returns
// when the user is done with it, so it runs in a thread of its own.
#pragma once

#include "mail/SimpleMail.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::mail::win32 {

// Meanwhile this thread handles its messages, with its window closed to the user. Throws
// platform::Error.
SimpleOutcome SendByMailFunction(const platform::Workstation& workstation,
                                 const OutgoingMail& mail);

} // namespace kavidex::mail::win32
