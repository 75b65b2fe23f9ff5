// The popup menu and its keys: the table of commands, and how they are shown and taken.
#include <algorithm>

#include "controls/common/Commands.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/frmProperties.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "platform/Exchange.h"
#include "platform/General.h"
#include "platform/Messages.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

// What the entries' rules ask for, looked up once for a menu.
struct ctrlTree::MenuContext {
    MenuContext(ctrlTree& control, std::optional<std::int32_t> id)
        : tree(control), item(id ? tree.GetNode(*id) : nullptr),
          folder(tree.GetNode(tree.FolderAt(tree.lclSelected))), ids(tree.SelectedIds()),
          handle(id ? tree.HandleOf(*id) : 0) {}

    ctrlTree& tree;
    ItemPtr item;   // under the mouse; null: empty space
    ItemPtr folder; // takes what is made or pasted; null: none
    std::vector<std::int32_t> ids;
    NodeHandle handle;

    const TreeProperties& State() const { return tree.lclState; }
    TreeWindow* Window() const { return tree.lclWindow; }
    bool Expanded() const { return Window() && handle && Window()->IsExpanded(handle); }
    bool HasChildren() const {
        const auto children = item ? item->ChildCollection() : nullptr;
        return children && children->Count() > 0;
    }
    template <class Rule>
    bool ForAll(Rule rule) const {
        const auto root = tree.Root();
        return root && !ids.empty() && std::all_of(ids.begin(), ids.end(), [&](std::int32_t one) {
                   return one != root->Id() && rule(one);
               });
    }
    bool Changeable() const {
        return ForAll([&](std::int32_t one) { return tree.MayChange(one); });
    }
    bool MayCreate(int which) const {
        return folder && folder->Id() > 0 && folder->AllowChildren() &&
               tree.MayInsert(static_cast<std::size_t>(which));
    }
    std::string NewName(int which) const {
        const auto names = platform::Split(State().NameForInsert, ';');
        const auto types = platform::Split(State().TypeForInsert, ';');
        const auto position = static_cast<std::size_t>(which);
        const bool named = position < names.size() && position < types.size();
        return named && !platform::TrimView(names[position]).empty() ? names[position]
                                                                     : std::string();
    }
    static const TreeOption* Option(std::string_view entry) {
        for (const auto& option : TreeOptionTable())
            if (option.menuEntry == entry) return &option;
        return nullptr;
    }
    bool IsSet(std::string_view entry) const {
        const auto& option = *Option(entry);
        return platform::GetRegFlag(tree.lclWorkstation, option.section, option.key);
    }
    void Toggle(std::string_view entry) const { tree.ToggleOption(*Option(entry)); }
    void Expand(bool expand) const {
        const auto node = tree.HandleOf(tree.lclSelected);
        if (Window() && node) Window()->Expand(node, expand);
    }
    void Rename() const { tree.EditLabel(tree.lclSelected); }
    void Take(bool cut) const { tree.Take(cut); }
    bool MayPaste() const { return folder && tree.MayPaste(folder->Id()); }
    void Paste() const { tree.Paste(); }
    void CopySpecial() const { tree.CopySpecial(); }
    void PasteSpecial() const { tree.PasteSpecial(); }
    void CopyLink() const { tree.CopyLink(); }
    void Create(int which) const { tree.CreateInsertItem(which); }
    void Delete() const { tree.DeleteSelected(); }
    bool HasDeletions() const { return !tree.lclDeletions.empty(); }
    void Undo() const { tree.UndoDeletion(); }
    void Restore() const { tree.RestoreSelected(); }
    void Find() const { tree.Find(); }
    void FindNext(bool forward) const {
        if (tree.lclSought.empty())
            tree.Find();
        else
            tree.FindNext(forward);
    }
    void ShowExternal() const {
        const auto here = tree.SameDossier();
        for (const auto id : ids)
            if (here()) tree.EvItemSelectedExternal.Raise(tree.Info(id));
    }
    bool ClipboardHasFiles() const { return tree.lclWorkstation.clipboard.HasFiles(); }
    bool MayMail() const { return tree.lclMail && tree.MayUser(UserAction::Mail); }
    bool HasDocuments() const {
        return tree.HasDocuments(ids) &&
               std::all_of(ids.begin(), ids.end(), [](std::int32_t one) { return one > 0; });
    }
    void Mail(bool asPdf) const { tree.Mail(asPdf); }
    void Print() const { tree.Print(); }
};

