// A connection of the embedded engine. It answers "ACCESS" to "DBMS Name".
#pragma once

#include "data/Connection.h"
#include "data/embedded/Session.h"

namespace kavidex::data::embedded {

class EmbeddedConnection : public Connection {
public:
    explicit EmbeddedConnection(std::shared_ptr<Session> session)
        : lclSession(std::move(session)) {}
    ~EmbeddedConnection() override { lclSession->Close(); }

    bool IsOpen() const override { return lclSession->IsOpen(); }
    // What no transaction has committed is undone. Recordsets stay readable; their writes fail.
    void Close() override;

    RecordsetPtr Open(const Command& command) override;
    std::int64_t Execute(std::string_view statement) override;

    // "DBMS Name", "DBMS Version", "Provider Name", "Data Source Name" (the path), without case.
    Value Property(std::string_view name) const override;
    // The whole path: files that differ in their extension alone are two databases. Throws when the
    // connection is closed.
    std::string DefaultDatabase() const override;
    RecordsetPtr OpenSchema(Schema schema) override;
    std::vector<ErrorDetail> Errors() const override { return lclSession->Errors(); }

    void BeginTrans() override { lclSession->BeginTrans(); }
    void CommitTrans() override { lclSession->CommitTrans(); }
    void RollbackTrans() override { lclSession->RollbackTrans(); }

    Session& OwnSession() { return *lclSession; }

private:
    std::shared_ptr<Session> lclSession;
};

// The rows of OpenSchema, from the file's own description.
ResultRows ReadSchema(Session& session, Schema schema);

} // namespace kavidex::data::embedded
