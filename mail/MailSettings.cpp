#include "mail/MailSettings.h"

#include "platform/General.h"
#include "platform/text.h"

namespace kavidex::mail {

MailSettings ReadMailSettings(const platform::Workstation& workstation,
                              const data::Translation& translation) {
    const auto read = [&](const char* section, const char* key, const char* fallback) {
        return platform::GetRegSetting(workstation, platform::applicationName, section, key,
                                       fallback);
    };
    MailSettings settings;
    settings.subject = read("Mail", "Subject", "");
    if (platform::TrimView(settings.subject).empty())
        settings.subject = data::Translated(translation, "Emailing:");
    settings.body = read("Mail", "Body", "");
    constexpr double most = 1000; // far beyond any format
    const double format = platform::Val(read("Email", "FormatText", "0"));
    if (format > 0 && format <= most) settings.bodyFormat = static_cast<int>(format);
    settings.retrieve = platform::Trim(read("Mail", "RetrieveSendMail", "1")) != "0";
    return settings;
}

} // namespace kavidex::mail
