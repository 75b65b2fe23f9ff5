#include "mail/SimpleMail.h"

#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::mail {

BodyWithPlaces WithPlaces(std::string_view body, std::size_t attachments) {
    BodyWithPlaces result{std::string(body), 0};
    if (attachments == 0) return result;
    if (!body.empty()) result.body += "\r\n";
    result.first = platform::ToUtf16(result.body).size();
    result.body.append(attachments, ' ');
    return result;
}

SimpleOutcome SimpleOutcomeOf(unsigned long code) {
    switch (code) {
    case simple::success: return SimpleOutcome::Sent;
    case simple::userAbort: return SimpleOutcome::NotSent;
    case simple::logonFailure: return SimpleOutcome::LogonFailed;
    case simple::notSupported: return SimpleOutcome::NoProgram;
    default:
        throw platform::Error(platform::errors::fail,
                              "The mail program answered " + std::to_string(code));
    }
}

} // namespace kavidex::mail
