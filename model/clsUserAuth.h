// The rights of one user or group: named values, kept in the settings store.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/Connection.h"
#include "data/Texts.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

// Whether rights are enforced (setting "Rights"/"Use"); true without a connection. When the setting
// cannot be read they are, and the user is told why, once until it can be read again.
bool UseRights(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
               const data::Translation& translation = {});

inline constexpr std::string_view rightGranted = "True", rightRefused = "False";

// Letters, digits and a few marks stand for themselves; every other byte is ~ and two digits. So a
// setting keeps any text whatever the database's code page, quotes and wildcards.
std::string PlainText(std::string_view text);
std::string FromPlainText(std::string_view plain);

// Where the settings keep one user's rights.
std::string RightsSection(std::string_view user);

// An ordered list of pairs (right key, value), both trimmed, a key at most once. Loading, saving,
// deleting and renaming return false when there is no user or connection, or the store refused.
class clsUserAuth {
public:
    explicit clsUserAuth(const platform::Workstation& workstation);

    const std::string& UserId() const { return lclUserId; }
    void SetUserId(std::string_view user) { lclUserId = user; }
    const data::ConnectionPtr& DbConnection() const { return lclConnection; }
    void SetDbConnection(data::ConnectionPtr connection) { lclConnection = std::move(connection); }

    std::string GetRight(std::string_view key) const; // empty for a key that is not in the list
    void SetRight(std::string_view key, std::string_view value);
    // Granted when rights are not enforced, or when the value is "True" in any letter case.
    bool HasRight(std::string_view key) const;

    bool GetFirstRight(std::string& key, std::string& value);
    bool GetNextRight(std::string& key, std::string& value); // false after the last pair

    bool LoadRights();
    bool SaveRights();
    bool DeleteRights();
    // The rights that `newName` had are replaced.
    bool RenameUser(std::string_view oldName, std::string_view newName);

private:
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    Pairs Read(std::string_view user) const;
    bool Save(std::string_view user, const Pairs& pairs) const;
    bool Erase(std::string_view user) const;
    bool Ready(std::string_view user) const;
    template <class Work>
    bool Whole(std::string_view where, Work work) const;

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    std::string lclUserId;
    Pairs lclRights;
    std::size_t lclCursor = 0;
};

} // namespace kavidex::model
