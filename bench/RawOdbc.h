// A bare ODBC connection, for the loops that ours is measured against.
#pragma once

#include <string>

#include "OdbcHeaders.h"
#include "platform/text.h"

namespace kavidex::bench {

class RawOdbc {
public:
    explicit RawOdbc(const std::string& connectionString) {
        SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &lclEnvironment);
        SQLSetEnvAttr(lclEnvironment, SQL_ATTR_ODBC_VERSION,
                      reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
        SQLAllocHandle(SQL_HANDLE_DBC, lclEnvironment, &lclConnection);
        std::u16string text = platform::ToUtf16(connectionString);
        SQLDriverConnectW(lclConnection, nullptr, reinterpret_cast<SQLWCHAR*>(text.data()),
                          static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                          SQL_DRIVER_NOPROMPT);
    }
    ~RawOdbc() {
        SQLDisconnect(lclConnection);
        SQLFreeHandle(SQL_HANDLE_DBC, lclConnection);
        SQLFreeHandle(SQL_HANDLE_ENV, lclEnvironment);
    }
    RawOdbc(const RawOdbc&) = delete;
    RawOdbc& operator=(const RawOdbc&) = delete;

    // The statement's handle, which the caller frees.
    SQLHSTMT Run(const std::string& statement) const {
        SQLHSTMT handle = nullptr;
        SQLAllocHandle(SQL_HANDLE_STMT, lclConnection, &handle);
        std::u16string text = platform::ToUtf16(statement);
        SQLExecDirectW(handle, reinterpret_cast<SQLWCHAR*>(text.data()),
                       static_cast<SQLINTEGER>(text.size()));
        return handle;
    }

private:
    SQLHENV lclEnvironment = nullptr;
    SQLHDBC lclConnection = nullptr;
};

} // namespace kavidex::bench
