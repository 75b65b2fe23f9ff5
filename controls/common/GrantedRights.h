// What the user may do, as the rights object answers it; every answer is asked for once.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::model {
class clsUserAuth;
}

namespace kavidex::controls {

class GrantedRights {
public:
    // `unreadable` is told once when an answer cannot be read from an open connection.
    GrantedRights(const platform::Workstation& workstation, std::function<void()> unreadable)
        : lclWorkstation(workstation), lclUnreadable(std::move(unreadable)) {}

    // Forgets the answers. Without a rights object every right is granted where rights are not in
    // use.
    void Set(std::shared_ptr<model::clsUserAuth> rights, data::ConnectionPtr connection);
    // An answer that cannot be read is a refusal; it is not kept, so the next question asks again.
    bool Has(std::string_view right) const;
    bool Unreadable() const { return lclUnread; } // the last question had no answer

private:
    bool Enforced() const; // throws when it cannot be read

    const platform::Workstation& lclWorkstation;
    std::function<void()> lclUnreadable;
    std::shared_ptr<model::clsUserAuth> lclUserAuth;
    data::ConnectionPtr lclConnection;
    mutable std::unordered_map<std::string, bool> lclAnswers;
    mutable std::optional<bool> lclEnforced;
    mutable bool lclTold = false, lclUnread = false;
};

} // namespace kavidex::controls
