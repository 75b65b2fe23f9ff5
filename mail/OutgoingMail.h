// A mail as the user gets it to see before it is sent.
#pragma once

#include <string>
#include <vector>

namespace kavidex::mail {

struct MailAttachment {
    std::string path;
    std::string name; // as the mail shows it
};

struct OutgoingMail {
    std::string address; // may be empty
    std::string subject, body;
    std::vector<MailAttachment> attachments;
};

} // namespace kavidex::mail
