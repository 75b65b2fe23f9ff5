#include "data/embedded/EmbeddedConnection.h"

#include <sqlite3.h>

#include "data/Error.h"
#include "data/embedded/Translator.h"
#include "data/embedded/Types.h"
#include "data/rows/ClientRecordset.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

// Runs a recordset's statement again, and writes its rows in SQLite's own words.
class EmbeddedRows : public RowSource {
public:
    EmbeddedRows(std::shared_ptr<Session> session, std::string_view statement,
                 const std::vector<Value>& values)
        : lclSession(std::move(session)), lclStatement(statement), lclValues(values) {}

    ResultRows Fetch() override {
        std::int64_t touched = 0;
        return lclSession->Run(lclStatement, lclValues, touched);
    }
    std::string Quoted(std::string_view name) const override { return QuotedName(name); }
    std::string SameAs(const Field& field) const override {
        const std::string column = QuotedName(field.baseColumn);
        // Texts are compared to the letter, in spite of the collation.
        return column + " = ? COLLATE BINARY";
    }
    std::int64_t Run(const std::string& statement, const std::vector<Value>& values) override {
        std::int64_t touched = 0;
        lclSession->RunNative(statement, values, touched);
        return touched;
    }
    ResultRows Read(const std::string& statement, const std::vector<Value>& values) override {
        std::int64_t touched = 0;
        return lclSession->RunNative(statement, values, touched);
    }
    std::int64_t NewIdentity() override { return lclSession->NewIdentity(); }

private:
    std::shared_ptr<Session> lclSession;
    std::string lclStatement;
    std::vector<Value> lclValues;
};

} // namespace

void EmbeddedConnection::Close() {
    lclSession->Handle(); // closed twice is an error, as ADO has it
    lclSession->Close();
}

RecordsetPtr EmbeddedConnection::Open(const Command& command) {
    if (command.type != CommandType::Text)
        throw Error(errors::syntax,
                    "There is no procedure '" + command.text + "': this database has none.",
                    "EmbeddedDatabase", command.text);
    std::vector<Value> values;
    for (const Parameter& parameter : command.parameters) values.push_back(parameter.value);
    std::int64_t touched = 0;
    ResultRows result = lclSession->Run(command.text, values, touched);
    if (!result.fields) return std::make_unique<ClientRecordset>();
    return std::make_unique<ClientRecordset>(
        std::move(result), std::make_unique<EmbeddedRows>(lclSession, command.text, values));
}

std::int64_t EmbeddedConnection::Execute(std::string_view statement) {
    std::int64_t touched = 0;
    lclSession->Run(statement, {}, touched);
    return touched;
}

Value EmbeddedConnection::Property(std::string_view name) const {
    const std::pair<const char*, std::string> properties[] = {
        {"DBMS Name", "ACCESS"},
        {"DBMS Version", "04.00.0000"},
        {"Provider Name", "Kavidex.EmbeddedDatabase"},
        {"Provider Version", sqlite3_libversion()},
        {"Transaction DDL", "8"}, // definitions take part in transactions, and roll back with them
        {"Data Source Name", lclSession->Path()},
        {"Data Source", lclSession->Path()},
    };
    for (const auto& [own, value] : properties)
        if (platform::EqualAsciiNoCase(own, name)) return value;
    throw Error(errors::itemNotFound, "The connection has no property '" + std::string(name) + "'.",
                "EmbeddedDatabase");
}

std::string EmbeddedConnection::DefaultDatabase() const {
    lclSession->Handle();
    return lclSession->Path();
}

RecordsetPtr EmbeddedConnection::OpenSchema(Schema schema) {
    return std::make_unique<ClientRecordset>(ReadSchema(*lclSession, schema), nullptr);
}

} // namespace kavidex::data::embedded
