// The popup menu: its table, its preparation before it opens, and what its entries do.
#include <algorithm>

#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "platform/General.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr int newEntries = 5;

// `offered` false: the entry has its place, but what it opens is not part of the control yet.
struct MenuRow {
    std::string_view name, caption;
    int depth = 0;
    bool offered = true;
};

constexpr MenuRow menuRows[] = {
    {"mnuCut", "Knippen"},
    {"mnuCopy", "Kopieren", 0, false},
    {"mnuPaste", "Plakken"},
    {"mnuDelete", "Verwijderen"},
    {"mnuSep1", ""},
    {"mnuCopySpecial", "Kopieren speciaal", 0, false},
    {"mnuPasteSpecial", "Plakken speciaal", 0, false},
    {"mnuCopyLink", "Link kopieren", 0, false},
    {"mnuSep2", ""},
    {"mnuShowExternal", "Toon in nieuw venster"},
    {"mnuMail", "Mailen", 0, false},
    {"mnuMailPdf", "Mailen als PDF", 0, false},
    {"mnuRename", "Naam wijzigen"},
    {"mnuPrint", "Afdrukken", 0, false},
    {"mnuProperties", "Eigenschappen", 0, false},
    {"mnuSep3", ""},
    {"mnuExpand", "Uitvouwen"},
    {"mnuCollaps", "Samenvoegen"},
    {"mnuOptions", "Opties"},
    {"mnuExpandAllways", "Altijd alles uitvouwen", 1},
    {"mnuShowChildCount", "Toon teller", 1},
    {"mnuAllwaysShowExt", "Altijd in nieuw venster tonen", 1},
    {"mnuShowInOrg", "Altijd tonen in origineel programma", 1},
    {"mnusortByName", "Sorteren op naam", 1},
    {"mnuOpenDoubleClick", "Openen met dubbelklik", 1},
    {"mnuShowDeleted", "Toon verwijderde bestanden", 1},
    {"mnuSep4", ""},
};

// Shown with a node under the mouse only.
constexpr std::string_view nodeEntries[] = {"mnuSep1",    "mnuExpand",       "mnuCollaps",
                                            "mnuSep4",    "mnuShowExternal", "mnuProperties",
                                            "mnuCopyLink"};

} // namespace

PopupMenu ctrlTree::PrepareMenu(std::optional<std::int32_t> id) {
    PopupMenu menu;
    for (const auto& row : menuRows)
        menu.push_back({std::string(row.name), 0,
                        row.caption.empty() ? std::string() : Text(row.caption), row.depth});
    const auto names = platform::Split(lclState.NameForInsert, ';');
    const auto types = platform::Split(lclState.TypeForInsert, ';');
    const auto folder = GetNode(FolderAt(lclSelected));
    const bool mayCreate = lclState.NewEnabled && !lclState.ReadOnly && folder &&
                           folder->Id() > 0 && folder->AllowChildren();
    for (int i = 0; i < newEntries; ++i) {
        const auto position = static_cast<std::size_t>(i);
        const bool named = position < names.size() && position < types.size() &&
                           !platform::TrimView(names[position]).empty();
        menu.push_back({"mnuNew", i, named ? names[position] : "-", 0, named,
                        named && mayCreate && AcceptsType(types[position])});
    }
    const auto entry = [&](std::string_view name) -> MenuEntry& { return *FindEntry(menu, name); };

    const auto item = id ? GetNode(*id) : nullptr;
    for (const auto name : nodeEntries) entry(name).visible = item != nullptr;
    const auto children = item ? item->ChildCollection() : nullptr;
    const bool parent = children && children->Count() > 0;
    const auto handle = id ? HandleOf(*id) : 0;
    const bool expanded = lclWindow && handle && lclWindow->IsExpanded(handle);
    entry("mnuExpand").visible = parent && !expanded;
    entry("mnuCollaps").visible = parent && expanded;

    entry("mnuPasteSpecial").visible = lclWindow && lclWindow->ClipboardHasFiles();
    entry("mnuPrint").visible = lclState.ShowPrint && lclWorkstation.shell.HasPrinters();
    entry("mnuMail").visible = entry("mnuMailPdf").visible = lclState.ShowMail;
    entry("mnuProperties").visible = item && lclState.ShowProperties;
    for (const auto& option : TreeOptionTable())
        if (auto* row = FindEntry(menu, option.menuEntry)) row->checked = lclState.*option.member;

    const auto ids = SelectedIds();
    const auto root = Root();
    const auto changeable = [&](std::int32_t one) {
        return MayChange(one) && root && one != root->Id();
    };
    const bool allChangeable = !ids.empty() && std::all_of(ids.begin(), ids.end(), changeable);
    entry("mnuCut").enabled = allChangeable;
    entry("mnuDelete").enabled = lclState.DeleteEnabled && !lclState.ReadOnly && !ids.empty() &&
                                 std::all_of(ids.begin(), ids.end(), [&](std::int32_t one) {
                                     return one > 0 && root && one != root->Id();
                                 });
    entry("mnuPaste").enabled =
        !lclCut.empty() && folder && lclState.UpdateEnabled && !lclState.ReadOnly;
    entry("mnuRename").enabled = ids.size() == 1 && MayChange(ids.front());
    entry("mnuShowExternal").enabled = item && !item->AllowChildren();

    for (const auto& row : menuRows)
        if (!row.offered) entry(row.name).visible = false;
    return menu;
}

