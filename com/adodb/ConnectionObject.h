// The face of ADODB.Connection over any engine: what scripts and hosts work with, and what they
// hand to DbConnection.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "com/adodb/Reporting.h"
#include "data/Connection.h"

namespace kavidex::com::adodb {

// Opens what a connection string names. Throws data::Error.
using Opener = std::function<data::ConnectionPtr(const std::string& connectionString)>;

// A path of an embedded database, by itself or as Data Source=, DBQ= or Database=. Other drivers
// and providers are refused.
data::ConnectionPtr OpenEmbedded(const std::string& connectionString);

class ConnectionObject : public Reporting {
public:
    // A closed connection that opens by connection string.
    explicit ConnectionObject(Opener opener = OpenEmbedded);
    // A face over a connection that is open already.
    explicit ConnectionObject(data::ConnectionPtr connection);

    // Null when the object is not of this class.
    static ComPtr<ConnectionObject> From(IDispatch* object);
    // The living face of a connection, null when there is none.
    static ComPtr<IDispatch> Over(const data::Connection* connection);

    const Table& Members() const override;
    const data::ConnectionPtr& Engine() const { return lclConnection; } // null while closed
    data::Connection& NeedOpen() const; // throws errors::objectClosed
    void Note(const data::ErrorDetail& error);

    std::string ConnectionString() const { return lclConnectionString; }
    void SetConnectionString(const std::string& text);
    void Open(std::optional<std::string> connectionString, std::optional<std::string> user,
              std::optional<std::string> password, std::optional<std::int32_t> options);
    void Close();
    std::int32_t State() const;
    ComPtr<IDispatch> Execute(const std::string& statement, std::int64_t& touched,
                              std::optional<std::int32_t> options);
    std::int32_t BeginTrans();
    void CommitTrans();
    void RollbackTrans();
    std::string DefaultDatabase() const;
    ComPtr<IDispatch> OpenSchema(std::int32_t schema, std::optional<Variant> restrictions);
    ComPtr<IDispatch> Errors();
    ComPtr<IDispatch> Properties();
    ComPtr<IDispatch> NewCommand();
    ComPtr<IDispatch> NewRecordset();

    std::vector<data::ErrorDetail>& ErrorList() { return lclErrors; }

    // Settings without an effect of their own; kept for callers that set and read them.
    struct Settings {
        std::int32_t commandTimeout = 30, connectionTimeout = 15, mode = 0, cursorLocation = 3;
        std::string provider = "Kavidex";
        // Asks our own controls to treat this object like a stranger's: called by names only.
        bool lateBound = false;
    } settings;

protected:
    ~ConnectionObject() override;
    ConnectionObject* Reporter() override { return this; }
    void* Further(REFIID iid) override;
    std::shared_ptr<void> Native(const std::type_info& wanted) override;

private:
    void SetEngine(data::ConnectionPtr connection);

    Opener lclOpener;
    data::ConnectionPtr lclConnection;
    std::string lclConnectionString;
    std::vector<data::ErrorDetail> lclErrors;
    std::int32_t lclTransactions = 0;
};

} // namespace kavidex::com::adodb
