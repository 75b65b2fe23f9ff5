// Loading a large tree from a MariaDB server, against a bare ODBC loop that sends the same
// statements, binds their columns and keeps the same facts.
#include <memory>
#include <string>
#include <vector>

#include "bench/RawOdbc.h"
#include "bench/ratio.h"
#include "data/clsSettings.h"
#include "data/modData.h"
#include "data/odbc/OdbcConnection.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "platform/Workstation.h"
#include "platform/text.h"
#include "tests/engines/MariaDbServer.h"

namespace {

using namespace kavidex;

constexpr int folders = 5000, documentsPerFolder = 20;
constexpr int nodes = folders * (documentsPerFolder + 1) + 1;

void MakeTree(const data::ConnectionPtr& connection) {
    const auto& workstation = platform::TheWorkstation();
    data::clsSettings settings(workstation);
    settings.SetDbConnection(connection);
    if (data::CheckAndCreateDatabase(workstation, connection, settings, true) != 1) std::abort();
    data::clsUpdateDb update(workstation);
    update.SetDbConnection(connection);
    update.fncUpdateDb();
    connection->Execute(
        "Insert into tblTree (Id, TreeId, Description, TopItemId) Values (1, 1, 'T', 1)");
    std::string rows;
    const auto flush = [&] {
        if (rows.empty()) return;
        connection->Execute("Insert into tblTreeItem (Id, TreeItemId, Type, ItemId, ParentId, "
                            "Description) Values " +
                            rows);
        rows.clear();
    };
    int id = 0;
    const auto add = [&](const char* type, int parent, const std::string& text) {
        const std::string number = std::to_string(++id);
        if (!rows.empty()) rows += ",";
        rows += "(" + number + "," + number + ",'" + type + "'," + number + "," +
                std::to_string(parent) + ",'" + text + "')";
        if (id % 1000 == 0) flush();
        return id;
    };
    const int root = add("tab", 0, "T");
    for (int number = 0; number < folders; ++number) {
        const int folder = add("tab", root, "Folder " + std::to_string(number));
        for (int i = 0; i < documentsPerFolder; ++i)
            add("tif", folder, "Document number " + std::to_string(i));
    }
    flush();
}

struct PlainNode {
    SQLINTEGER id, itemId;
    std::u16string type, description;
    std::vector<PlainNode> children;
};

class RawLoop {
public:
    explicit RawLoop(const std::string& connectionString) : link(connectionString) {}

    std::size_t Children(int parent, std::vector<PlainNode>& children) {
        const SQLHSTMT handle =
            link.Run("Select * from tblTreeItem where ParentId = " + std::to_string(parent) +
                     " ORDER BY TreeItemId");
        if (columns.empty()) FindColumns(handle);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            Column& column = columns[i];
            const auto number = static_cast<SQLUSMALLINT>(i + 1);
            if (column.text)
                SQLBindCol(handle, number, SQL_C_WCHAR, column.wide, sizeof column.wide,
                           &column.length);
            else
                SQLBindCol(handle, number, SQL_C_SLONG, &column.value, sizeof column.value,
                           &column.length);
        }
        while (SQL_SUCCEEDED(SQLFetch(handle)))
            children.push_back(
                {columns[id].value, columns[item].value, Text(type), Text(description), {}});
        SQLFreeHandle(SQL_HANDLE_STMT, handle);
        std::size_t count = children.size();
        for (PlainNode& child : children)
            if (child.type == u"tab") count += Children(child.id, child.children);
        return count;
    }

private:
    struct Column {
        bool text = false;
        SQLINTEGER value = 0;
        SQLLEN length = 0;
        char16_t wide[511] = {};
    };

    void FindColumns(SQLHSTMT handle) {
        SQLSMALLINT count = 0;
        SQLNumResultCols(handle, &count);
        columns.resize(static_cast<std::size_t>(count));
        for (SQLSMALLINT i = 1; i <= count; ++i) {
            char name[64] = "";
            SQLSMALLINT length = 0, kind = 0, digits = 0, nullable = 0;
            SQLULEN size = 0;
            SQLDescribeCol(handle, static_cast<SQLUSMALLINT>(i), reinterpret_cast<SQLCHAR*>(name),
                           sizeof name, &length, &kind, &size, &digits, &nullable);
            const auto place = static_cast<std::size_t>(i - 1);
            columns[place].text = kind != SQL_INTEGER && kind != SQL_BIGINT && kind != SQL_SMALLINT;
            const std::string lower = platform::LowerCase(name);
            if (lower == "treeitemid") id = place;
            if (lower == "itemid") item = place;
            if (lower == "type") type = place;
            if (lower == "description") description = place;
        }
    }
    std::u16string Text(std::size_t column) const {
        const SQLLEN length = columns[column].length;
        return length <= 0
                   ? std::u16string()
                   : std::u16string(columns[column].wide, static_cast<std::size_t>(length) / 2);
    }

    bench::RawOdbc link;
    std::vector<Column> columns;
    std::size_t id = 0, item = 0, type = 0, description = 0;
};

} // namespace

int main() {
    tests::MariaDbServer& server = tests::MariaDbServer::Instance();
    if (!server.Missing().empty()) {
        std::printf("tree over ODBC: skipped: %s\n", server.Missing().c_str());
        return 0;
    }
    data::OpenOdbc(server.ConnectionString(""))->Execute("create database benchmodel");
    const std::string connectionString = server.ConnectionString("benchmodel");
    const data::ConnectionPtr connection = data::OpenOdbc(connectionString);
    MakeTree(connection);
    RawLoop raw(connectionString);
    const auto load = [&] {
        model::clsTree tree(platform::TheWorkstation());
        tree.SetDbConnection(connection);
        tree.SetTreeId(1);
        if (tree.Item()->ChildCollection()->Count() != folders) std::abort();
    };
    const auto loop = [&] {
        std::vector<PlainNode> top;
        if (raw.Children(0, top) != nodes) std::abort();
    };
    return bench::AtMost("load a tree of 100,000 items / raw ODBC loop",
                         bench::Measure(load, loop, 5), 1.2)
               ? 0
               : 1;
}
