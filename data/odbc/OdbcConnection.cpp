#include "data/odbc/OdbcConnection.h"

#include "data/Error.h"
#include "data/odbc/OdbcCatalog.h"
#include "data/odbc/OdbcLink.h"
#include "data/odbc/OdbcStatement.h"
#include "data/rows/ClientRecordset.h"
#include "platform/text.h"

namespace kavidex::data {

namespace odbc {

namespace {

// `trouble` receives why the keys could not be asked for; null: they are not needed.
ResultRows ReadRows(const LinkPtr& link, const std::string& text, const std::vector<Value>& values,
                    std::string* trouble) {
    OdbcStatement statement(link);
    statement.Run(text, values);
    if (!statement.HasRows()) {
        statement.Finish();
        return {nullptr, RowStore()};
    }
    const auto fields = std::make_shared<std::vector<Field>>(statement.Describe());
    const Origins origins = trouble ? statement.ReadOrigins() : Origins();
    RowStore rows = statement.FetchAll();
    statement.Finish();
    if (trouble) *trouble = MarkKeys(link, origins, *fields);
    return {fields, std::move(rows)};
}

class OdbcRowSource : public RowSource {
public:
    OdbcRowSource(LinkPtr link, std::string text, std::vector<Value> values)
        : lclLink(std::move(link)), lclText(std::move(text)), lclValues(std::move(values)) {}

    ResultRows Fetch() override { return ReadRows(lclLink, lclText, lclValues, &lclTrouble); }
    std::string KeyTrouble() const override { return lclTrouble; }
    std::string Quoted(std::string_view name) const override {
        return odbc::Quoted(lclLink->Speaks(), name);
    }
    std::string SameAs(const Field& field) const override {
        return odbc::SameAs(lclLink->Speaks(), field);
    }
    std::int64_t Run(const std::string& text, const std::vector<Value>& values) override {
        OdbcStatement statement(lclLink);
        statement.Run(text, values);
        const std::int64_t rows = statement.RowCount();
        statement.Finish();
        return rows;
    }
    ResultRows Read(const std::string& text, const std::vector<Value>& values) override {
        return ReadRows(lclLink, text, values, nullptr);
    }
    std::int64_t NewIdentity() override {
        const ResultRows result = Read(std::string(lclLink->Speaks().identity), {});
        return result.rows.Rows() == 0 ? 0 : ToInt64(result.rows.Read(0, 0));
    }

private:
    LinkPtr lclLink;
    std::string lclText, lclTrouble;
    std::vector<Value> lclValues;
};

// "{call name(?,?)}" for a procedure.
std::string TextOf(const Command& command) {
    if (command.type == CommandType::Text) return command.text;
    std::string marks;
    for (std::size_t i = 0; i < command.parameters.size(); ++i) marks += i == 0 ? "?" : ",?";
    return "{call " + command.text + (marks.empty() ? "" : "(" + marks + ")") + "}";
}

struct InfoProperty {
    std::string_view name;
    SQLUSMALLINT what;
};

constexpr InfoProperty properties[] = {
    {"DBMS Name", SQL_DBMS_NAME},
    {"DBMS Version", SQL_DBMS_VER},
    {"Data Source Name", SQL_DATA_SOURCE_NAME},
    {"Server Name", SQL_SERVER_NAME},
    {"User Name", SQL_USER_NAME},
    {"Driver Name", SQL_DRIVER_NAME},
    {"Driver Version", SQL_DRIVER_VER},
    {"Current Catalog", SQL_DATABASE_NAME},
};

// OLE DB's numbers for what a transaction may hold.
std::int64_t TransactionDdl(SQLUSMALLINT capability) {
    switch (capability) {
    case SQL_TC_NONE: return 0;
    case SQL_TC_ALL: return 8;
    case SQL_TC_DDL_COMMIT: return 2;
    case SQL_TC_DDL_IGNORE: return 4;
    default: return 1; // rows only
    }
}

class OdbcConnection : public Connection {
public:
    explicit OdbcConnection(std::string_view text) : lclLink(std::make_shared<OdbcLink>(text)) {}
    ~OdbcConnection() override { lclLink->Close(); }

    bool IsOpen() const override { return lclLink->IsOpen(); }
    void Close() override {
        lclLink->CheckOpen();
        lclLink->Close();
        lclLevel = 0;
    }

    RecordsetPtr Open(const Command& command) override {
        lclLink->ForgetErrors();
        std::vector<Value> values;
        for (const Parameter& parameter : command.parameters) values.push_back(parameter.value);
        auto source = std::make_unique<OdbcRowSource>(lclLink, TextOf(command), std::move(values));
        ResultRows result = source->Fetch();
        if (!result.fields) return std::make_unique<ClientRecordset>();
        return std::make_unique<ClientRecordset>(std::move(result), std::move(source));
    }

    std::int64_t Execute(std::string_view text) override {
        lclLink->ForgetErrors();
        OdbcStatement statement(lclLink);
        statement.Run(text);
        const std::int64_t rows = statement.HasRows() ? -1 : statement.RowCount();
        statement.Finish();
        return rows;
    }

    Value Property(std::string_view name) const override {
        lclLink->CheckOpen();
        if (platform::EqualAsciiNoCase(name, "DBMS Name") && !lclLink->Speaks().dbmsName.empty())
            return std::string(lclLink->Speaks().dbmsName);
        if (platform::EqualAsciiNoCase(name, "Transaction DDL"))
            return TransactionDdl(lclLink->TransactionCapability());
        for (const InfoProperty& known : properties)
            if (platform::EqualAsciiNoCase(known.name, name)) return lclLink->Info(known.what);
        throw Error(errors::itemNotFound,
                    "The connection has no property \"" + std::string(name) + "\"", "ODBC");
    }

    std::string DefaultDatabase() const override { return lclLink->CurrentCatalog(); }

    RecordsetPtr OpenSchema(Schema schema) override {
        lclLink->ForgetErrors();
        return std::make_unique<ClientRecordset>(ReadSchema(lclLink, schema), nullptr);
    }

    std::vector<ErrorDetail> Errors() const override { return lclLink->Errors(); }

    void BeginTrans() override {
        if (lclLevel == 0) {
            lclLink->BeginTransaction();
            lclUndone = false;
        }
        ++lclLevel;
    }
    void CommitTrans() override { Leave(true); }
    void RollbackTrans() override { Leave(false); }

private:
    void Leave(bool commit) {
        lclLink->CheckOpen();
        if (lclLevel == 0)
            throw Error(errors::unspecified, "No transaction is under way on this connection",
                        "ODBC");
        if (!commit) lclUndone = true;
        if (--lclLevel > 0) return;
        lclUndone = lclUndone || lclLink->TransactionLost();
        lclLink->EndTransaction(!lclUndone);
        if (commit && lclUndone)
            throw Error(errors::unspecified,
                        "The transaction was rolled back, since a part of it was", "ODBC");
    }

    LinkPtr lclLink;
    int lclLevel = 0;
    bool lclUndone = false;
};

} // namespace

} // namespace odbc

ConnectionPtr OpenOdbc(std::string_view connectionString) {
    return std::make_shared<odbc::OdbcConnection>(connectionString);
}

} // namespace kavidex::data
