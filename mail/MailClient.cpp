#include "mail/MailClient.h"

#include "platform/text.h"

namespace kavidex::mail {

MailClient MailClientOf(std::string_view name) {
    struct Row {
        std::string_view name;
        MailClient client;
    };
    constexpr Row rows[] = {{"microsoft outlook", MailClient::MicrosoftOutlook},
                            {"outlook express", MailClient::OutlookExpress},
                            {"lotus notes", MailClient::LotusNotes},
                            {"tobit", MailClient::Tobit}};
    const auto wanted = platform::LowerCase(platform::TrimView(name));
    for (const auto& row : rows)
        if (row.name == wanted) return row.client;
    return MailClient::Other;
}

} // namespace kavidex::mail
