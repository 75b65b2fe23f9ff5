// The toolbar: its commands as one table, and how they are shown and taken.
#include "controls/binder/BinderWindow.h"
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
    bool MayInsert(int which) const {
        return binder.treCorr().MayInsert(static_cast<std::size_t>(which));
    }
    void InsertNew(int which) const { binder.InsertNew(static_cast<std::size_t>(which)); }
    std::string NewName(int which) const {
        const auto names = platform::Split(binder.NameForInsert(), ';');
        const auto types = platform::Split(binder.TypeForInsert(), ';');
        const auto position = static_cast<std::size_t>(which);
        const bool named = position < names.size() && position < types.size();
        return named && !platform::TrimView(names[position]).empty() ? binder.Text(names[position])
                                                                     : std::string();
    }
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
        return {!context.binder.ShowCheckList().empty(), context.binder.Usable()};
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

    // Commands whose action needs a component that is not built in are not offered.
    static constexpr Command<Context> rows[] = {
        {.name = "New",
         .kind = Kind::Owner,
         .picture = "New",
         .tooltip = "Nieuw",
         .right = "EditDossiers",
         .rule = adding},
        {.name = "mnuNew",
         .depth = 1,
         .count = 5,
         .rule = [](const Context& context, const Id& id) -> CommandState {
             return {true, context.MayInsert(id.index)};
         },
         .text = [](const Context& context, const Id& id) { return context.NewName(id.index); },
         .action = [](Context& context, const Id& id) { context.InsertNew(id.index); }},
        {.name = "NewSep", .kind = Kind::Separator, .rule = adding},
        {.name = "Settings",
         .tooltip = "Instellingen",
         .right = "EditSettings",
         .offered = false,
         .rule = settings},
        {.name = "SettingsSep", .kind = Kind::Separator, .offered = false, .rule = settings},
        {.name = "Stapler",
         .kind = Kind::Owner,
         .tooltip = "Nieten",
         .right = "EditDossiers",
         .offered = false,
         .rule = usable},
        {.name = "withdel",
         .caption = "Nieten en originelen verwijderen",
         .depth = 1,
         .offered = false},
        {.name = "nodel", .caption = "Nieten en originelen behouden", .depth = 1, .offered = false},
        {.name = "Unpack",
         .kind = Kind::Owner,
         .tooltip = "Splitsen",
         .right = "EditDossiers",
         .offered = false,
         .rule = usable},
        {.name = "unpackwithdel",
         .caption = "Splitsen en origineel verwijderen",
         .depth = 1,
         .offered = false},
        {.name = "unpacknodel",
         .caption = "Splitsen en origineel behouden",
         .depth = 1,
         .offered = false},
        {.name = "Scan",
         .kind = Kind::Toggle,
         .tooltip = "Open de scanmodule",
         .right = "AddScannedImages",
         .offered = false,
         .rule = usable},
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
         .tooltip = "Toon checklist",
         .checkedTooltip = "Verberg checklist",
         .offered = false,
         .rule = checklist},
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

void ctrlCorrespondence::ButtonClicked(std::string_view key) {
    CommandContext context{*this};
    const auto* row = CommandTable().Find(key);
    try {
        if (!row || !CommandTable().Allowed(context, *row)) return;
        if (row->kind != CommandKind::Owner) {
            CommandTable().Run(context, {row->name});
            return;
        }
        const auto menu = ButtonMenu(key);
        const auto chosen = lclWindow ? lclWindow->ShowMenu(menu, row->name) : std::nullopt;
        if (chosen && *chosen < menu.size()) MenuChosen(menu[*chosen]);
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("ButtonClicked", error.what());
        lclWorkstation.messages.Show({error.what(),
                                      Text("Error in ButttonClick of ctrlCorrespondence"),
                                      platform::Buttons::Ok, platform::Icon::Critical});
    }
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
