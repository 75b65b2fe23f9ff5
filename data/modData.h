// The small statement helpers that every data class uses: literals, reads, writes, dialect.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

// An empty text gives null without quotes; otherwise single quotes are doubled, and the whole is
// put in single quotes unless the caller asks for the bare text.
enum class Quotes { Add, None };
std::string SqlValue(std::string_view text, Quotes quotes = Quotes::Add);

std::string SqlNumber(std::string_view text); // "0" for an empty text, else the text
std::string SqlBool(std::string_view text);   // "0" for empty, 0..., F... and f...; else "1"

// The one way to read: a client-side, static, optimistic recordset. On MySQL every backslash of the
// statement is doubled. Never throws and never returns null: what fails is logged, and the
// recordset that comes back is not open. `failure` receives what failed, empty when nothing did: a
// read that failed says nothing about which rows there are.
RecordsetPtr OpenRecordset(const platform::Workstation& workstation, std::string_view statement,
                           const ConnectionPtr& connection, CommandType type = CommandType::Text,
                           std::string* failure = nullptr);

// The one way to write, through OpenRecordset and with its rules (on MySQL each backslash reaches
// the server as four). -1 and nothing done without a connection, else 0, whatever the engine said.
// `result` receives the recordset when it holds one already; an empty one stays empty.
std::int32_t ExecuteSql(const platform::Workstation& workstation, std::string_view statement,
                        const ConnectionPtr& connection, RecordsetPtr* result = nullptr,
                        std::string* failure = nullptr);

// 0 when there is none.
std::int32_t GetTreeIdOfTopItem(const platform::Workstation& workstation, std::int32_t topItemId,
                                const ConnectionPtr& connection);
std::int32_t GetRelIdOfTree(const platform::Workstation& workstation, std::int32_t treeId,
                            const ConnectionPtr& connection);

// The dialect, asked of the connection itself ("DBMS Name"); whatever is neither of the two is
// SQL Server. False without a connection and when the connection cannot say.
bool IsMySqlConnection(const ConnectionPtr& connection);
bool IsAccessConnection(const ConnectionPtr& connection);

} // namespace kavidex::data
