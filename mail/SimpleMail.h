// The port to whatever mail program there is, through the system's simple mail interface.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "mail/OutgoingMail.h"

namespace kavidex::mail {

enum class SimpleOutcome {
    Sent, // or handed over: more is not told
    NotSent,
    LogonFailed,
    NoProgram, // none that could take it
};

class SimpleMail {
public:
    virtual ~SimpleMail() = default;
    // Shows it to the user, who sends it or not. Throws platform::Error for all but the outcomes.
    virtual SimpleOutcome Send(const OutgoingMail& mail) = 0;
};

// The body for an interface that puts each attachment in the place of one character: blanks behind
// the text, of which the first stands at `first`, counted in UTF-16.
struct BodyWithPlaces {
    std::string body;
    std::size_t first = 0;
};
BodyWithPlaces WithPlaces(std::string_view body, std::size_t attachments);

// What the simple mail function answers.
SimpleOutcome SimpleOutcomeOf(unsigned long code); // throws platform::Error

namespace simple {
constexpr unsigned long success = 0, userAbort = 1, logonFailure = 3, notSupported = 26,
                        unicodeNotSupported = 27;
}

} // namespace kavidex::mail
