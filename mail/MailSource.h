// The port to the user's mail program: what is being dragged out of it, and what it says of a saved
// mail. Every call throws platform::Error when the program is not there or does not answer.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"

namespace kavidex::mail {

struct DraggedItem {
    std::string typeName; // "MailItem" for a mail
    std::string subject;
    std::function<void(std::string_view path)> save;
};

struct DraggedAttachment {
    std::string displayName, fileName;
    std::function<void(std::string_view path)> save;
};

struct Dragged {
    std::vector<DraggedItem> selection; // of the active explorer
    // Of the mail that is open in the active window, or of the only one selected there.
    std::vector<DraggedAttachment> attachments;
};

// What could not be read is not there.
struct MailFacts {
    std::optional<std::string> receivedByName, senderName;
    std::optional<platform::DateTime> sentOn, receivedTime;
    std::optional<int> attachments;
};

class MailSource {
public:
    virtual ~MailSource() = default;
    virtual Dragged WhatIsDragged() = 0;
    virtual MailFacts FactsOf(std::string_view savedMail) = 0;
};

} // namespace kavidex::mail