const Commands<ctrlTree::MenuContext>& ctrlTree::MenuTable() {
    using Context = MenuContext;
    using Id = CommandId;
    using Kind = CommandKind;
    using State = CommandState;
    static constexpr auto onNode = [](const Context& on, const Id&) -> State {
        return {on.item != nullptr};
    };
    static constexpr auto changeable = [](const Context& on, const Id&) -> State {
        return {true, on.Changeable()};
    };
    static constexpr auto living = [](const Context& on, const Id&) -> State {
        return {true, on.ForAll([](std::int32_t one) { return one > 0; })};
    };
    // What may be deleted may be put back.
    static constexpr auto deletedNode = [](const Context& on, const Id&) -> State {
        return {on.item && on.item->Id() < 0,
                on.tree.MayUser(UserAction::Delete) &&
                    on.ForAll([](std::int32_t one) { return one < 0; })};
    };
    static constexpr auto option = [](const Context& on, const Id& id) -> State {
        return {true, true, on.IsSet(id.name)};
    };
    static constexpr auto toggle = [](Context& on, const Id& id) { on.Toggle(id.name); };
    static constexpr auto mail = [](const Context& on, const Id&) -> State {
        return {on.MayMail(), on.HasDocuments()};
    };

    // What opens something that is not part of the control yet is not offered.
    static constexpr Command<Context> rows[] = {
        {.name = "mnuCut",
         .caption = "Knippen",
         .key = Ctrl('X'),
         .rule = changeable,
         .action = [](Context& on, const Id&) { on.Take(true); }},
        {.name = "mnuCopy",
         .caption = "Kopieren",
         .key = Ctrl('C'),
         .rule = living,
         .action = [](Context& on, const Id&) { on.Take(false); }},
        {.name = "mnuPaste",
         .caption = "Plakken",
         .key = Ctrl('V'),
         .rule = [](const Context& on, const Id&) -> State {
             return {true, on.MayPaste()};
         },
         .action = [](Context& on, const Id&) { on.Paste(); }},
        {.name = "mnuDelete",
         .caption = "Verwijderen",
         .key = Key(keys::del),
         .rule = [](const Context& on, const Id&) -> State {
             return {true, on.tree.MayUser(UserAction::Delete) &&
                               on.ForAll([](std::int32_t one) { return one > 0; })};
         },
         .action = [](Context& on, const Id&) { on.Delete(); }},
        {.name = "mnuSep1", .kind = Kind::Separator, .rule = onNode},
        {.name = "mnuCopySpecial",
         .caption = "Kopieren speciaal",
         .rule = living,
         .action = [](Context& on, const Id&) { on.CopySpecial(); }},
        {.name = "mnuPasteSpecial",
         .caption = "Plakken speciaal",
         .rule = [](const Context& on, const Id&) -> State {
             return {on.ClipboardHasFiles(), on.folder && on.tree.MayUser(UserAction::AddExternal)};
         },
         .action = [](Context& on, const Id&) { on.PasteSpecial(); }},
        {.name = "mnuCopyLink",
         .caption = "Link kopieren",
         .rule = onNode,
         .action = [](Context& on, const Id&) { on.CopyLink(); }},
        {.name = "mnuSep2", .kind = Kind::Separator},
        {.name = "mnuShowExternal",
         .caption = "Toon in nieuw venster",
         .rule = [](const Context& on, const Id&) -> State {
             return {on.item != nullptr, on.item && !on.item->AllowChildren()};
         },
         .action = [](Context& on, const Id&) { on.ShowExternal(); }},
        {.name = "mnuMail",
         .caption = "Mailen",
         .rule = mail,
         .action = [](Context& on, const Id&) { on.Mail(false); }},
        {.name = "mnuMailPdf",
         .caption = "Mailen als PDF",
         .rule = mail,
         .action = [](Context& on, const Id&) { on.Mail(true); }},
        {.name = "mnuRename",
         .caption = "Naam wijzigen",
         .key = Key(keys::f2),
         .rule = [](const Context& on, const Id&) -> State {
             return {true, on.ids.size() == 1 && on.tree.CanEditLabel(on.ids.front())};
         },
         .action = [](Context& on, const Id&) { on.Rename(); }},
        {.name = "mnuPrint",
         .caption = "Afdrukken",
         .key = Ctrl('P'),
         .rule = [](const Context& on, const Id&) -> State {
             return {on.tree.MayUser(UserAction::Print), on.HasDocuments()};
         },
         .action = [](Context& on, const Id&) { on.Print(); }},
        {.name = "mnuProperties",
         .caption = "Eigenschappen",
         .rule = [](const Context& on, const Id&) -> State {
             return {on.item && on.State().ShowProperties};
         },
         .action = [](Context& on, const Id&) { on.tree.ShowItemProperties(on.ids); }},
        {.name = "mnuSep3", .kind = Kind::Separator},
        {.name = "mnuExpand",
         .caption = "Uitvouwen",
         .rule = [](const Context& on, const Id&) -> State {
             return {on.HasChildren() && !on.Expanded()};
         },
         .action = [](Context& on, const Id&) { on.Expand(true); }},
        {.name = "mnuCollaps",
         .caption = "Samenvoegen",
         .rule = [](const Context& on, const Id&) -> State {
             return {on.HasChildren() && on.Expanded()};
         },
         .action = [](Context& on, const Id&) { on.Expand(false); }},
        {.name = "mnuOptions", .caption = "Opties", .kind = Kind::Owner},
        {.name = "mnuExpandAllways",
         .caption = "Altijd alles uitvouwen",
         .kind = Kind::Toggle,
         .depth = 1,
         .rule = option,
         .action = toggle},
        {.name = "mnuShowChildCount",
         .caption = "Toon teller",
         .kind = Kind::Toggle,
         .depth = 1,
         .rule = option,
         .action = toggle},
        {.name = "mnuAllwaysShowExt",
         .caption = "Altijd in nieuw venster tonen",
         .kind = Kind::Toggle,
         .depth = 1,
         .rule = option,
         .action = toggle},
        {.name = "mnuShowInOrg",
         .caption = "Altijd tonen in origineel programma",
         .kind = Kind::Toggle,
         .depth = 1,
         .rule = option,
         .action = toggle},
        {.name = "mnusortByName",
         .caption = "Sorteren op naam",
         .kind = Kind::Toggle,
         .depth = 1,
         .rule = option,
         .action = toggle},
        {.name = "mnuOpenDoubleClick",
         .caption = "Openen met dubbelklik",
         .kind = Kind::Toggle,
         .depth = 1,
         .rule = option,
         .action = toggle},
        {.name = "mnuShowDeleted",
         .caption = "Toon verwijderde bestanden",
         .kind = Kind::Toggle,
         .depth = 1,
         .rule = option,
         .action = toggle},
        {.name = "mnuList",
         .caption = "Als lijst tonen",
         .kind = Kind::Toggle,
         .depth = 1,
         .key = Ctrl('L'),
         .rule = [](const Context& on, const Id&) -> State {
             return {true, true, on.tree.ListMode()};
         },
         .action = [](Context& on, const Id&) { on.tree.SetListMode(!on.tree.ListMode()); }},
        {.name = "mnuSep4", .kind = Kind::Separator, .rule = onNode},
        {.name = "mnuNew",
         .count = 5,
         .rule = [](const Context& on, const Id& id) -> State {
             return {true, !on.NewName(id.index).empty() && on.MayCreate(id.index)};
         },
         .text = [](const Context& on, const Id& id) { return on.NewName(id.index); },
         .action = [](Context& on, const Id& id) { on.Create(id.index); }},
        {.name = "mnuSep5", .kind = Kind::Separator, .rule = deletedNode},
        {.name = "mnuRestore",
         .caption = "Terugzetten",
         .rule = deletedNode,
         .action = [](Context& on, const Id&) { on.Restore(); }},
        {.name = "mnuUndo",
         .key = Ctrl('Z'),
         .keyOnly = true,
         .rule = [](const Context& on, const Id&) -> State {
             return {true, on.tree.MayUser(UserAction::Delete) && on.HasDeletions()};
         },
         .action = [](Context& on, const Id&) { on.Undo(); }},
        {.name = "mnuFind",
         .key = Ctrl('F'),
         .keyOnly = true,
         .action = [](Context& on, const Id&) { on.Find(); }},
        {.name = "mnuFindNext",
         .key = Key(keys::f3),
         .keyOnly = true,
         .action = [](Context& on, const Id&) { on.FindNext(true); }},
        {.name = "mnuFindPrevious",
         .key = {keys::f3, false, true},
         .keyOnly = true,
         .action = [](Context& on, const Id&) { on.FindNext(false); }},
        {.name = "mnuRefresh",
         .key = Key(keys::f5),
         .keyOnly = true,
         .action = [](Context& on, const Id&) { on.tree.RefreshByUser(); }},
    };
    static constexpr Commands<Context> table{std::span<const Command<Context>>(rows)};
    return table;
}

