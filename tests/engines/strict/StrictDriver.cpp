// An ODBC driver for tests: MariaDB's, with the manners of a server that the machine has not. It
// runs one statement at a time on a connection, takes no missing names in catalog calls and no
// column named True, and tells a lost session only when asked. It passes every call on to the
// driver whose file KAVIDEX_STRICT_OVER names.
//
// Statements that begin with "strict:" make it fail:
//   strict: end     the server undoes the transaction, and the next two calls to end it fail
//   strict: victim  the server undoes the transaction and says so at once (state 40001)
//   strict: keys    the next question for primary keys fails
//   strict: row     the first row of the next block fails, and the fetch succeeds
#include <dlfcn.h>
#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <utility>

namespace {

struct Words {
    std::string state, text;
};

std::map<SQLHANDLE, Words> refusals;      // our own words, by the handle of the last call
std::map<SQLHSTMT, SQLHDBC> connectionOf; // of each statement
std::map<SQLHDBC, SQLHSTMT> pending;      // the statement whose results are not read to their end
std::map<SQLHDBC, bool> dead;
int failingEnds = 0;
bool failingKeys = false, failingRow = false;
std::map<SQLHSTMT, SQLUSMALLINT*> rowStates; // where each wants to be told of its rows

template <class Function>
Function* Real(const char* name) {
    static void* const driver = dlopen(std::getenv("KAVIDEX_STRICT_OVER"), RTLD_NOW | RTLD_LOCAL);
    void* const found = driver ? dlsym(driver, name) : nullptr;
    if (!found) std::abort();
    return reinterpret_cast<Function*>(found);
}
#define REAL(name) Real<decltype(name)>(#name)

SQLRETURN Refuse(SQLHANDLE handle, const char* state, const char* text) {
    refusals[handle] = {state, text};
    return SQL_ERROR;
}

bool Busy(SQLHSTMT statement) {
    const auto other = pending.find(connectionOf[statement]);
    return other != pending.end() && other->second != statement;
}
constexpr char busyText[] = "Connection is busy with results for another statement";

void Settle(SQLHSTMT statement) {
    const auto mine = pending.find(connectionOf[statement]);
    if (mine != pending.end() && mine->second == statement) pending.erase(mine);
}

// Runs what starts a statement.
template <class Work>
SQLRETURN Start(SQLHSTMT statement, Work work) {
    refusals.erase(statement);
    if (Busy(statement)) return Refuse(statement, "HY000", busyText);
    const SQLRETURN rc = work();
    SQLSMALLINT columns = 0;
    if (SQL_SUCCEEDED(rc) && SQL_SUCCEEDED(REAL(SQLNumResultCols)(statement, &columns)) && columns)
        pending[connectionOf[statement]] = statement;
    return rc;
}

std::string Narrow(const SQLWCHAR* text, SQLINTEGER length) {
    std::string narrow;
    for (SQLINTEGER i = 0; length == SQL_NTS ? text[i] != 0 : i < length; ++i)
        narrow += text[i] < 0x80 ? static_cast<char>(text[i]) : '?';
    return narrow;
}

bool NamesTrue(const std::string& text) {
    return text.find("= True") != std::string::npos || text.find("= False") != std::string::npos;
}

SQLRETURN Obey(SQLHSTMT statement, const std::string& order) {
    const SQLHDBC connection = connectionOf[statement];
    if (order == "strict: keys") failingKeys = true;
    if (order == "strict: row") failingRow = true;
    if (order == "strict: end") failingEnds = 2;
    if (order != "strict: keys" && order != "strict: row")
        REAL(SQLEndTran)(SQL_HANDLE_DBC, connection, SQL_ROLLBACK);
    if (order == "strict: victim") return Refuse(statement, "40001", "Chosen as a victim");
    std::u16string nothing = u"set @strict = 0";
    return REAL(SQLExecDirectW)(statement, reinterpret_cast<SQLWCHAR*>(nothing.data()),
                                static_cast<SQLINTEGER>(nothing.size()));
}

void Answer(const Words& words, SQLWCHAR* state, SQLINTEGER* native, SQLWCHAR* text,
            SQLSMALLINT room, SQLSMALLINT* length) {
    for (int i = 0; state && i < 6; ++i) state[i] = i < 5 ? words.state[i] : 0;
    if (native) *native = 0;
    const auto units = static_cast<SQLSMALLINT>(words.text.size());
    if (length) *length = units;
    for (SQLSMALLINT i = 0; text && i < room; ++i) text[i] = i < units ? words.text[i] : 0;
}

bool IsLost(SQLINTEGER native) { return native == 2006 || native == 2013 || native == 1927; }

} // namespace

