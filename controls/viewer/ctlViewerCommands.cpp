// The toolbars and the menu of pages: their commands as one table, and how they are shown and
// taken.
#include "controls/common/Commands.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ViewerWindow.h"
#include "controls/viewer/ctlViewer.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

struct ctlViewer::CommandContext {
    ctlViewer& viewer;
    ImageView* pages; // null: what is shown has none

    bool HasRight(std::string_view right) const { return viewer.HasRight(right); }
};

bool ctlViewer::CanPrint() const {
    return lclView && lclView->CanPrint() && lclWorkstation.shell.HasPrinters();
}

const Commands<ctlViewer::CommandContext>& ctlViewer::CommandTable() {
    using Context = CommandContext;
    using Id = CommandId;
    using Kind = CommandKind;
    using imaging::Turn;
    static constexpr auto hasPages = [](const Context& context, const Id&) -> CommandState {
        return {true, context.pages != nullptr};
    };
    static constexpr auto edits = [](const Context& context, const Id&) -> CommandState {
        return {true, context.pages && context.pages->MayEdit()};
    };
    static constexpr auto manyDocuments = [](const Context& context, const Id&) -> CommandState {
        return {context.viewer.AllowMultipleDocScroll(), true};
    };
    static constexpr auto printable = [](const Context& context, const Id&) -> CommandState {
        return {true, context.viewer.CanPrint()};
    };
    static constexpr auto thumbs = [](const Context& context, const Id&) -> CommandState {
        return {context.pages && context.pages->ThumbsShown(),
                context.pages && context.pages->HasThumbsSelected()};
    };
    static constexpr auto scanned = [](const Context& context, const Id&) -> CommandState {
        return {context.pages && context.pages->HasProperties(), true};
    };
    static constexpr auto modeOf = [](const Id& id) {
        return id.name == "fittoheight"  ? FitMode::Height
               : id.name == "fittowidth" ? FitMode::Width
                                         : FitMode::Best;
    };
    static constexpr auto fitState = [](const Context& context, const Id& id) -> CommandState {
        const bool chosen = context.pages && context.pages->Canvas().IsFitted() &&
                            context.viewer.KeptFit() == modeOf(id);
        return {true, context.pages != nullptr, chosen};
    };
    static constexpr auto fit = [](Context& context, const Id& id) {
        context.pages->Fit(modeOf(id));
    };
    static constexpr auto rotate = [](Context& context, const Id& id) {
        context.pages->Rotate(id.name == "Rotate90L"   ? Turn::Left
                              : id.name == "Rotate90R" ? Turn::Right
                                                       : Turn::Half);
    };
    static constexpr auto stepOf = [](const Id& id) { return id.name == "ZoomIn" ? 1 : -1; };

    static constexpr Command<Context> rows[] = {
        {.name = "BackDoc",
         .picture = "Prevdoc",
         .tooltip = "Vorig document",
         .rule = manyDocuments,
         .action = [](Context& context,
                      const Id&) { context.viewer.PreviousDocumentRequest.Raise(); }},
        {.name = "BackPage",
         .picture = "BackPage",
         .tooltip = "Vorige pagina",
         .key = Ctrl(keys::pageUp),
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {true, context.pages && context.pages->Page() > 1};
         },
         .action = [](Context& context, const Id&) { context.viewer.SetPreviousPage(); }},
        {.name = "NextPage",
         .picture = "NextPage",
         .tooltip = "Volgende pagina",
         .key = Ctrl(keys::pageDown),
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {true, context.pages && context.pages->Page() < context.pages->Count()};
         },
         .action = [](Context& context, const Id&) { context.viewer.SetNextPage(); }},
        {.name = "NextDoc",
         .picture = "Nextdoc",
         .tooltip = "Volgend document",
         .rule = manyDocuments,
         .action = [](Context& context, const Id&) { context.viewer.NextDocumentRequest.Raise(); }},
        {.name = "PageSep", .kind = Kind::Separator},
        {.name = "ZoomOut",
         .picture = "ZoomOut",
         .tooltip = "Uitzoomen",
         .key = Ctrl(keys::subtract),
         .rule = [](const Context& context, const Id& id) -> CommandState {
             return {true, context.pages && context.pages->Canvas().CanZoom(stepOf(id))};
         },
         .action = [](Context& context, const Id& id) { context.pages->Zoom(stepOf(id)); }},
        {.name = "ZoomIn",
         .picture = "ZoomIn",
         .tooltip = "Inzoomen",
         .key = Ctrl(keys::add),
         .rule = [](const Context& context, const Id& id) -> CommandState {
             return {true, context.pages && context.pages->Canvas().CanZoom(stepOf(id))};
         },
         .action = [](Context& context, const Id& id) { context.pages->Zoom(stepOf(id)); }},
        {.name = "Fit",
         .kind = Kind::Split,
         .picture = "Fit",
         .tooltip = "Passend",
         .rule = hasPages,
         .action = [](Context& context,
                      const Id&) { context.pages->Fit(context.viewer.KeptFit()); }},
        {.name = "bestfit", .caption = "Passend", .depth = 1, .rule = fitState, .action = fit},
        {.name = "fittoheight",
         .caption = "Passend maken op hoogte",
         .depth = 1,
         .rule = fitState,
         .action = fit},
        {.name = "fittowidth",
         .caption = "Passend maken op breedte",
         .depth = 1,
         .rule = fitState,
         .action = fit},
        {.name = "TurnSep", .kind = Kind::Separator},
        {.name = "Rotate90L",
         .picture = "Rotate90L",
         .tooltip = "Linksom draaien",
         .rule = edits,
         .action = rotate},
        {.name = "Rotate90R",
         .picture = "Rotate90R",
         .tooltip = "Rechtsom draaien",
         .rule = edits,
         .action = rotate},
        {.name = "Rotate180",
         .picture = "Rotate180",
         .tooltip = "180 graden draaien",
         .rule = edits,
         .action = rotate},
        {.name = "MarkSep", .kind = Kind::Separator},
        {.name = "Annotations",
         .kind = Kind::Toggle,
         .picture = "Annotations",
         .tooltip = "Toon annotaties",
         .checkedTooltip = "Verberg annotaties",
         .right = "ViewAnnotations",
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {true, context.pages && context.pages->MayViewMarks(),
                     context.pages && context.pages->MarksShown()};
         },
         .action = [](Context& context,
                      const Id&) { context.pages->SetMarksShown(!context.pages->MarksShown()); }},
        {.name = "Toolbox",
         .kind = Kind::Toggle,
         .picture = "Toolbox",
         .tooltip = "Toon annotatie toolbox",
         .checkedTooltip = "Verberg annotatie toolbox",
         .right = "EditDossiers",
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {true, context.pages && context.pages->MayUseToolbox(),
                     context.pages && context.pages->ToolboxShown()};
         },
         .action =
             [](Context& context, const Id&) {
                 context.pages->SetToolboxShown(!context.pages->ToolboxShown());
             }},
        {.name = "ThumbSep", .kind = Kind::Separator},
        {.name = "ThumbNails",
         .kind = Kind::Toggle,
         .picture = "ThumbNails",
         .tooltip = "Toon miniatuur weergave",
         .checkedTooltip = "Verberg miniatuur weergave",
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {true, context.pages != nullptr, context.pages && context.pages->ThumbsShown()};
         },
         .action = [](Context& context,
                      const Id&) { context.pages->SetThumbsShown(!context.pages->ThumbsShown()); }},
        {.name = "Move up",
         .picture = "Move up",
         .tooltip = "Omhoog",
         .right = "EditDossiers",
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {true, context.pages && context.pages->CanMoveUp()};
         },
         .action = [](Context& context, const Id&) { context.pages->MoveUp(); }},
        {.name = "PrintSep", .kind = Kind::Separator},
        {.name = "Print",
         .picture = "Print",
         .tooltip = "Afdrukken",
         .rule = printable,
         .action = [](Context& context, const Id&) { context.viewer.lclView->Print(); }},
        // The popup menu of pages and thumbnails.
        {.name = "mnuPages", .kind = Kind::Owner, .keyOnly = true, .rule = hasPages},
        {.name = "mnuPrint",
         .caption = "Afdrukken",
         .depth = 1,
         .rule = printable,
         .action = [](Context& context, const Id&) { context.viewer.lclView->Print(); }},
        {.name = "mnuPrintThumbs",
         .caption = "Miniaturen afdrukken",
         .depth = 1,
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {context.pages && context.pages->ThumbsShown(),
                     context.pages && context.viewer.CanPrint() &&
                         context.pages->HasThumbsSelected()};
         },
         .action = [](Context& context, const Id&) { context.pages->PrintSelectedThumbs(); }},
        {.name = "mnuPagesSep", .kind = Kind::Separator, .depth = 1, .rule = thumbs},
        {.name = "mnuMoveUp",
         .caption = "Omhoog",
         .depth = 1,
         .right = "EditDossiers",
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {context.pages && context.pages->ThumbsShown(),
                     context.pages && context.pages->CanMoveUp()};
         },
         .action = [](Context& context, const Id&) { context.pages->MoveUp(); }},
        {.name = "mnuExportPages",
         .caption = "Pagina's exporteren",
         .depth = 1,
         .right = "EditDossiers",
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {context.pages && context.pages->ThumbsShown(),
                     context.pages && context.pages->MayExport()};
         },
         .action = [](Context& context, const Id&) { context.pages->ExportSelectedThumbs(); }},
        {.name = "mnuDeletePages",
         .caption = "Pagina's verwijderen",
         .depth = 1,
         .right = "EditDossiers",
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {context.pages && context.pages->ThumbsShown(),
                     context.pages && context.pages->MayEdit() &&
                         context.pages->HasThumbsSelected()};
         },
         .action = [](Context& context, const Id&) { context.pages->DeleteSelectedThumbs(); }},
        {.name = "mnuPropertiesSep", .kind = Kind::Separator, .depth = 1, .rule = scanned},
        {.name = "mnuProperties",
         .caption = "Eigenschappen",
         .depth = 1,
         .rule = scanned,
         .action = [](Context& context, const Id&) { context.pages->ShowProperties(); }},
    };
    static constexpr Commands<Context> table{std::span<const Command<Context>>(rows)};
    return table;
}

