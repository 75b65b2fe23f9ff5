#include "controls/intake/IntakeSite.h"

#include <utility>

#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

std::string IntakeSite::Text(std::string_view text, const std::vector<std::string>& values) const {
    const auto translator = Translate();
    return translator ? translator->Translate(text, values)
                      : platform::FillPlaceholders(text, values);
}

void IntakeSite::Tell(std::string_view text, const std::vector<std::string>& values) const {
    TellReady(Text(text, values));
}

void IntakeSite::TellReady(std::string text) const {
    platform::Message message;
    message.text = std::move(text);
    message.icon = platform::Icon::Exclamation;
    Machine().messages.Show(message);
}

bool IntakeSite::Ask(std::string question, std::string_view caption) const {
    return Machine().messages.Show({std::move(question), std::string(caption),
                                    platform::Buttons::YesNo, platform::Icon::Question}) ==
           platform::Answer::Yes;
}

} // namespace kavidex::controls
