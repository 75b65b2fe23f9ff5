#include "model/clsUserAuth.h"

#include <algorithm>
#include <mutex>

#include "data/clsSettings.h"
#include "data/logText.h"
#include "data/modData.h"
#include "model/Store.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

// The connections whose users know already: every menu asks for its rights.
class Told {
public:
    bool IsNew(const data::ConnectionPtr& connection) {
        const std::lock_guard guard(lclMutex);
        std::erase_if(lclTold, [](const auto& told) { return told.expired(); });
        for (const auto& told : lclTold)
            if (told.lock() == connection) return false;
        lclTold.push_back(connection);
        return true;
    }
    void Clear(const data::ConnectionPtr& connection) {
        const std::lock_guard guard(lclMutex);
        std::erase_if(lclTold, [&](const auto& told) { return told.lock() == connection; });
    }

private:
    std::mutex lclMutex; // hosts have threads, each with its own binder
    std::vector<std::weak_ptr<data::Connection>> lclTold;
};

Told& Unreadable() {
    static Told told;
    return told;
}

} // namespace

std::string PlainText(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef", marks = " .-@";
    std::string plain;
    for (const char c : text) {
        const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (letter || (c >= '0' && c <= '9') || marks.find(c) != std::string_view::npos) {
            plain += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        plain.append({'~', digits[byte >> 4], digits[byte & 15]});
    }
    return plain;
}

std::string FromPlainText(std::string_view plain) {
    const auto digit = [](char c) { return c <= '9' ? c - '0' : (c | 32) - 'a' + 10; };
    std::string text;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        if (plain[i] == '~' && i + 2 < plain.size()) {
            text += static_cast<char>(digit(plain[i + 1]) * 16 + digit(plain[i + 2]));
            i += 2;
        } else {
            text += plain[i];
        }
    }
    return text;
}

std::string RightsSection(std::string_view user) {
    return "Rights." + PlainText(platform::Trim(user));
}

bool UseRights(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
               const data::Translation& translation) {
    if (!connection) return true;
    try {
        const auto use = ReadSetting(workstation, connection, "Rights", "Use");
        Unreadable().Clear(connection);
        return use && platform::EqualAsciiNoCase(*use, "true");
    } catch (const std::exception& error) {
        workstation.log.Write("UseRights", data::InLog(error));
        if (Unreadable().IsNew(connection)) {
            const auto* const known = dynamic_cast<const platform::Error*>(&error);
            platform::Message message;
            message.caption = data::Translated(translation, "Error in $%$", {"UseRights"});
            message.text =
                std::string(error.what()) + " " +
                Number(known ? platform::ShownNumber(known->Number()) : platform::errors::fail);
            workstation.messages.Show(message);
        }
        return true;
    }
}

clsUserAuth::clsUserAuth(const platform::Workstation& workstation) : lclWorkstation(workstation) {}

std::string clsUserAuth::GetRight(std::string_view key) const {
    const std::string_view wanted = platform::TrimView(key);
    for (const auto& [name, value] : lclRights)
        if (platform::EqualNoCase(name, wanted)) return value;
    return {};
}

void clsUserAuth::SetRight(std::string_view key, std::string_view value) {
    const std::string_view name = platform::TrimView(key);
    const auto known = std::find_if(lclRights.begin(), lclRights.end(), [&](const auto& pair) {
        return platform::EqualNoCase(pair.first, name);
    });
    if (known != lclRights.end())
        known->second = platform::Trim(value);
    else
        lclRights.emplace_back(name, platform::Trim(value));
}

bool clsUserAuth::HasRight(std::string_view key) const {
    return platform::EqualNoCase(GetRight(key), rightGranted) ||
           !UseRights(lclWorkstation, lclConnection);
}

bool clsUserAuth::GetFirstRight(std::string& key, std::string& value) {
    lclCursor = 0;
    return GetNextRight(key, value);
}

bool clsUserAuth::GetNextRight(std::string& key, std::string& value) {
    if (lclCursor >= lclRights.size()) return false;
    key = lclRights[lclCursor].first;
    value = lclRights[lclCursor].second;
    ++lclCursor;
    return true;
}

bool clsUserAuth::Ready(std::string_view user) const {
    return lclConnection && !platform::TrimView(user).empty();
}

// Reads the rows itself: the settings take a failing look-up for "none", and rights must not be
// lost because the database did not answer.
clsUserAuth::Pairs clsUserAuth::Read(std::string_view user) const {
    const data::RecordsetPtr rows = Store(lclConnection)
                                        .Read("Select * from tblSettings where Section = " +
                                              data::SqlValue(RightsSection(user)));
    Pairs pairs;
    for (; !rows->Eof(); rows->MoveNext())
        pairs.emplace_back(FromPlainText(TrimmedText(rows->Get("SKey"))),
                           FromPlainText(TrimmedText(rows->Get("Value"))));
    return pairs;
}

// The settings tell no failure, so what was written is read again.
bool clsUserAuth::Save(std::string_view user, const Pairs& pairs) const {
    data::clsSettings settings(lclWorkstation);
    settings.SetDbConnection(lclConnection);
    const std::string section = RightsSection(user);
    for (const auto& [key, value] : pairs) {
        if (key.empty()) continue;
        settings.SetSetting(section, PlainText(key), PlainText(value));
        std::string written;
        const bool found = settings.GetSetting(section, PlainText(key), written);
        if (found && written == PlainText(value)) continue;
        lclWorkstation.log.Write("clsUserAuth.SaveRights", key + " was not stored");
        return false;
    }
    return true;
}

bool clsUserAuth::Erase(std::string_view user) const {
    data::clsSettings settings(lclWorkstation);
    settings.SetDbConnection(lclConnection);
    for (const auto& pair : Read(user))
        settings.DeleteSetting(RightsSection(user), PlainText(pair.first));
    return Read(user).empty();
}

// All of the work or nothing; a failure is logged and gives false.
template <class Work>
bool clsUserAuth::Whole(std::string_view where, Work work) const {
    try {
        Transaction transaction(Store(lclConnection), lclWorkstation);
        if (!work()) return false;
        transaction.Commit();
        return true;
    } catch (const std::exception& error) {
        lclWorkstation.log.Write(where, data::InLog(error));
        return false;
    }
}

bool clsUserAuth::LoadRights() {
    lclRights.clear();
    lclCursor = 0;
    if (!Ready(lclUserId)) return false;
    // One statement needs no transaction, which would keep all others from writing.
    try {
        for (const auto& [key, value] : Read(lclUserId)) SetRight(key, value);
        return true;
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("clsUserAuth.LoadRights", data::InLog(error));
        return false;
    }
}

bool clsUserAuth::SaveRights() {
    return Ready(lclUserId) &&
           Whole("clsUserAuth.SaveRights", [&] { return Save(lclUserId, lclRights); });
}

bool clsUserAuth::DeleteRights() {
    return Ready(lclUserId) && Whole("clsUserAuth.DeleteRights", [&] { return Erase(lclUserId); });
}

bool clsUserAuth::RenameUser(std::string_view oldName, std::string_view newName) {
    if (!Ready(oldName) || !Ready(newName)) return false;
    if (RightsSection(oldName) == RightsSection(newName)) return true;
    return Whole("clsUserAuth.RenameUser", [&] {
        const Pairs pairs = Read(oldName);
        // Databases compare without case: to them the two may be one name.
        if (platform::EqualNoCase(RightsSection(oldName), RightsSection(newName)))
            return Erase(oldName) && Save(newName, pairs);
        return Erase(newName) && Save(newName, pairs) && Erase(oldName);
    });
}

} // namespace kavidex::model
