#include "model/Store.h"

#include <utility>

#include "data/Error.h"
#include "data/clsSettings.h"
#include "data/modData.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

std::string DoubleBackslashes(std::string_view statement) {
    return platform::Replace(statement, "\\", "\\\\");
}

} // namespace

Store::Store(data::ConnectionPtr connection)
    : lclConnection(std::move(connection)), lclMySql(data::IsMySqlConnection(lclConnection)) {
    if (!lclConnection)
        throw data::Error(data::errors::objectClosed, "There is no connection.", "Kavidex");
}

data::RecordsetPtr Store::Read(std::string_view statement) const {
    data::Command command;
    command.text = lclMySql ? DoubleBackslashes(statement) : std::string(statement);
    data::RecordsetPtr rows = lclConnection->Open(command);
    if (!rows || !rows->IsOpen())
        throw data::Error(data::errors::objectClosed, "The statement gave no rows.", "Kavidex",
                          command.text);
    return rows;
}

data::RecordsetPtr Store::ReadNow(std::string_view statement) const {
    return Read(lclMySql ? std::string(statement) + " for update" : std::string(statement));
}

std::int64_t Store::Write(std::string_view statement) const {
    if (lclMySql && statement.find('\\') != std::string_view::npos)
        return lclConnection->Execute(DoubleBackslashes(DoubleBackslashes(statement)));
    return lclConnection->Execute(statement);
}

std::int32_t InsertRow(const platform::Workstation& workstation, const Store& store,
                       const NewRow& row,
                       const std::function<void(data::Recordset&, std::int32_t)>& complete) {
    Transaction transaction(store, workstation);
    store.Write(row.insert);
    const data::RecordsetPtr rows = store.Read(row.find);
    if (rows->Eof())
        throw data::Error(data::errors::badEof, "The new row cannot be found again.", "Kavidex",
                          row.find);
    const std::int32_t key = data::ToInt32(rows->Get(row.keyColumn));
    complete(*rows, key);
    rows->Update();
    rows->Close();
    transaction.Commit();
    return key;
}

void SetNumber(data::Recordset& row, std::string_view column, std::int64_t number) {
    data::Value value;
    value.emplace<std::int64_t>(number);
    row.Set(row.IndexOf(column), value);
}

std::optional<std::string> ReadSetting(const platform::Workstation& workstation,
                                       const data::ConnectionPtr& connection,
                                       std::string_view section, std::string_view key) {
    std::string value;
    {
        data::clsSettings settings(workstation); // which converts an old table on its way
        settings.SetDbConnection(connection);
        if (settings.GetSetting(section, key, value)) return value;
        if (settings.Failure().empty()) return std::nullopt;
    }
    // What refused it is told by the statement itself.
    const data::RecordsetPtr row =
        Store(connection)
            .Read("Select * from tblSettings where Section = " + data::SqlValue(section) +
                  " and sKey = " + data::SqlValue(key));
    if (row->Eof()) return std::nullopt;
    return TrimmedText(row->Get("Value"));
}

// A row that every database has.
void HoldSettings(const Store& store) {
    store.Write("update tblSettings set Section = Section where Section = 'Build' and SKey = "
                "'DbVersion'");
}

std::string NewGuid(const platform::Workstation& workstation) {
    std::string guid;
    if (platform::CreateGuid(workstation, guid) != 0)
        throw platform::Error(platform::errors::fail, "The system could not make a GUID.");
    return guid;
}

std::string AsWritten(const data::ConnectionPtr& connection, std::string_view text) {
    return data::IsMySqlConnection(connection) ? DoubleBackslashes(text) : std::string(text);
}

std::string AsTyped(const data::ConnectionPtr& connection, std::string_view text) {
    if (text.find('\\') == std::string_view::npos || !data::IsMySqlConnection(connection))
        return std::string(text);
    std::string typed = platform::Replace(text, "\\\\", "\\");
    return DoubleBackslashes(typed) == text ? typed : std::string(text);
}

std::string Number(std::int64_t number) { return std::to_string(number); }

std::string_view Word(bool flag) { return flag ? "True" : "False"; }

std::string TrimmedText(const data::Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return platform::Trim(*text);
    return platform::Trim(data::ToText(value));
}

} // namespace kavidex::model
