#include "data/odbc/OdbcLink.h"

#include <algorithm>
#include <optional>

#include "data/Error.h"
#include "data/odbc/Wide.h"

namespace kavidex::data::odbc {

namespace {

struct State {
    std::string_view start; // of the SQLSTATE
    std::int32_t number;
};

constexpr State states[] = {
    {"42S02", errors::noTable},     {"S0002", errors::noTable},      {"42", errors::syntax},
    {"37", errors::syntax},         {"S0", errors::syntax},          {"23", errors::integrity},
    {"28", errors::authentication}, {"07", errors::invalidArgument},
};

std::int32_t NumberOf(std::string_view state) {
    for (const State& known : states)
        if (state.substr(0, known.start.size()) == known.start) return known.number;
    return errors::unspecified;
}

constexpr std::string_view lostWords = "The connection to the database is lost: ";

// Class 08 is a lost connection; one driver family reports some as a general error by number, and
// others say it only when asked.
bool IsLost(std::string_view state, SQLINTEGER native) {
    constexpr SQLINTEGER goneAway = 2006, lostInQuery = 2013, terminated = 1927;
    return state.substr(0, 2) == "08" || native == goneAway || native == lostInQuery ||
           native == terminated;
}

ErrorDetail Detail(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT record, bool& lost,
                   bool& found) {
    SQLWCHAR state[6] = {};
    SQLINTEGER native = 0;
    SQLSMALLINT length = 0;
    std::u16string text(1024, u'\0');
    SQLRETURN rc = SQLGetDiagRecW(kind, handle, record, state, &native, Raw(text),
                                  static_cast<SQLSMALLINT>(text.size()), &length);
    if (rc == SQL_SUCCESS_WITH_INFO && length >= static_cast<SQLSMALLINT>(text.size())) {
        text.resize(static_cast<std::size_t>(length) + 1);
        rc = SQLGetDiagRecW(kind, handle, record, state, &native, Raw(text),
                            static_cast<SQLSMALLINT>(text.size()), &length);
    }
    found = SQL_SUCCEEDED(rc);
    if (!found) return {};
    text.resize(std::min<std::size_t>(text.size(), static_cast<std::size_t>(length)));
    std::string code;
    for (int i = 0; i < 5; ++i) code += static_cast<char>(state[i]);
    lost = lost || IsLost(code, native);
    return {NumberOf(code), platform::ToUtf8(text), "ODBC " + code};
}

} // namespace

OdbcLink::OdbcLink(std::string_view connectionString) {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &lclEnvironment);
    SQLSetEnvAttr(lclEnvironment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3),
                  0);
    try {
        if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, lclEnvironment, &lclConnection)))
            Fail(SQL_HANDLE_ENV, lclEnvironment);
        SQLSetConnectAttrW(lclConnection, SQL_ATTR_LOGIN_TIMEOUT, reinterpret_cast<SQLPOINTER>(15),
                           0);
        std::u16string text = platform::ToUtf16(connectionString);
        SQLSMALLINT length = 0;
        if (!SQL_SUCCEEDED(SQLDriverConnectW(lclConnection, nullptr, Raw(text),
                                             Length<SQLSMALLINT>(text), nullptr, 0, &length,
                                             SQL_DRIVER_NOPROMPT)))
            Fail(SQL_HANDLE_DBC, lclConnection);
        lclDialect = &DialectOf(Info(SQL_DBMS_NAME));
    } catch (...) {
        Close();
        SQLFreeHandle(SQL_HANDLE_ENV, lclEnvironment);
        throw;
    }
}

OdbcLink::~OdbcLink() {
    Close();
    SQLFreeHandle(SQL_HANDLE_ENV, lclEnvironment);
}

void OdbcLink::Close() {
    if (!IsOpen()) return;
    lclInTransaction = lclTransactionLost = false;
    SQLEndTran(SQL_HANDLE_DBC, lclConnection, SQL_ROLLBACK);
    SQLDisconnect(lclConnection);
    SQLFreeHandle(SQL_HANDLE_DBC, lclConnection);
    lclConnection = SQL_NULL_HDBC;
}

void OdbcLink::CheckOpen() const {
    if (!IsOpen()) throw Error(errors::objectClosed, "The connection is closed", "ODBC");
}

SQLHDBC OdbcLink::Handle() const {
    CheckOpen();
    return lclConnection;
}

