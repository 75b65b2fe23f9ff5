// What a saved mail (.msg) says of itself, read from the file without a mail program.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"

namespace kavidex::mail {

class Storage;

struct MailAddress {
    enum class Kind { To, Copy, BlindCopy };
    Kind kind = Kind::To;
    std::string name, address;
};

// All texts in UTF-8; what the file does not hold is empty. Times are local.
struct SavedMail {
    std::string subject, senderName, senderAddress;
    std::string receivedByName; // empty for a mail that was sent from here
    std::string to, copy;       // as the mail program shows them
    std::vector<MailAddress> recipients;
    std::optional<platform::DateTime> sentOn, receivedOn;
    std::string html, text;
    std::size_t attachmentCount = 0;
    std::vector<std::string> attachments; // names of the first thousand
};

// Throws platform::Error when the file is no saved mail or cannot be read. Of a damaged mail what
// can be read is given.
SavedMail ReadSavedMail(std::string_view path);
SavedMail ReadSavedMail(Storage& file);

} // namespace kavidex::mail
