// The ODBC handles of one connection, shared by the connection and its recordsets.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "OdbcHeaders.h"
#include "data/Connection.h"
#include "data/odbc/OdbcDialect.h"

namespace kavidex::data::odbc {

// Failing calls throw data::Error and leave the driver's messages in Errors().
class OdbcLink {
public:
    explicit OdbcLink(std::string_view connectionString);
    ~OdbcLink();
    OdbcLink(const OdbcLink&) = delete;
    OdbcLink& operator=(const OdbcLink&) = delete;

    bool IsOpen() const { return lclConnection != SQL_NULL_HDBC; }
    void Close(); // rolls an open transaction back
    void CheckOpen() const;
    SQLHDBC Handle() const;
    // For a new statement: throws where what it writes could be lost.
    SQLHDBC Ready();
    const Dialect& Speaks() const { return *lclDialect; }

    std::string Info(SQLUSMALLINT what) const;
    // SQL_TXN_CAPABLE's answer; SQL_TC_DML, the least that has transactions, when the driver is
    // silent.
    SQLUSMALLINT TransactionCapability() const;
    std::string CurrentCatalog() const;
    void BeginTransaction();
    // Whether it fails or not, no transaction is under way afterwards; where nothing else helps the
    // connection is closed, since what it would keep open could be lost or half done.
    void EndTransaction(bool commit);
    // The server undid the transaction that is under way.
    bool TransactionLost() const { return lclTransactionLost; }

    const std::vector<ErrorDetail>& Errors() const { return lclErrors; }
    [[noreturn]] void Fail(SQLSMALLINT kind, SQLHANDLE handle, std::string_view statement = {});
    void ForgetErrors() { lclErrors.clear(); }

    // Columns of the primary key, lower case, by table.
    using Keys = std::set<std::string>;
    std::map<std::string, Keys>& KnownKeys() { return lclKeys; }

private:
    bool SetAutoCommit(bool on);
    bool Undo();
    bool IsDead() const;

    SQLHENV lclEnvironment = SQL_NULL_HENV;
    SQLHDBC lclConnection = SQL_NULL_HDBC;
    const Dialect* lclDialect = nullptr;
    std::vector<ErrorDetail> lclErrors;
    std::map<std::string, Keys> lclKeys;
    bool lclInTransaction = false;
    bool lclTransactionLost = false;
};

using LinkPtr = std::shared_ptr<OdbcLink>;

} // namespace kavidex::data::odbc