std::string OdbcLink::Info(SQLUSMALLINT what) const {
    std::u16string text(512, u'\0');
    SQLSMALLINT bytes = 0;
    if (!SQL_SUCCEEDED(SQLGetInfoW(Handle(), what, Raw(text),
                                   static_cast<SQLSMALLINT>(text.size() * 2), &bytes)))
        return {};
    return UpToZero(text);
}

SQLUSMALLINT OdbcLink::TransactionCapability() const {
    SQLUSMALLINT capability = SQL_TC_DML;
    if (!SQL_SUCCEEDED(
            SQLGetInfoW(Handle(), SQL_TXN_CAPABLE, &capability, sizeof capability, nullptr)))
        return SQL_TC_DML;
    return capability;
}

std::string OdbcLink::CurrentCatalog() const {
    std::u16string text(512, u'\0');
    SQLINTEGER bytes = 0;
    if (!SQL_SUCCEEDED(SQLGetConnectAttrW(Handle(), SQL_ATTR_CURRENT_CATALOG, Raw(text),
                                          static_cast<SQLINTEGER>(text.size() * 2), &bytes)))
        return {};
    return UpToZero(text);
}

bool OdbcLink::SetAutoCommit(bool on) {
    const auto value = static_cast<SQLULEN>(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF);
    return SQL_SUCCEEDED(
        SQLSetConnectAttrW(Handle(), SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(value), 0));
}

void OdbcLink::BeginTransaction() {
    if (!SetAutoCommit(false)) Fail(SQL_HANDLE_DBC, lclConnection);
    lclInTransaction = true;
    lclTransactionLost = false;
}

// Drivers refuse to end a transaction that the server has ended already; the server's own word for
// it does not mind.
bool OdbcLink::Undo() {
    if (SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, lclConnection, SQL_ROLLBACK))) return true;
    SQLHSTMT statement = SQL_NULL_HSTMT;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, lclConnection, &statement))) return false;
    std::u16string text = platform::ToUtf16(lclDialect->rollback);
    const SQLRETURN rc = SQLExecDirectW(statement, Raw(text), Length<SQLINTEGER>(text));
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
    return SQL_SUCCEEDED(rc) || rc == SQL_NO_DATA;
}

void OdbcLink::EndTransaction(bool commit) {
    const SQLHDBC connection = Handle();
    lclInTransaction = lclTransactionLost = false;
    std::optional<Error> failure;
    if (!SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, connection, commit ? SQL_COMMIT : SQL_ROLLBACK)))
        try {
            Fail(SQL_HANDLE_DBC, connection);
        } catch (const Error& error) {
            failure = error;
        }
    // Committing by itself again commits what is still open: only after it is undone for certain.
    if ((failure && !Undo()) || !SetAutoCommit(true)) Close();
    if (failure && (commit || !IsOpen())) throw Error(*failure);
}

SQLHDBC OdbcLink::Ready() {
    const SQLHDBC connection = Handle();
    if (lclTransactionLost)
        throw Error(errors::unspecified,
                    "The transaction was undone by an earlier failure; nothing more is written "
                    "until it is rolled back",
                    "ODBC");
    return connection;
}

bool OdbcLink::IsDead() const {
    SQLUINTEGER dead = SQL_CD_FALSE;
    return IsOpen() && lclDialect &&
           SQL_SUCCEEDED(SQLGetConnectAttrW(lclConnection, SQL_ATTR_CONNECTION_DEAD, &dead,
                                            SQL_IS_UINTEGER, nullptr)) &&
           dead == SQL_CD_TRUE;
}

void OdbcLink::Fail(SQLSMALLINT kind, SQLHANDLE handle, std::string_view statement) {
    constexpr SQLSMALLINT most = 20;
    lclErrors.clear();
    bool found = true, lost = false;
    for (SQLSMALLINT record = 1; found && record <= most; ++record) {
        const ErrorDetail detail = Detail(kind, handle, record, lost, found);
        if (found) lclErrors.push_back(detail);
    }
    if (lclErrors.empty())
        lclErrors.push_back({errors::unspecified, "The ODBC driver gives no reason", "ODBC"});
    ErrorDetail& first = lclErrors.front();
    if (lost || IsDead()) first.description.insert(0, lostWords);
    // The states of class 40: the server rolled the transaction back.
    if (lclInTransaction && first.source.starts_with("ODBC 40")) lclTransactionLost = true;
    throw Error(first.number, first.description, first.source, std::string(statement));
}

} // namespace kavidex::data::odbc
