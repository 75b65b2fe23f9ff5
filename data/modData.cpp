// The statement helpers: what every read and write of the data layer goes through.
#include "data/modData.h"

#include "data/Error.h"
#include "data/rows/ClosedRecordset.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

bool SpeaksDialect(const ConnectionPtr& connection, std::string_view name) {
    if (!connection) return false;
    try {
        return platform::LowerCase(ToText(connection->Property("DBMS Name"))) == name;
    } catch (const std::exception&) {
        return false; // a connection that is not open has no dialect
    }
}

std::int32_t FirstNumber(const platform::Workstation& workstation, const std::string& statement,
                         std::string_view field, const ConnectionPtr& connection) {
    const RecordsetPtr rows = OpenRecordset(workstation, statement, connection);
    if (!rows->IsOpen()) return 0;
    const std::int32_t number = rows->Eof() ? 0 : ToInt32(rows->Get(field));
    rows->Close();
    return number;
}

} // namespace

std::string SqlValue(std::string_view text, Quotes quotes) {
    if (text.empty()) return "null";
    std::string value = platform::Replace(text, "'", "''");
    return quotes == Quotes::Add ? "'" + value + "'" : value;
}

std::string SqlNumber(std::string_view text) { return text.empty() ? "0" : std::string(text); }

std::string SqlBool(std::string_view text) {
    const bool no = text.empty() || text[0] == '0' || text[0] == 'F' || text[0] == 'f';
    return no ? "0" : "1";
}

RecordsetPtr OpenRecordset(const platform::Workstation& workstation, std::string_view statement,
                           const ConnectionPtr& connection, CommandType type,
                           std::string* failure) {
    Command command{std::string(statement), type, {}};
    if (failure) failure->clear();
    try {
        if (!connection)
            throw Error(errors::objectClosed, "There is no connection.", "OpenRecordset");
        if (IsMySqlConnection(connection))
            command.text = platform::Replace(command.text, "\\", "\\\\");
        if (RecordsetPtr rows = connection->Open(command)) return rows;
    } catch (const std::exception& error) {
        workstation.log.Write("OpenRecordset", std::string(error.what()) + ": " + command.text);
        if (failure) *failure = error.what();
    }
    return MakeClosedRecordset();
}

std::int32_t ExecuteSql(const platform::Workstation& workstation, std::string_view statement,
                        const ConnectionPtr& connection, RecordsetPtr* result,
                        std::string* failure) {
    if (!connection) return -1;
    const std::string text = IsMySqlConnection(connection)
                                 ? platform::Replace(statement, "\\", "\\\\")
                                 : std::string(statement);
    RecordsetPtr rows = OpenRecordset(workstation, text, connection, CommandType::Text, failure);
    if (result && *result) *result = std::move(rows);
    return 0;
}

std::int32_t GetTreeIdOfTopItem(const platform::Workstation& workstation, std::int32_t topItemId,
                                const ConnectionPtr& connection) {
    return FirstNumber(workstation,
                       "Select TreeId from tblTree where TopItemId = " + std::to_string(topItemId),
                       "TreeId", connection);
}

std::int32_t GetRelIdOfTree(const platform::Workstation& workstation, std::int32_t treeId,
                            const ConnectionPtr& connection) {
    return FirstNumber(workstation,
                       "Select RelId from tblDossierRelations where TreeId =  " +
                           std::to_string(treeId),
                       "RelId", connection);
}

bool IsMySqlConnection(const ConnectionPtr& connection) {
    return SpeaksDialect(connection, "mysql");
}

bool IsAccessConnection(const ConnectionPtr& connection) {
    return SpeaksDialect(connection, "access");
}

} // namespace kavidex::data
