// The separate components that documents come and go by; null where this build or a test has none.
#pragma once

#include <functional>
#include <memory>

#include "mail/MailRoads.h"

namespace kavidex::mail {
class MailSource;
}

namespace kavidex::controls {

class LetterGenerator;

struct IntakeComponents {
    std::shared_ptr<mail::MailSource> mail;
    // A new one for each letter; throws platform::Error where it cannot be had.
    std::function<std::unique_ptr<LetterGenerator>()> letters;
    std::shared_ptr<const mail::MailRoads> sending = {};
};

} // namespace kavidex::controls