#define PASS(name, parameters, arguments)                                                          \
    extern "C" SQLRETURN name parameters { return REAL(name) arguments; }

extern "C" SQLRETURN SQLAllocHandle(SQLSMALLINT kind, SQLHANDLE input, SQLHANDLE* output) {
    const SQLRETURN rc = REAL(SQLAllocHandle)(kind, input, output);
    if (kind == SQL_HANDLE_STMT && SQL_SUCCEEDED(rc)) connectionOf[*output] = input;
    return rc;
}

extern "C" SQLRETURN SQLFreeHandle(SQLSMALLINT kind, SQLHANDLE handle) {
    if (kind == SQL_HANDLE_STMT)
        Settle(handle), connectionOf.erase(handle), rowStates.erase(handle);
    if (kind == SQL_HANDLE_DBC) pending.erase(handle), dead.erase(handle);
    refusals.erase(handle);
    return REAL(SQLFreeHandle)(kind, handle);
}

extern "C" SQLRETURN SQLExecDirectW(SQLHSTMT statement, SQLWCHAR* text, SQLINTEGER length) {
    const std::string narrow = Narrow(text, length);
    if (narrow.rfind("strict:", 0) == 0) return Obey(statement, narrow);
    if (NamesTrue(narrow)) return Refuse(statement, "42S22", "Invalid column name 'True'");
    return Start(statement, [&] { return REAL(SQLExecDirectW)(statement, text, length); });
}

extern "C" SQLRETURN SQLExecute(SQLHSTMT statement) {
    return Start(statement, [&] { return REAL(SQLExecute)(statement); });
}

extern "C" SQLRETURN SQLTablesW(SQLHSTMT h, SQLWCHAR* a, SQLSMALLINT al, SQLWCHAR* b,
                                SQLSMALLINT bl, SQLWCHAR* c, SQLSMALLINT cl, SQLWCHAR* d,
                                SQLSMALLINT dl) {
    return Start(h, [&] { return REAL(SQLTablesW)(h, a, al, b, bl, c, cl, d, dl); });
}

extern "C" SQLRETURN SQLColumnsW(SQLHSTMT h, SQLWCHAR* a, SQLSMALLINT al, SQLWCHAR* b,
                                 SQLSMALLINT bl, SQLWCHAR* c, SQLSMALLINT cl, SQLWCHAR* d,
                                 SQLSMALLINT dl) {
    if (!c) return Refuse(h, "HY009", "A table name is required");
    return Start(h, [&] { return REAL(SQLColumnsW)(h, a, al, b, bl, c, cl, d, dl); });
}

extern "C" SQLRETURN SQLStatisticsW(SQLHSTMT h, SQLWCHAR* a, SQLSMALLINT al, SQLWCHAR* b,
                                    SQLSMALLINT bl, SQLWCHAR* c, SQLSMALLINT cl,
                                    SQLUSMALLINT unique, SQLUSMALLINT accuracy) {
    return Start(h, [&] { return REAL(SQLStatisticsW)(h, a, al, b, bl, c, cl, unique, accuracy); });
}

extern "C" SQLRETURN SQLProceduresW(SQLHSTMT h, SQLWCHAR* a, SQLSMALLINT al, SQLWCHAR* b,
                                    SQLSMALLINT bl, SQLWCHAR* c, SQLSMALLINT cl) {
    return Start(h, [&] { return REAL(SQLProceduresW)(h, a, al, b, bl, c, cl); });
}

