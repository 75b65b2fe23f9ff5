// What of the ODBC engine shows without a server.
#include <gtest/gtest.h>

#include "data/Error.h"
#include "data/odbc/OdbcConnection.h"
#include "data/odbc/OdbcDialect.h"
#include "data/odbc/SingleTable.h"

namespace kavidex::data::odbc {

TEST(Odbc, AMissingDriverIsAClearErrorThatKeepsThePassword) {
    try {
        OpenOdbc("DRIVER=No Such Driver;SERVER=nowhere;UID=jan;PWD=geheim");
        FAIL();
    } catch (const Error& error) {
        EXPECT_LT(error.Number(), 0);
        EXPECT_NE(std::string(error.what()), "");
        EXPECT_EQ(std::string(error.what()).find("geheim"), std::string::npos);
        EXPECT_EQ(error.Source().rfind("ODBC", 0), 0u);
    }
}

TEST(Odbc, KnowsTheOneTableOfAPlainStatement) {
    EXPECT_EQ(SingleTable("select * from tblTree"), "tblTree");
    EXPECT_EQ(SingleTable("Select  *  FROM [tblTree Item] where Id=1 order by Id"), "tblTree Item");
    EXPECT_EQ(SingleTable("select * from `tblTree`"), "tblTree");
    for (const char* none : {"select Id from t", "select * from t, u", "select * from t u",
                             "select * from (select 1) x", "select * from t group by a",
                             "select count(*) from t", "update t set a = 1", "", "select *"})
        EXPECT_EQ(SingleTable(none), "") << none;
    EXPECT_TRUE(ChangesRowsOnly(" Update t set a = 1"));
    EXPECT_FALSE(ChangesRowsOnly("alter table t add a int"));
}

TEST(Odbc, QuotesAndComparesAsEachServerAsks) {
    const Dialect& mySql = DialectOf("MariaDB");
    const Dialect& sqlServer = DialectOf("Microsoft SQL Server");
    EXPECT_EQ(mySql.dbmsName, "MySQL");
    EXPECT_EQ(&DialectOf("mysql"), &mySql);
    EXPECT_EQ(Quoted(mySql, "a`b"), "`a``b`");
    EXPECT_EQ(Quoted(sqlServer, "a]b"), "[a]]b]");
    Field field;
    field.baseColumn = "c";
    field.type = AdoType::Integer;
    EXPECT_EQ(SameAs(mySql, field), "`c` = ?");
    field.type = AdoType::Single;
    EXPECT_EQ(SameAs(mySql, field), "");
    field.type = AdoType::WChar;
    EXPECT_EQ(SameAs(sqlServer, field),
              "cast([c] as nvarchar(max)) collate Latin1_General_BIN2 = cast(? as nvarchar(max))");
}

} // namespace kavidex::data::odbc
