#include "controls/tree/TreeGrid.h"

#include "model/clsItem.h"

namespace kavidex::controls {

std::span<const ListColumn> GridColumns() {
    static constexpr ListColumn columns[] = {
        {.caption = "Omschrijving", .field = "Omschrijving"},
        {.caption = "Type", .field = "Type"},
        {.caption = "Toegevoegd door", .field = "Toegevoegd door"},
        {.caption = "Toegevoeg op", .field = "Toegevoegd op", .sortField = "InsertSort"},
    };
    return columns;
}

std::unique_ptr<ListRows> GridRows(const platform::Workstation& workstation,
                                   const data::ConnectionPtr& connection,
                                   const std::vector<std::shared_ptr<model::clsItem>>& items) {
    auto rows = RowsOf(items);
    ReadInsertion(workstation, connection, rows);
    return std::make_unique<DocumentRows>(std::move(rows));
}

} // namespace kavidex::controls
