#include "controls/tree/TreeGrid.h"

#include "model/clsItem.h"

namespace kavidex::controls {

namespace {

constexpr ListColumn columns[] = {
    {.caption = "Omschrijving", .field = "Omschrijving", .least = 180},
    {.caption = "Type", .field = "Type", .width = 95},
    {.caption = "Toegevoegd door", .field = "Toegevoegd door", .width = 165},
    {.caption = "Toegevoeg op", .field = "Toegevoegd op", .sortField = "InsertSort", .width = 150},
};

} // namespace

TreeGrid::TreeGrid(const platform::Workstation& workstation)
    : lclWorkstation(workstation), lclList(columns, true) {}

bool TreeGrid::Show(const data::ConnectionPtr& connection,
                    const std::vector<std::shared_ptr<model::clsItem>>& items) {
    auto rows = RowsOf(items);
    std::vector<DocumentRow> unread;
    for (const auto& row : rows)
        if (row.documentId > 0 && !lclRead.contains(row.documentId)) unread.push_back(row);
    const bool whole = unread.empty() || ReadInsertion(lclWorkstation, connection, unread);
    auto read = whole ? std::move(lclRead) : lclRead; // what failed is asked for again
    for (auto& row : unread) read.insert_or_assign(row.documentId, std::move(row));
    for (auto& row : rows) {
        const auto known = read.find(row.documentId);
        if (known == read.end()) continue;
        row.insertedBy = known->second.insertedBy;
        row.insertedOn = known->second.insertedOn;
        row.sortKey = known->second.sortKey;
    }
    if (whole) lclRead = std::move(read);
    lclList.SetRows(std::make_unique<DocumentRows>(std::move(rows)));
    return whole;
}

void TreeGrid::Forget() { lclRead.clear(); }

} // namespace kavidex::controls