std::vector<ToolbarItem> ctlViewer::Toolbar() {
    return CommandTable().Bar({*this, Pages()}, TranslationBy(lclTranslator));
}

PopupMenu ctlViewer::ButtonMenu(std::string_view key) {
    return VisibleEntries(CommandTable().Menu({*this, Pages()}, TranslationBy(lclTranslator), key));
}

void ctlViewer::ButtonClicked(std::string_view key) {
    const auto* row = CommandTable().Find(key);
    if (row && row->kind == CommandKind::Owner) return ButtonDropped(key);
    Guarded("Toolbar_ButtonClick", [&] {
        CommandContext context{*this, Pages()};
        return row && CommandTable().Run(context, {row->name});
    });
}

void ctlViewer::ButtonDropped(std::string_view key) {
    Guarded("Toolbar_ButtonMenuClick", [&] {
        const auto* row = CommandTable().Find(key);
        if (!row || !lclWindow || !CommandTable().Allowed({*this, Pages()}, *row)) return false;
        TakeFromMenu(key,
                     [&](const PopupMenu& menu) { return lclWindow->ShowMenu(menu, row->name); });
        return true;
    });
}

void ctlViewer::ShowPageMenu(int x, int y) {
    Guarded("ShowPageMenu", [&] {
        if (!lclWindow) return false;
        TakeFromMenu("mnuPages",
                     [&](const PopupMenu& menu) { return lclWindow->ShowMenuAt(menu, x, y); });
        return true;
    });
}

// What is chosen is about what stood there when the menu was opened: until then no other is shown.
void ctlViewer::TakeFromMenu(std::string_view owner, const MenuShower& show) {
    const auto menu = ButtonMenu(owner);
    if (menu.empty()) return;
    std::optional<std::size_t> chosen;
    Undisturbed([&] { chosen = show(menu); });
    if (chosen && *chosen < menu.size()) MenuChosen(menu[*chosen]);
}

void ctlViewer::MenuChosen(const MenuEntry& entry) {
    Guarded("MenuChosen", [&] {
        CommandContext context{*this, Pages()};
        return CommandTable().Run(context, {entry.name, entry.index});
    });
}

bool ctlViewer::CommandKey(const Shortcut& key) {
    const auto* row = CommandTable().Of(key);
    if (row) ButtonClicked(row->name);
    return row != nullptr;
}

} // namespace kavidex::controls
