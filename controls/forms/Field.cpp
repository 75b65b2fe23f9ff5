#include "controls/forms/Field.h"

#include <algorithm>
#include <unordered_set>

#include "controls/forms/Form.h"
#include "platform/text.h"

namespace kavidex::controls::forms {

const std::string& Item::Cell(std::size_t column) const {
    static const std::string none;
    return column < texts.size() ? texts[column] : none;
}

void Field::Show(Aspect aspect) {
    if (lclForm.View()) lclForm.View()->Show(*this, aspect);
}

void Field::Focus() {
    if (lclForm.View()) lclForm.View()->Focus(*this);
}

void Field::SetText(std::string_view text) {
    lclOwnText = false;
    if (text == lclText) return;
    lclText = text;
    Show(Aspect::Text);
}

void Field::SetChecked(bool checked) {
    if (checked == lclChecked) return;
    lclChecked = checked;
    if (checked && Type() == Kind::Option) lclForm.ClearGroup(*this);
    Show(Aspect::Checked);
}

void Field::SetEnabled(bool enabled) {
    if (enabled == lclEnabled) return;
    lclEnabled = enabled;
    Show(Aspect::State);
}

void Field::SetVisible(bool visible) {
    if (visible == lclVisible) return;
    lclVisible = visible;
    Show(Aspect::State);
}

void Field::SetReadOnly(bool readOnly) {
    if (readOnly == lclReadOnly) return;
    lclReadOnly = readOnly;
    Show(Aspect::State);
}

void Field::SetIcon(std::string_view icon) {
    lclIcon = icon;
    Show(Aspect::Icon);
}

void Field::SetItems(std::vector<Item> items) {
    lclItems = std::move(items);
    if (lclSortColumn >= 0) {
        Sort(lclSortColumn, lclSortDescending);
        return;
    }
    KeepSelection();
    Show(Aspect::Items);
}

void Field::AddItem(Item item) {
    lclItems.push_back(std::move(item));
    Show(Aspect::Items);
}

void Field::RemoveItem(std::int32_t id) {
    // Parents stand before their children, so one pass finds all below it.
    std::unordered_set<std::int32_t> gone{id};
    std::erase_if(lclItems, [&](const Item& item) {
        if (item.id != id && (item.parent == 0 || !gone.contains(item.parent))) return false;
        gone.insert(item.id);
        return true;
    });
    KeepSelection();
    Show(Aspect::Items);
}

void Field::ChangeItem(Item item) {
    const auto known = std::find_if(lclItems.begin(), lclItems.end(),
                                    [&](auto& row) { return row.id == item.id; });
    if (known == lclItems.end()) return;
    const auto id = item.id;
    *known = std::move(item);
    if (lclForm.View()) lclForm.View()->ShowItem(*this, id);
}

const Item* Field::Find(std::int32_t id) const {
    const auto known =
        std::find_if(lclItems.begin(), lclItems.end(), [&](auto& row) { return row.id == id; });
    return known == lclItems.end() ? nullptr : &*known;
}

const Item* Field::Find(std::string_view text, std::size_t column, std::int32_t after) const {
    const std::string wanted = platform::LowerCase(text);
    const Item* within = nullptr;
    std::size_t start = 0;
    for (std::size_t i = 0; after != 0 && i < lclItems.size(); ++i)
        if (lclItems[i].id == after) start = i + 1;
    for (std::size_t i = 0; !wanted.empty() && i < lclItems.size(); ++i) {
        const Item& item = lclItems[(start + i) % lclItems.size()];
        const auto at = platform::LowerCase(item.Cell(column)).find(wanted);
        if (at == 0) return &item;
        if (at != std::string::npos && !within) within = &item;
    }
    return within;
}

void Field::Sort(int column, bool descending) {
    lclSortColumn = column;
    lclSortDescending = descending;
    const auto of = static_cast<std::size_t>(column);
    std::stable_sort(lclItems.begin(), lclItems.end(), [&](const Item& a, const Item& b) {
        const int order = platform::CompareNoCase(a.Cell(of), b.Cell(of));
        return descending ? order > 0 : order < 0;
    });
    KeepSelection();
    Show(Aspect::Items);
}

void Field::KeepSelection() {
    std::unordered_set<std::int32_t> known;
    for (const Item& item : lclItems) known.insert(item.id);
    std::erase_if(lclSelected, [&](std::int32_t id) { return !known.contains(id); });
}

void Field::Select(std::int32_t id) {
    Select(id ? std::vector<std::int32_t>{id} : std::vector<std::int32_t>{});
}

void Field::Select(std::vector<std::int32_t> ids) {
    if (ids == lclSelected) return;
    lclSelected = std::move(ids);
    KeepSelection();
    if (Type() == Kind::Combo && Selected()) lclText = Find(Selected())->Cell();
    Show(Aspect::Selection);
}

void Field::EditItem(std::int32_t id, int column) {
    if (lclForm.View() && Find(id)) lclForm.View()->EditItem(*this, id, column);
}

void Field::SetMode(ListMode mode) {
    if (mode == lclMode) return;
    lclMode = mode;
    Show(Aspect::Mode);
}

void Field::SetProgress(int done, int total) {
    lclDone = done;
    lclTotal = total;
    Show(Aspect::Progress);
}

} // namespace kavidex::controls::forms
