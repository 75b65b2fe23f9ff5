// The dossier number that belongs to a key of the host's own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "model/RecordClass.h"

namespace kavidex::model {

class Store;

// OpenDataSource filters on the properties that the caller has set and loads the first row; moves
// load theirs. A key with backslashes is also found as a MySQL server keeps those that are written
// here: with two for each.
class clsDossierDbRelations : public RecordClass {
public:
    explicit clsDossierDbRelations(const platform::Workstation& workstation);

    const std::string& DbKey() const { return lclRow.dbKey; }
    void SetDbKey(std::string_view key) { lclRow.dbKey = lclFilter.dbKey = key; }
    std::int32_t DossierId() const { return lclRow.dossierId; } // column DbRelId
    void SetDossierId(std::int32_t id) { lclRow.dossierId = lclFilter.dossierId = id; }

    std::int64_t DbKey_Size() const { return FieldSize("dbKey"); }
    std::int64_t DossierId_Size() const { return FieldSize("DbRelId"); }

    // OpenDataSource for this key, at its own row: not at that of a key which the server's
    // collation takes for it. Eof where there is none.
    bool OpenKey(std::string_view key);
    bool SaveNewRow() override;
    // The same, for a key that has no number: where another gives it one at the same moment, the
    // number is that of the first, `anothers` tells it, and the row made here is taken out again.
    bool SaveNewKey(bool& anothers);
    bool UpdateCurrentRow() override;
    // Gives the dossier another key, and its documents with it: all of it or nothing.
    bool Rekey(std::string_view newKey);
    bool DeleteCurrentRow() override;

protected:
    std::string SelectStatement() const override;
    std::string OtherStatement() const override;
    std::string_view LiveRows() const override { return "DbRelId > 0"; }
    void ReadRow(const data::Recordset& row) override;
    void RowChanged() override { LoadData(); }

private:
    std::string SelectBy(std::string_view key) const;
    std::int32_t FirstNumber() const;
    bool IsKey(std::string_view kept, std::string_view given) const;
    void TakeOut() const;
    void WriteKey() const;
    void RekeyDocuments(const Store& store, std::string_view oldKey, std::string_view newKey) const;
    void NeedRow(std::int64_t touched) const;
    struct Row {
        std::string dbKey;
        std::int32_t dossierId = 0;
    };
    Row lclRow;    // what the properties show
    Row lclFilter; // what the caller set, without what was loaded
};

// The host's key of the dossier that a tree belongs to; none where no living rows lead to one.
// Throws data::Error when they could not be read.
std::optional<std::string> KeyOfTree(const data::ConnectionPtr& connection, std::int32_t treeId);

} // namespace kavidex::model
