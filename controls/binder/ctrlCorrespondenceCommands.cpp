// The toolbar: its commands as one table, and how they are shown and taken.
#include "controls/binder/BinderWindow.h"
#include "controls/binder/IntakeWiring.h"
#include "controls/binder/ctrlCorrespondence.h"
#include "controls/common/Commands.h"
#include "controls/tree/ctrlTree.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

struct ctrlCorrespondence::CommandContext {
    ctrlCorrespondence& binder;

    bool HasRight(std::string_view right) const { return binder.HasRight(right); }
    bool MayDelete() const { return binder.treCorr().MayUser(UserAction::Delete); }
    PageWork& Pages() const { return binder.lclIntake->pages; }
};

const Commands<ctrlCorrespondence::CommandContext>& ctrlCorrespondence::CommandTable() {
    using Context = CommandContext;
    using Id = CommandId;
    using Kind = CommandKind;
    static constexpr auto usable = [](const Context& context, const Id&) -> CommandState {
        return {true, context.binder.Usable()};
    };
    static constexpr auto adding = [](const Context& context, const Id&) -> CommandState {
        return {context.binder.ShowAddButton(), context.binder.Usable()};
    };
    static constexpr auto settings = [](const Context& context, const Id&) -> CommandState {
        return {context.binder.AllowSettings(), context.binder.Usable()};
    };
    static constexpr auto checklist = [](const Context& context, const Id&) -> CommandState {
        return {!context.binder.ShowCheckList().empty(), context.binder.Usable(),
                context.binder.ChecklistShown()};
    };
    static constexpr auto scanning = [](const Context& context, const Id&) -> CommandState {
        return {true, context.binder.Usable(), context.binder.lclIntake->scan.IsOpen()};
    };
    static constexpr auto layout = [](const Id& id) -> std::int16_t {
        constexpr std::string_view names[] = {"mnutreeonly", "mnudoconly", "mnutreeleftviewerright",
                                              "mnutreetopviewerbottom"};
        for (std::size_t i = 0; i < std::size(names); ++i)
            if (names[i] == id.name) return static_cast<std::int16_t>(i + 1);
        return layouts::none;
    };
    static constexpr auto shown = [](const Context& context, const Id& id) -> CommandState {
        return {true, true, layout(id) == context.binder.ShownLayout()};
    };
    static constexpr auto arrange = [](Context& context, const Id& id) {
        context.binder.SetLayout(layout(id));
    };

    static constexpr auto deleting = [](const Context& context, const Id&) -> CommandState {
        return {true, context.MayDelete()};
    };
    // The buttons themselves keep the originals.
    static constexpr auto staple = [](Context& context, const Id& id) {
        context.Pages().Staple(id.name == "withdel");
    };
    static constexpr auto unpack = [](Context& context, const Id& id) {
        context.Pages().Split(id.name == "unpackwithdel");
    };

    static constexpr Command<Context> rows[] = {
        {.name = "New",
         .picture = "New",
         .tooltip = "Nieuw",
         .right = "EditDossiers",
         .rule = adding,
         .action = [](Context& context, const Id&) { context.binder.lclIntake->newItems.Ask(); }},
        {.name = "NewSep", .kind = Kind::Separator, .rule = adding},
        {.name = "Settings",
         .picture = "Settings",
         .tooltip = "Instellingen",
         .right = "EditSettings",
         .rule = settings,
         .action = [](Context& context, const Id&) { context.binder.ShowSettings(); }},
        {.name = "SettingsSep", .kind = Kind::Separator, .rule = settings},
        {.name = "Stapler",
         .kind = Kind::Split,
         .picture = "Stapler",
         .tooltip = "Nieten",
         .right = "EditDossiers",
         .rule = usable,
         .action = staple},
        {.name = "withdel",
         .caption = "Nieten en originelen verwijderen",
         .depth = 1,
         .rule = deleting,
         .action = staple},
        {.name = "nodel", .caption = "Nieten en originelen behouden", .depth = 1, .action = staple},
        {.name = "Unpack",
         .kind = Kind::Split,
         .picture = "Unpack",
         .tooltip = "Splitsen",
         .right = "EditDossiers",
         .rule = usable,
         .action = unpack},
        {.name = "unpackwithdel",
         .caption = "Splitsen en origineel verwijderen",
         .depth = 1,
         .rule = deleting,
         .action = unpack},
        {.name = "unpacknodel",
         .caption = "Splitsen en origineel behouden",
         .depth = 1,
         .action = unpack},
        {.name = "Scan",
         .kind = Kind::Toggle,
         .picture = "Scan",
         .tooltip = "Open de scanmodule",
         .checkedTooltip = "Sluit de scanmodule",
         .right = "AddScannedImages",
         .rule = scanning,
         .action = [](Context& context, const Id&) { context.binder.lclIntake->scan.Toggle(); }},
        {.name = "WindowPlacement",
         .kind = Kind::Owner,
         .picture = "WindowPlacement",
         .tooltip = "Vensterindeling",
         .rule = usable},
        {.name = "mnutreeonly",
         .caption = "Alleen boom",
         .depth = 1,
         .rule = shown,
         .action = arrange},
        {.name = "mnudoconly",
         .caption = "Alleen document",
         .depth = 1,
         .rule = shown,
         .action = arrange},
        {.name = "mnutreeleftviewerright",
         .caption = "Boom links, document rechts",
         .depth = 1,
         .rule = shown,
         .action = arrange},
        {.name = "mnutreetopviewerbottom",
         .caption = "Boom boven, document onder",
         .depth = 1,
         .rule = shown,
         .action = arrange},
        {.name = "Prevdoc",
         .picture = "Prevdoc",
         .tooltip = "Vorig document",
         .rule = usable,
         .action = [](Context& context,
                      const Id&) { context.binder.treCorr().SetPreviousChildItem(); }},
        {.name = "Nextdoc",
         .picture = "Nextdoc",
         .tooltip = "Volgend document",
         .rule = usable,
         .action = [](Context& context,
                      const Id&) { context.binder.treCorr().SetNextChildItem(); }},
        {.name = "WithCheckList",
         .kind = Kind::Toggle,
         .picture = "WithCheckList",
         .tooltip = "Toon checklist",
         .checkedTooltip = "Verberg checklist",
         .rule = checklist,
         .action = [](Context& context, const Id&) { context.binder.ToggleChecklist(); }},
    };
    static constexpr Commands<Context> table{std::span<const Command<Context>>(rows)};
    return table;
}