void ctrlTree::ContextMenu(std::optional<std::int32_t> id, int x, int y) {
    if (!lclWindow) return;
    Guarded("ctrlTree", [&] {
        if (id && lclNodes.contains(*id)) {
            if (!lclState.SelectItems && !IsCollected(*id)) ClearSelectedItems();
            if (*id != lclSelected) {
                lclWindow->Select(HandleOf(*id));
                NodeSelected(*id);
            }
            EvItemSelectedRightMouse.Raise(Info(*id));
        }
        const auto menu = VisibleEntries(PrepareMenu(id));
        const auto chosen = lclWindow->ShowMenu(menu, x, y);
        if (chosen && *chosen < menu.size()) ChooseMenu(menu[*chosen]);
    });
}

void ctrlTree::ChooseMenu(const MenuEntry& entry) {
    const auto is = [&](std::string_view name) { return entry.name == name; };
    const auto handle = HandleOf(lclSelected);
    if (is("mnuCut"))
        Cut();
    else if (is("mnuPaste"))
        Paste();
    else if (is("mnuDelete"))
        DeleteItem();
    else if (is("mnuShowExternal"))
        for (const auto id : SelectedIds()) EvItemSelectedExternal.Raise(Info(id));
    else if (is("mnuRename") && lclWindow && handle)
        lclWindow->EditLabel(handle);
    else if ((is("mnuExpand") || is("mnuCollaps")) && lclWindow && handle)
        lclWindow->Expand(handle, is("mnuExpand"));
    else if (is("mnuNew"))
        CreateInsertItem(entry.index);
    else
        for (const auto& option : TreeOptionTable())
            if (!option.menuEntry.empty() && is(option.menuEntry)) ToggleOption(option);
}

void ctrlTree::ToggleOption(const TreeOption& option) {
    const bool value = !(lclState.*option.member);
    // First where the model reads it: a changed option may load the tree again.
    platform::SaveRegFlag(lclWorkstation, option.section, option.key, value);
    Change(option.member, value);
}

void ctrlTree::Cut() {
    lclCut = SelectedIds();
    lclState.ManualDragDropMove = !lclCut.empty();
    lclState.ManualDragDropCopy = false;
    EvItemCut.Raise();
}

void ctrlTree::Paste() {
    if (lclCut.empty()) return;
    const auto ids = std::move(lclCut);
    lclCut.clear();
    lclState.ManualDragDropMove = false;
    MoveItems(ids, FolderAt(lclSelected));
    EvItemPaste.Raise();
}

bool ctrlTree::CommandKey(int key, bool control, bool shift) {
    struct Shortcut {
        int key;
        bool control;
        std::string_view entry;
    };
    constexpr Shortcut keys[] = {{0x71, false, "mnuRename"},
                                 {0x2E, false, "mnuDelete"},
                                 {'X', true, "mnuCut"},
                                 {'V', true, "mnuPaste"}};
    if (shift) return false;
    for (const auto& row : keys)
        if (row.key == key && row.control == control) {
            // What the menu would refuse, the key refuses, and stays with the control.
            auto menu = PrepareMenu(lclSelected);
            const auto* entry = FindEntry(menu, row.entry);
            if (entry->visible && entry->enabled) ChooseMenu(*entry);
            return true;
        }
    return false;
}

} // namespace kavidex::controls
