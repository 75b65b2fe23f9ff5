// A connection for tests: keeps every statement letter for letter, answers a DBMS name, can pass
// the statements on to a real connection, and can fail on demand.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "data/Connection.h"
#include "data/Error.h"
#include "data/rows/ClosedRecordset.h"

namespace kavidex::tests {

class RecordingConnection : public data::Connection {
public:
    // Without `target` reads give what `answer` gives, or a closed recordset; writes touch -1 rows.
    // With it, everything goes there after it was recorded; an empty name asks the target's.
    explicit RecordingConnection(std::string dbmsName = "ACCESS",
                                 data::ConnectionPtr target = nullptr)
        : name(std::move(dbmsName)), inner(std::move(target)) {}

    std::vector<std::string> statements; // reads and writes, in their order
    std::vector<data::Command> commands; // the reads as they came, with type and parameters
    std::function<data::RecordsetPtr(const data::Command&)> answer;
    std::function<bool(const std::string& statement)> refuse; // true: this statement fails
    std::function<data::RecordsetPtr(data::Schema)> schemaAnswer;
    std::string name;
    std::string database = "recorded";
    data::ConnectionPtr inner;
    bool open = true;

    // From now on, the n-th statement (from 1) fails; with `onwards` all after it too, as when the
    // connection drops. 0 turns it off.
    void FailAt(std::size_t n, bool onwards = false) {
        lclFailAt = n == 0 ? 0 : statements.size() + n;
        lclOnwards = onwards;
    }

    std::size_t Count(std::string_view part) const { // statements that contain `part`
        return static_cast<std::size_t>(
            std::count_if(statements.begin(), statements.end(),
                          [&](const std::string& s) { return s.find(part) != std::string::npos; }));
    }
    bool Issued(std::string_view whole) const {
        return std::find(statements.begin(), statements.end(), whole) != statements.end();
    }

    bool IsOpen() const override { return inner ? inner->IsOpen() : open; }
    void Close() override {
        open = false;
        if (inner) inner->Close();
    }
    data::RecordsetPtr Open(const data::Command& command) override {
        commands.push_back(command);
        Record(command.text);
        if (inner) return inner->Open(command);
        data::RecordsetPtr rows = answer ? answer(command) : nullptr;
        return rows ? std::move(rows) : data::MakeClosedRecordset();
    }
    std::int64_t Execute(std::string_view statement) override {
        Record(std::string(statement));
        return inner ? inner->Execute(statement) : -1;
    }
    data::Value Property(std::string_view property) const override {
        if (!name.empty() && property == "DBMS Name") return name;
        if (inner) return inner->Property(property);
        throw data::Error(data::errors::itemNotFound, "Item cannot be found in the collection.",
                          "RecordingConnection");
    }
    std::string DefaultDatabase() const override {
        return inner ? inner->DefaultDatabase() : database;
    }
    data::RecordsetPtr OpenSchema(data::Schema schema) override {
        if (schemaAnswer) return schemaAnswer(schema);
        return inner ? inner->OpenSchema(schema) : data::MakeClosedRecordset();
    }
    std::vector<data::ErrorDetail> Errors() const override {
        return inner ? inner->Errors() : std::vector<data::ErrorDetail>{};
    }
    void BeginTrans() override {
        if (inner) inner->BeginTrans();
    }
    void CommitTrans() override {
        if (inner) inner->CommitTrans();
    }
    void RollbackTrans() override {
        if (inner) inner->RollbackTrans();
    }

private:
    void Record(const std::string& statement) {
        statements.push_back(statement);
        const bool due = lclFailAt != 0 && (statements.size() == lclFailAt ||
                                            (lclOnwards && statements.size() > lclFailAt));
        if (due || (refuse && refuse(statement)))
            throw data::Error(data::errors::unspecified, "made to fail", "RecordingConnection",
                              statement);
    }

    std::size_t lclFailAt = 0;
    bool lclOnwards = false;
};

} // namespace kavidex::tests
