// The documents of a dossier as rows: what the folder's list and the tree's list mode show.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/lists/ListRows.h"
#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::model {
class clsItem;
}

namespace kavidex::controls {

struct DocumentRow {
    std::int32_t id = 0; // of the tree item
    std::int32_t documentId = 0;
    std::string description, type, insertedBy;
    std::string insertedOn; // dd-mm-yyyy hh:mm
    std::string sortKey;    // of the moment, so that the column sorts by time
};

// The documents among the items, in their order.
std::vector<DocumentRow> RowsOf(std::span<const std::shared_ptr<model::clsItem>> items);

// Reads who added the documents and when; a row whose document has no record stays as it is.
// False when part of it could not be read: the log tells why.
bool ReadInsertion(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
                   std::vector<DocumentRow>& rows);

// "dd-mm-yyyy hh:mm" of the numbers that a document row keeps; parts that are missing are left out.
std::string InsertMoment(std::string_view date, std::string_view time);

// Fields: "Omschrijving", "Type", "Toegevoegd door", "Toegevoegd op", "InsertSort".
class DocumentRows : public ListRows {
public:
    explicit DocumentRows(std::vector<DocumentRow> rows) : lclRows(std::move(rows)) {}

    std::size_t Count() const override { return lclRows.size(); }
    std::int32_t Id(std::size_t row) const override { return lclRows[row].id; }
    std::string Text(std::size_t row, std::string_view field) const override;
    void SortKey(std::size_t row, std::string_view field, std::string& to) const override;
    bool HasPictures() const override { return true; }
    std::string Picture(std::size_t row) const override;

private:
    const std::string* Find(std::size_t row, std::string_view field) const; // null: no such field

    std::vector<DocumentRow> lclRows;
};

} // namespace kavidex::controls