PopupMenu ctrlTree::PrepareMenu(std::optional<std::int32_t> id) {
    auto menu = MenuTable().Menu({*this, id}, TranslationBy(lclTranslator));
    // Without printers it is not offered; the key tells why nothing is printed.
    auto* print = FindEntry(menu, "mnuPrint");
    print->visible = print->visible && lclWorkstation.shell.HasPrinters();
    return menu;
}

void ctrlTree::ContextMenu(std::optional<std::int32_t> id, int x, int y) {
    if (!lclWindow) return;
    Guarded("ctrlTree", [&] {
        const auto here = SameDossier();
        if (id && lclNodes.contains(*id)) {
            if (HandleOf(*id)) lclWindow->Select(HandleOf(*id));
            IsCollected(*id) ? MakeCurrent(*id) : NodeSelected(*id);
            EvItemSelectedRightMouse.Raise(Info(*id));
        }
        if (!here() || !lclWindow) return;
        const auto menu = VisibleEntries(PrepareMenu(id));
        const auto ids = SelectedIds();
        const auto chosen = lclWindow->ShowMenu(menu, x, y);
        // Chosen for what was selected as it opened, not for what the host shows by now.
        if (chosen && *chosen < menu.size() && here() && SelectedIds() == ids)
            ChooseMenu(menu[*chosen]);
    });
}

