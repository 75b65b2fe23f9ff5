// Kavidex.EmbeddedDatabase: how scripts and hosts reach a database file without any server.
#include "data/embedded/EmbeddedDatabase.h"
#include "com/data/faces.h"
#include "data/Error.h"
#include "kavidex_idl.h"

namespace kavidex::com {

namespace {

class EmbeddedDatabaseObject : public Automation {
public:
    const Table& Members() const override;

    // A path, or an open connection of the embedded engine. Answers the findings, none when the
    // file is sound.
    Variant Check(const Variant& what) const {
        std::vector<std::string> findings;
        if (what.IsText())
            findings = data::EmbeddedDatabase::Check(what.ToText());
        else
            findings =
                data::EmbeddedDatabase::Check(*Need(adodb::ConnectionFrom(what.ToDispatch())));
        return platform::win32::ArrayOf({findings.begin(), findings.end()});
    }
    void BackupTo(data::ConnectionPtr connection, const std::string& path) const {
        data::EmbeddedDatabase::BackupTo(*Need(std::move(connection)), path);
    }

private:
    static data::ConnectionPtr Need(data::ConnectionPtr connection) {
        if (connection) return connection;
        throw data::Error(data::errors::objectClosed, "There is no connection.",
                          "Kavidex.EmbeddedDatabase");
    }
};

using Row = Rows<EmbeddedDatabaseObject>;
using Self = EmbeddedDatabaseObject;

constexpr Member members[] = {
    Row::Method<[](Self&, std::string path) { return data::EmbeddedDatabase::OpenOrCreate(path); }>(
        L"OpenOrCreate", 1, L"Path"),
    Row::Method<[](Self&, std::string path) { return data::EmbeddedDatabase::Open(path); }>(
        L"Open", 2, L"Path"),
    Row::Method<[](Self&, std::string path) { return data::EmbeddedDatabase::Create(path); }>(
        L"Create", 3, L"Path"),
    Row::Method<&Self::Check>(L"Check", 4, L"PathOrConnection"),
    Row::Method<&Self::BackupTo>(L"BackupTo", 5, L"Connection,Path"),
};
constexpr Table table{"Kavidex.EmbeddedDatabase", &DIID__EmbeddedDatabase, members};

const Table& EmbeddedDatabaseObject::Members() const { return table; }

} // namespace

ComPtr<IDispatch> NewEmbeddedDatabase() { return Make<EmbeddedDatabaseObject>(); }

} // namespace kavidex::com
