#include "controls/common/GrantedRights.h"

#include <utility>

#include "model/Store.h"
#include "model/clsUserAuth.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

void GrantedRights::Set(std::shared_ptr<model::clsUserAuth> rights,
                        data::ConnectionPtr connection) {
    lclUserAuth = std::move(rights);
    lclConnection = std::move(connection);
    lclAnswers.clear();
    lclEnforced.reset();
    lclTold = lclUnread = false;
}

// model::UseRights answers for an unreadable switch too; what is kept here must have been read.
bool GrantedRights::Enforced() const {
    if (lclEnforced) return *lclEnforced;
    const auto& connection =
        lclUserAuth && lclUserAuth->DbConnection() ? lclUserAuth->DbConnection() : lclConnection;
    if (!connection) return true;
    const auto use = model::ReadSetting(lclWorkstation, connection, "Rights", "Use");
    return *(lclEnforced = use && platform::EqualNoCase(*use, "true"));
}

bool GrantedRights::Has(std::string_view right) const {
    const std::string key(right);
    if (const auto known = lclAnswers.find(key); known != lclAnswers.end()) return known->second;
    try {
        const bool given =
            lclUserAuth && platform::EqualNoCase(lclUserAuth->GetRight(right), model::rightGranted);
        const bool granted = given || !Enforced();
        lclUnread = false;
        return lclAnswers[key] = granted;
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("UserAuth", error.what());
        lclUnread = true;
        if (lclConnection && lclConnection->IsOpen() && !std::exchange(lclTold, true))
            lclUnreadable();
        return false;
    }
}

} // namespace kavidex::controls
