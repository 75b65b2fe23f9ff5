#include "mail/PromptTool.h"

#include <string>

#include "platform/text.h"

namespace kavidex::mail {

bool IsPromptTool(std::string_view title) {
    return platform::LowerCase(title).find("clickyes") != std::string::npos;
}

} // namespace kavidex::mail