void ctrlTree::ChooseMenu(const MenuEntry& entry) {
    MenuContext context(*this, lclSelected);
    MenuTable().Run(context, {entry.name, entry.index});
}

void ctrlTree::ShowItemProperties(const std::vector<std::int32_t>& ids) {
    std::vector<ItemPtr> items;
    for (const auto id : ids)
        if (auto item = GetNode(id)) items.push_back(std::move(item));
    if (items.empty()) return;
    frmProperties properties(lclWorkstation, lclConnection, lclTranslator);
    properties.SetMayChange(
        std::all_of(ids.begin(), ids.end(), [&](std::int32_t id) { return MayChange(id); }));
    properties.fncFill(items);
    const auto here = SameDossier();
    const auto before = properties.Description();
    const auto closed = ShowForm(properties.Form());
    if (!closed || !here()) return; // the control is gone, or shows another dossier
    if (properties.MayWriteChanged()) MayWriteChanged.Raise(ids);
    // What was applied stays, also where the dialog was cancelled then.
    if (here() && items.size() == 1 && properties.Description() != before)
        LabelEdited(items.front()->Id(), properties.Description());
}

bool ctrlTree::HasCommand(const Shortcut& key) { return MenuTable().Of(key) != nullptr; }

bool ctrlTree::CommandKey(int key, bool control, bool shift) {
    const auto* command = MenuTable().Of({key, control, shift});
    if (!command) return false;
    if (command->name == "mnuPaste") {
        bool elsewhere = false;
        if (!Guarded("ctrlTree", [&] { elsewhere = TakenElsewhere(); })) return true;
        if (elsewhere) return Paste(), true;
    }
    MenuContext context(*this, lclSelected);
    // Refused where the menu refuses.
    if (MenuTable().Run(context, {command->name}) || command->name != "mnuPaste") return true;
    const auto* taker = Taker();
    if (taker && taker != this && taker->lclTaken.cut)
        lclWorkstation.messages.Show(
            {Text("Wat in een ander dossier geknipt is, kan hier niet geplakt worden"),
             Text("Plakken"), platform::Buttons::Ok, platform::Icon::Exclamation});
    else // files that the user copied elsewhere
        MenuTable().Run(context, {"mnuPasteSpecial"});
    return true;
}

} // namespace kavidex::controls