extern "C" SQLRETURN SQLPrimaryKeysW(SQLHSTMT h, SQLWCHAR* a, SQLSMALLINT al, SQLWCHAR* b,
                                     SQLSMALLINT bl, SQLWCHAR* c, SQLSMALLINT cl) {
    if (std::exchange(failingKeys, false)) return Refuse(h, "HY000", "No keys today");
    return Start(h, [&] { return REAL(SQLPrimaryKeysW)(h, a, al, b, bl, c, cl); });
}

extern "C" SQLRETURN SQLMoreResults(SQLHSTMT statement) {
    const SQLRETURN rc = REAL(SQLMoreResults)(statement);
    if (!SQL_SUCCEEDED(rc)) Settle(statement);
    return rc;
}

extern "C" SQLRETURN SQLFreeStmt(SQLHSTMT statement, SQLUSMALLINT option) {
    if (option == SQL_CLOSE) Settle(statement);
    return REAL(SQLFreeStmt)(statement, option);
}

extern "C" SQLRETURN SQLCloseCursor(SQLHSTMT statement) {
    Settle(statement);
    return REAL(SQLCloseCursor)(statement);
}

extern "C" SQLRETURN SQLEndTran(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT what) {
    refusals.erase(handle);
    if (pending.count(handle)) return Refuse(handle, "HY000", busyText);
    if (failingEnds > 0) {
        --failingEnds;
        return Refuse(handle, "HY000", "The request has no corresponding begin");
    }
    return REAL(SQLEndTran)(kind, handle, what);
}

extern "C" SQLRETURN SQLGetDiagRecW(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT record,
                                    SQLWCHAR* state, SQLINTEGER* native, SQLWCHAR* text,
                                    SQLSMALLINT room, SQLSMALLINT* length) {
    const auto own = refusals.find(handle);
    if (own == refusals.end()) {
        SQLINTEGER number = 0;
        const SQLRETURN rc =
            REAL(SQLGetDiagRecW)(kind, handle, record, state, &number, text, room, length);
        if (native) *native = number;
        if (!SQL_SUCCEEDED(rc) || !IsLost(number)) return rc;
        dead[kind == SQL_HANDLE_STMT ? connectionOf[handle] : handle] = true;
        Answer({"HY000", "Unspecified error"}, state, native, text, room, length);
        return SQL_SUCCESS;
    }
    if (record > 1) return SQL_NO_DATA;
    Answer(own->second, state, native, text, room, length);
    return SQL_SUCCESS;
}

extern "C" SQLRETURN SQLGetDiagFieldW(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT record,
                                      SQLSMALLINT field, SQLPOINTER value, SQLSMALLINT room,
                                      SQLSMALLINT* length) {
    if (refusals.count(handle) == 0)
        return REAL(SQLGetDiagFieldW)(kind, handle, record, field, value, room, length);
    if (field != SQL_DIAG_NUMBER) return SQL_NO_DATA;
    *static_cast<SQLINTEGER*>(value) = 1;
    return SQL_SUCCESS;
}

extern "C" SQLRETURN SQLGetConnectAttrW(SQLHDBC connection, SQLINTEGER which, SQLPOINTER value,
                                        SQLINTEGER room, SQLINTEGER* length) {
    if (which != SQL_ATTR_CONNECTION_DEAD)
        return REAL(SQLGetConnectAttrW)(connection, which, value, room, length);
    *static_cast<SQLUINTEGER*>(value) = dead[connection] ? SQL_CD_TRUE : SQL_CD_FALSE;
    return SQL_SUCCESS;
}

extern "C" SQLRETURN SQLSetStmtAttrW(SQLHSTMT statement, SQLINTEGER which, SQLPOINTER value,
                                     SQLINTEGER size) {
    if (which == SQL_ATTR_ROW_STATUS_PTR) rowStates[statement] = static_cast<SQLUSMALLINT*>(value);
    return REAL(SQLSetStmtAttrW)(statement, which, value, size);
}

