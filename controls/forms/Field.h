// One field of a form: what it shows now. A change by the logic reaches the window at once.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/forms/Layout.h"

namespace kavidex::controls::forms {

class Form;

// A row of a list, a node of a tree, a choice of a combo, a page of a tab strip.
struct Item {
    std::int32_t id = 0;                 // the logic's own, not 0, unique in its field
    std::vector<std::string> texts = {}; // one a column
    std::int32_t parent = 0;             // of a tree; stands before its children
    std::string icon = {};               // the key of a picture, or "." and a file extension
    bool checked = false, expanded = false, bold = false;
    bool children = false; // of a tree: has some that Expanding will add

    const std::string& Cell(std::size_t column = 0) const;
};

// What of a field changed, for the window that shows it.
enum class Aspect { Text, Checked, State, Items, Selection, Icon, Progress, Mode };

enum class ListMode { Rows, Icons, Names };

// What a Pane shows, made by the side that knows windows.
class PaneContent {
public:
    virtual ~PaneContent() = default;
};

class Field {
public:
    Field(Form& form, const FieldRow& row) : lclForm(form), lclRow(row) {}
    Field(const Field&) = delete;
    Field& operator=(const Field&) = delete;

    const FieldRow& Row() const { return lclRow; }
    Kind Type() const { return lclRow.kind; }
    std::string_view Name() const { return lclRow.name; }

    const std::string& Text() const { return lclText; }
    void SetText(std::string_view text);
    bool Checked() const { return lclChecked; }
    void SetChecked(bool checked); // an option clears the others of its group
    bool Enabled() const { return lclEnabled; }
    void SetEnabled(bool enabled);
    bool Visible() const { return lclVisible; }
    void SetVisible(bool visible);
    bool ReadOnly() const { return lclReadOnly; }
    void SetReadOnly(bool readOnly);
    const std::string& Icon() const { return lclIcon; } // of a picture
    void SetIcon(std::string_view icon);

    const std::vector<Item>& Items() const { return lclItems; }
    // What was selected stays so where it is still there.
    void SetItems(std::vector<Item> items);
    void AddItem(Item item);
    void RemoveItem(std::int32_t id); // of a tree: with all below it
    void ChangeItem(Item item);       // by its id
    const Item* Find(std::int32_t id) const;
    // The first item after `after` (0: from the top, round at the end) that begins with the text,
    // or else contains it, without case; null when none does.
    const Item* Find(std::string_view text, std::size_t column = 0, std::int32_t after = 0) const;
    // By that column's text without case; the heading is marked.
    void Sort(int column, bool descending);
    int SortColumn() const { return lclSortColumn; } // -1: none
    bool SortDescending() const { return lclSortDescending; }

    // The selected item, or page; of several the first; 0: none.
    std::int32_t Selected() const { return lclSelected.empty() ? 0 : lclSelected.front(); }
    const std::vector<std::int32_t>& SelectedItems() const { return lclSelected; }
    void Select(std::int32_t id); // shows it; 0 selects nothing
    void Select(std::vector<std::int32_t> ids);
    void EditItem(std::int32_t id, int column = 0); // opens the editor in place

    ListMode Mode() const { return lclMode; }
    void SetMode(ListMode mode);
    int Done() const { return lclDone; }
    int Total() const { return lclTotal; }
    void SetProgress(int done, int total); // total 0: unknown length
    PaneContent* Pane() const { return lclPane.get(); }
    void SetPane(std::unique_ptr<PaneContent> pane) { lclPane = std::move(pane); } // before showing

    void Focus();

private:
    friend class Form;
    void Show(Aspect aspect);
    void KeepSelection();

    Form& lclForm;
    const FieldRow& lclRow;
    std::string lclText, lclIcon;
    bool lclChecked = false, lclEnabled = true, lclVisible = true, lclReadOnly = false;
    bool lclOwnText = true; // what the layout gives it
    std::vector<Item> lclItems;
    std::vector<std::int32_t> lclSelected;
    ListMode lclMode = ListMode::Rows;
    int lclDone = 0, lclTotal = 0, lclSortColumn = -1;
    bool lclSortDescending = false;
    std::unique_ptr<PaneContent> lclPane;
};

} // namespace kavidex::controls::forms
