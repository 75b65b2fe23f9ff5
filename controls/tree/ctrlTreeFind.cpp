// Finding items by a part of their description, in closed folders too.
#include <algorithm>

#include "controls/tree/ctrlTree.h"
#include "controls/tree/frmFind.h"
#include "model/clsItem.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

void ctrlTree::Find() {
    if (!Root()) return;
    frmFind form(lclWorkstation, lclTranslator, lclSought, [this](const std::string& text) {
        lclSought = text;
        return FindNext(true);
    });
    ShowForm(form.Form());
}

bool ctrlTree::FindNext(bool forward) {
    const auto found = FindBeside(lclSelected, lclSought, forward);
    if (found == 0) {
        lclWorkstation.messages.Show({Text("'$%$' is niet gevonden.", {lclSought}), Text("Zoeken"),
                                      platform::Buttons::Ok, platform::Icon::Information});
        return false;
    }
    const bool before = found == lclSelected;
    SelectAlone(found, false);
    ShowSelected();
    if (lclWindow && HandleOf(found)) lclWindow->EnsureVisible(HandleOf(found));
    if (!before && !(lclState.OpenDoubleClick && !GetNode(found)->AllowChildren()))
        EvItemSelected.Raise(Info(found));
    return true;
}

std::vector<ItemPtr> ctrlTree::ItemsToFind() const {
    std::vector<ItemPtr> items;
    for (std::size_t row = 0; lclListMode && row < lclGrid.List().Count(); ++row)
        if (auto item = GetNode(lclGrid.List().Id(row))) items.push_back(std::move(item));
    if (const auto root = lclListMode ? nullptr : Root())
        Walk(root, 0, [&](const ItemPtr& item, std::int32_t) {
            const auto node = lclNodes.find(item->Id());
            if (node != lclNodes.end() && node->second.shown && (!lclWindow || node->second.handle))
                items.push_back(item);
        });
    return items;
}

// Round at either end; the item itself is the last to be looked at.
std::int32_t ctrlTree::FindBeside(std::int32_t id, std::string_view text, bool forward) const {
    auto items = ItemsToFind();
    if (!forward) std::reverse(items.begin(), items.end());
    const auto self = std::find_if(items.begin(), items.end(),
                                   [&](const ItemPtr& item) { return item->Id() == id; });
    if (self != items.end()) std::rotate(items.begin(), self + 1, items.end());
    const auto wanted = platform::LowerCase(text);
    for (const auto& item : items)
        if (platform::LowerCase(item->DescriptionText()).find(wanted) != wanted.npos)
            return item->Id();
    return 0;
}

} // namespace kavidex::controls
