// The list mode: the documents of the dossier as rows of `Grid`, in the tree's place.
#include <algorithm>

#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::controls {

void ctrlTree::SubscribeToGrid() {
    auto& grid = Grid();
    const auto keep = [&](std::shared_ptr<void> token) {
        lclGridTokens.push_back(std::move(token));
    };
    keep(grid.SelectionChanged.Subscribe([this] { RowsSelected(); }));
    keep(grid.Activated.Subscribe([this](std::int32_t id) { NodeActivated(id); }));
    keep(grid.ContextMenu.Subscribe(
        [this](std::optional<std::int32_t> id, int x, int y) { ContextMenu(id, x, y); }));
    keep(grid.KeyPressed.Subscribe([this](const Shortcut& key, bool& used) {
        used = !key.alt && CommandKey(key.key, key.control, key.shift);
    }));
    keep(grid.DragStarted.Subscribe([this](std::int32_t id) { Drag(id); }));
    keep(grid.BoxClicked.Subscribe(
        [this](std::int32_t id) { NodeChecked(id, !lclCollected.contains(id)); }));
    keep(grid.EditAsked.Subscribe([this](std::int32_t id, bool& may) { may = CanEditLabel(id); }));
    keep(grid.Edited.Subscribe(
        [this](std::int32_t id, const std::string& text) { LabelEdited(id, text); }));
}

void ctrlTree::SetListMode(bool list) {
    if (list == lclListMode) return;
    lclListMode = list;
    lclGridDue = false;
    if (list)
        FillGrid();
    else
        Grid().SetRows(nullptr);
    ShowStatusText();
    if (lclWindow) lclWindow->ShowList(list);
    if (!list && HandleOf(lclSelected)) lclWindow->EnsureVisible(HandleOf(lclSelected));
}

void ctrlTree::SwitchTyped(std::string_view text) {
    for (const bool list : {false, true})
        if (platform::EqualNoCase(platform::TrimView(text), ShownChild(list))) SetListMode(list);
}

void ctrlTree::GridChanged() {
    if (!lclListMode || lclGridDue) return;
    lclGridDue = true;
    if (lclWindow) lclWindow->WakeSoon();
}

void ctrlTree::Woken() {
    if (std::exchange(lclGridDue, false)) FillGrid();
}

void ctrlTree::FillGrid() {
    Guarded("Grid", [&] {
        auto items = AllItems();
        std::erase_if(items, [](const ItemPtr& item) {
            return platform::EqualNoCase(item->ItemType(), "user");
        });
        const bool whole = lclGrid.Show(lclConnection, items);
        SelectRows();
        if (!whole)
            throw platform::Error(platform::errors::fail,
                                  "Who added the documents, and when, could not be read.");
    });
}

std::int32_t ctrlTree::NextRow(const std::vector<std::int32_t>& deleted) const {
    if (!lclListMode) return 0;
    const std::unordered_set<std::int32_t> doomed(deleted.begin(), deleted.end());
    const auto& rows = lclGrid.List();
    std::int32_t before = 0;
    bool passed = false;
    for (std::size_t row = 0; row < rows.Count(); ++row) {
        const auto id = rows.Id(row);
        if (doomed.contains(id))
            passed = true;
        else if (passed)
            return id;
        else
            before = id;
    }
    return before;
}

// The rows show the selection of the tree; in the picking mode the current item, since what is
// picked is ticked.
void ctrlTree::SelectRows() {
    if (!lclListMode) return;
    const bool many = !lclCollectedOrder.empty() && !lclState.SelectItems;
    const auto wanted = many ? lclCollectedOrder : std::vector<std::int32_t>{lclSelected};
    if (Grid().Selected() != wanted) Grid().Select(wanted); // scrolls there
}

void ctrlTree::RowsSelected() {
    const auto rows = Grid().Selected();
    const bool kept = std::find(rows.begin(), rows.end(), lclSelected) != rows.end();
    if (!lclState.SelectItems) Collect(rows.size() > 1 ? rows : std::vector<std::int32_t>{});
    if (rows.empty())
        lclSelected = 0; // what is not shown as selected is not deleted either
    else if (!kept)
        MakeCurrent(rows.front());
}

void ctrlTree::ShowSelected() {
    Woken();
    if (lclListMode && !Grid().RowOf(lclSelected)) SetListMode(false);
}

void ctrlTree::EditLabel(std::int32_t id) {
    if (!lclWindow) return;
    if (lclListMode)
        Grid().EditLabel(id);
    else if (const auto handle = HandleOf(id))
        lclWindow->EditLabel(handle);
}

} // namespace kavidex::controls
