// Rows through the ODBC engine into a recordset, against a bare ODBC loop with the same statement
// that binds the same columns and looks at every value.
#include <memory>
#include <string>
#include <vector>

#include "bench/RawOdbc.h"
#include "bench/ratio.h"
#include "data/odbc/OdbcConnection.h"
#include "platform/text.h"
#include "tests/engines/MariaDbServer.h"

namespace {

using namespace kavidex;

constexpr int rowCount = 40'960;
constexpr char statement[] = "select * from tblTreeItem";
constexpr int texts[] = {2, 5, 6}; // columns of text, the others are numbers
constexpr int columns = 6, textUnits = 511;

void Fill(data::Connection& connection) {
    connection.Execute(
        "create table tblTreeItem (Id bigint auto_increment primary key, Type char(255), "
        "ItemId integer, ParentId integer, Description char(255), TreeItemGuid char(38))");
    connection.Execute(
        "insert into tblTreeItem (Type, ItemId, ParentId, Description, TreeItemGuid) values "
        "('tif', 1001, 1000, 'Brief van 15-11-2026 over de aanvraag', "
        "'{0A1B2C3D-0000-4000-8000-0123456789AB}')");
    for (int rows = 1; rows < rowCount; rows *= 2)
        connection.Execute(
            "insert into tblTreeItem (Type, ItemId, ParentId, Description, TreeItemGuid) "
            "select Type, ItemId, ParentId, Description, TreeItemGuid from tblTreeItem limit " +
            std::to_string(std::min(rows, rowCount - rows)));
}

class RawLoop {
public:
    explicit RawLoop(const std::string& connectionString) : link(connectionString) {}

    // The rows fetched; `sum` keeps the reading from being optimised away.
    int Run() {
        const SQLHSTMT handle = link.Run(statement);
        std::vector<std::vector<char16_t>> wide(columns + 1);
        SQLBIGINT numbers[columns + 1] = {};
        SQLLEN lengths[columns + 1] = {};
        for (SQLUSMALLINT i = 1; i <= columns; ++i) {
            const bool isText = std::find(std::begin(texts), std::end(texts), i) != std::end(texts);
            if (isText) {
                wide[i].resize(textUnits);
                SQLBindCol(handle, i, SQL_C_WCHAR, wide[i].data(), textUnits * 2, &lengths[i]);
            } else {
                SQLBindCol(handle, i, SQL_C_SBIGINT, &numbers[i], sizeof numbers[i], &lengths[i]);
            }
        }
        int rows = 0;
        for (; SQL_SUCCEEDED(SQLFetch(handle)); ++rows)
            for (int i = 1; i <= columns; ++i) {
                sum += numbers[i];
                for (SQLLEN unit = 0; !wide[i].empty() && unit < lengths[i] / 2; ++unit)
                    sum += wide[i][unit];
            }
        SQLFreeHandle(SQL_HANDLE_STMT, handle);
        return rows;
    }

    std::int64_t sum = 0;

private:
    bench::RawOdbc link;
};

} // namespace

int main() {
    tests::MariaDbServer& server = tests::MariaDbServer::Instance();
    if (!server.Missing().empty()) {
        std::printf("ODBC rows: skipped: %s\n", server.Missing().c_str());
        return 0;
    }
    data::OpenOdbc(server.ConnectionString(""))->Execute("create database bench");
    const std::string connectionString = server.ConnectionString("bench");
    const data::ConnectionPtr connection = data::OpenOdbc(connectionString);
    Fill(*connection);

    RawLoop raw(connectionString);
    std::int64_t ours = 0, peers = 0;
    const bench::Times times = bench::Measure(
        [&] {
            const data::RecordsetPtr rows =
                connection->Open({statement, data::CommandType::Text, {}});
            ours += rows->RecordCount();
        },
        [&] { peers += raw.Run(); });
    if (ours != peers || ours == 0) {
        std::printf("ODBC rows: the two read different rows (%lld, %lld)\n",
                    static_cast<long long>(ours), static_cast<long long>(peers));
        return 1;
    }
    std::printf("%d rows of %d columns, checksum %lld\n", rowCount, columns,
                static_cast<long long>(raw.sum));
    return bench::AtLeast("ODBC rows into a recordset", times, 0.8) ? 0 : 1;
}
