// The machine's ADO, played by our own ADODB-compatible objects: for the life of an AdoClasses,
// this process gets them under ADODB's own identifiers.
#pragma once

#include <windows.h>

#include <objbase.h>

#include <string>

#include "com/adodb/CommandObject.h"
#include "com/adodb/ConnectionObject.h"
#include "com/adodb/RecordsetObject.h"
#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/odbc/OdbcConnection.h"
#include "platform/text.h"
#include "platform/win32/Late.h"
#include "tests/e2e/doubles/Factories.h"

namespace kavidex::tests {

using com::ComPtr;
using platform::win32::Late;
using platform::win32::Variant;

// A connection as a host's own library has it: it makes no commands and recordsets itself.
class Stranger : public com::adodb::ConnectionObject {
public:
    using ConnectionObject::ConnectionObject;
    const com::Table& Members() const override {
        static const com::Table without = [this] {
            com::Table table = ConnectionObject::Members();
            table.members = table.members.first(table.members.size() - 2);
            return table;
        }();
        return without;
    }
};

// An Access file is played by an embedded one that has its password already: without it nobody gets
// in. Every other connection string goes to ODBC.
inline data::ConnectionPtr OpenAsAdo(const std::string& connectionString) {
    constexpr std::string_view access = "driver={Microsoft Access Driver (*.mdb)};DBQ=";
    constexpr std::string_view password = ";Password=Kw72p5n9";
    if (connectionString.rfind(access, 0) != 0) return data::OpenOdbc(connectionString);
    std::string path = connectionString.substr(access.size());
    if (path.size() < password.size() ||
        path.compare(path.size() - password.size(), password.size(), password) != 0)
        throw data::Error(data::errors::authentication, "Not a valid password.", "Access double");
    path.resize(path.size() - password.size());
    return data::EmbeddedDatabase::Open(path);
}

class AdoConnectionDouble : public Stranger {
public:
    AdoConnectionDouble() : Stranger(OpenAsAdo) {}

protected:
    // To our own controls this is another library's object.
    std::shared_ptr<void> Native(const std::type_info&) override { return nullptr; }
};

struct AdoClasses {
    ClassUnder<AdoConnectionDouble> connection{L"ADODB.Connection"};
    ClassUnder<com::adodb::CommandObject> command{L"ADODB.Command"};
    ClassUnder<com::adodb::RecordsetObject> recordset{L"ADODB.Recordset"};

    bool Registered() const {
        return connection.Registered() && command.Registered() && recordset.Registered();
    }
};

} // namespace kavidex::tests