extern "C" SQLRETURN SQLFetch(SQLHSTMT statement) {
    const SQLRETURN rc = REAL(SQLFetch)(statement);
    if (!SQL_SUCCEEDED(rc) || !std::exchange(failingRow, false)) return rc;
    if (SQLUSMALLINT* const states = rowStates[statement]) states[0] = SQL_ROW_ERROR;
    Refuse(statement, "22003", "A number of the row is out of range");
    return SQL_SUCCESS_WITH_INFO;
}

// The rest is MariaDB's alone.
PASS(SQLSetEnvAttr, (SQLHENV h, SQLINTEGER a, SQLPOINTER b, SQLINTEGER c), (h, a, b, c))
PASS(SQLGetEnvAttr, (SQLHENV h, SQLINTEGER a, SQLPOINTER b, SQLINTEGER c, SQLINTEGER* d),
     (h, a, b, c, d))
PASS(SQLDriverConnectW,
     (SQLHDBC h, SQLHWND a, SQLWCHAR* b, SQLSMALLINT c, SQLWCHAR* d, SQLSMALLINT e, SQLSMALLINT* f,
      SQLUSMALLINT g),
     (h, a, b, c, d, e, f, g))
PASS(SQLDisconnect, (SQLHDBC h), (h))
PASS(SQLGetInfoW, (SQLHDBC h, SQLUSMALLINT a, SQLPOINTER b, SQLSMALLINT c, SQLSMALLINT* d),
     (h, a, b, c, d))
PASS(SQLSetConnectAttrW, (SQLHDBC h, SQLINTEGER a, SQLPOINTER b, SQLINTEGER c), (h, a, b, c))
PASS(SQLPrepareW, (SQLHSTMT h, SQLWCHAR* a, SQLINTEGER b), (h, a, b))
PASS(SQLBindParameter,
     (SQLHSTMT h, SQLUSMALLINT a, SQLSMALLINT b, SQLSMALLINT c, SQLSMALLINT d, SQLULEN e,
      SQLSMALLINT f, SQLPOINTER g, SQLLEN i, SQLLEN* j),
     (h, a, b, c, d, e, f, g, i, j))
PASS(SQLNumResultCols, (SQLHSTMT h, SQLSMALLINT* a), (h, a))
PASS(SQLNumParams, (SQLHSTMT h, SQLSMALLINT* a), (h, a))
PASS(SQLDescribeColW,
     (SQLHSTMT h, SQLUSMALLINT a, SQLWCHAR* b, SQLSMALLINT c, SQLSMALLINT* d, SQLSMALLINT* e,
      SQLULEN* f, SQLSMALLINT* g, SQLSMALLINT* i),
     (h, a, b, c, d, e, f, g, i))
PASS(SQLColAttributeW,
     (SQLHSTMT h, SQLUSMALLINT a, SQLUSMALLINT b, SQLPOINTER c, SQLSMALLINT d, SQLSMALLINT* e,
      SQLLEN* f),
     (h, a, b, c, d, e, f))
PASS(SQLBindCol, (SQLHSTMT h, SQLUSMALLINT a, SQLSMALLINT b, SQLPOINTER c, SQLLEN d, SQLLEN* e),
     (h, a, b, c, d, e))
PASS(SQLGetStmtAttrW, (SQLHSTMT h, SQLINTEGER a, SQLPOINTER b, SQLINTEGER c, SQLINTEGER* d),
     (h, a, b, c, d))
PASS(SQLGetData, (SQLHSTMT h, SQLUSMALLINT a, SQLSMALLINT b, SQLPOINTER c, SQLLEN d, SQLLEN* e),
     (h, a, b, c, d, e))
PASS(SQLRowCount, (SQLHSTMT h, SQLLEN* rows), (h, rows))
PASS(SQLGetFunctions, (SQLHDBC h, SQLUSMALLINT a, SQLUSMALLINT* b), (h, a, b))