std::vector<ToolbarItem> ctrlCorrespondence::Toolbar() {
    return CommandTable().Bar({*this}, TranslationBy(lclTranslator));
}

PopupMenu ctrlCorrespondence::ButtonMenu(std::string_view key) {
    return VisibleEntries(CommandTable().Menu({*this}, TranslationBy(lclTranslator), key));
}

template <class Work>
void ctrlCorrespondence::FromToolbar(Work work) const {
    try {
        work();
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("ButtonClicked", error.what());
        lclWorkstation.messages.Show({error.what(),
                                      Text("Error in ButttonClick of ctrlCorrespondence"),
                                      platform::Buttons::Ok, platform::Icon::Critical});
    }
}

void ctrlCorrespondence::ButtonClicked(std::string_view key) {
    const auto* row = CommandTable().Find(key);
    if (row && row->kind == CommandKind::Owner) return DropDown(key);
    FromToolbar([&] {
        CommandContext context{*this};
        if (row) CommandTable().Run(context, {row->name});
    });
}

void ctrlCorrespondence::ButtonDropped(std::string_view key) { DropDown(key); }

void ctrlCorrespondence::DropDown(std::string_view key) {
    FromToolbar([&] {
        const auto* row = CommandTable().Find(key);
        if (!row || !CommandTable().Allowed(CommandContext{*this}, *row)) return;
        const auto menu = ButtonMenu(key);
        const auto chosen = lclWindow ? lclWindow->ShowMenu(menu, row->name) : std::nullopt;
        if (chosen && *chosen < menu.size()) MenuChosen(menu[*chosen]);
    });
}

void ctrlCorrespondence::MenuChosen(const MenuEntry& entry) {
    CommandContext context{*this};
    CommandTable().Run(context, {entry.name, entry.index});
}

void ctrlCorrespondence::InsertNew(std::size_t which) {
    if (!SelectedFolder()) return Tell("Selecteer eerst een map voor de toevoeging");
    if (lclWindow) lclWindow->FocusTree();
    lclTree->ChooseMenu({"mnuNew", static_cast<int>(which), {}});
}

} // namespace kavidex::controls
