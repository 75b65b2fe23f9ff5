// The ADO engine: any object with the surface of ADODB.Connection, called by the names of its
// members. This is how a connection that a host opened itself is served.
//
// A host may close its object and open it elsewhere: what was learnt of the database counts only
// while the object's connection string stays. MariaDB is called "MySQL", the dialect it speaks.
//
// Where commands and recordsets come from is decided once a connection, by its first Open:
//   1. An object that offers NewCommand and NewRecordset makes its own: it knows best, and needs no
//      ADO on the machine.
//   2. Otherwise ADODB.Command and ADODB.Recordset are made, where they are registered and the
//      command accepts the object as its ActiveConnection. ADO's own connections end here. Where
//      the command fails otherwise than by refusing the object, it is asked again the next time.
//   3. Otherwise the object's Execute runs the statement; its recordset may be forward-only, is
//      then read into memory whole, and refuses writes. Parameters need one of the first two.
#pragma once

#include "data/AdoFactory.h"
#include "platform/win32/Late.h"

namespace kavidex::data::win32 {

class LateAdoConnection : public AdoConnection {
public:
    explicit LateAdoConnection(platform::win32::Late connection)
        : lclConnection(std::move(connection)) {}

    // The object that was handed over, for giving it back.
    const platform::win32::ComPtr<IDispatch>& Object() const { return lclConnection.Object(); }

    bool SameAs(const Connection& other) const override;
    bool IsOpen() const override;
    void Close() override;
    RecordsetPtr Open(const Command& command) override;
    std::int64_t Execute(std::string_view statement) override;
    Value Property(std::string_view name) const override;
    std::string DefaultDatabase() const override;
    RecordsetPtr OpenSchema(Schema schema) override;
    std::vector<ErrorDetail> Errors() const override;
    void BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;

    void SetMode(std::int32_t mode) override;
    void OpenDatabase(std::string_view connectionString) override;

private:
    enum class Means { Unknown, OwnObjects, AdoClasses, ExecuteOnly };

    void NeedOpen() const;
    void NeedTransaction(const char* statement) const;
    Means ChooseMeans();
    std::size_t Address() const;
    platform::win32::Late NewCommand(const Command& command) const;
    platform::win32::Late NewObject(const wchar_t* member, const char* progId) const;
    platform::win32::Late RunByExecute(const Command& command) const;

    platform::win32::Late lclConnection;
    Means lclMeans = Means::Unknown;
    int lclTransactions = 0;               // levels
    bool lclUndone = false;                // an inner level was rolled back
    mutable std::string lclDbmsName;       // asked before every statement
    mutable std::size_t lclDbmsNameOf = 0; // hash of the connection string it was told under
};

} // namespace kavidex::data::win32
