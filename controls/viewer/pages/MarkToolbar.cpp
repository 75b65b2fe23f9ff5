#include "controls/viewer/pages/MarkToolbar.h"

#include <optional>

#include "controls/common/Translator.h"
#include "controls/viewer/pages/ImageView.h"
#include "platform/Clock.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

struct MarkToolbar::Context {
    ViewerFrame& frame;
    ImageView& pages;

    MarkEditor& Editor() const { return pages.Editor(); }
    std::string Stamp(int index) const {
        const auto& row = StampTexts()[static_cast<std::size_t>(index)];
        return frame.Text(row.caption, {platform::DayFirst(frame.Machine().clock.Now())});
    }
};

const Commands<MarkToolbar::Context>& MarkToolbar::Table() {
    using Id = CommandId;
    using Kind = CommandKind;
    using Row = Command<Context>;
    static constexpr auto toolOf = [](const Id& id) {
        for (const auto& row : MarkToolTable())
            if (row.key == id.name) return row.tool;
        return MarkTool::Select;
    };
    static constexpr auto usable = [](const Context& context, const Id&) -> CommandState {
        return {true, context.pages.ToolboxShown() && context.pages.MarksEditable()};
    };
    static constexpr auto tool = [](const Context& context, const Id& id) -> CommandState {
        return {true, usable(context, id).enabled, context.Editor().Tool() == toolOf(id)};
    };
    static constexpr auto take = [](Context& context, const Id& id) {
        context.Editor().SetTool(toolOf(id));
    };
    static constexpr auto selected = [](const Context& context, const Id&) -> CommandState {
        return {true, context.Editor().HasSelection()};
    };
    static const std::vector<Row> rows = [] {
        std::vector<Row> made;
        made.push_back({.name = "Select",
                        .kind = Kind::Toggle,
                        .picture = "Select",
                        .tooltip = "Selecteren",
                        .rule = [](const Context& context, const Id& id) -> CommandState {
                            auto state = tool(context, id);
                            state.enabled = state.enabled && context.pages.MarksShown();
                            return state;
                        },
                        .action = take});
        for (const auto& row : MarkToolTable()) {
            if (row.tool == MarkTool::Stamp) continue;
            made.push_back({.name = row.key,
                            .kind = Kind::Toggle,
                            .picture = row.key,
                            .tooltip = row.caption,
                            .rule = tool,
                            .action = take});
        }
        made.push_back({.name = "Stamp",
                        .kind = Kind::Owner,
                        .picture = "Stamp",
                        .tooltip = FindMarkTool(MarkTool::Stamp)->caption,
                        .rule = tool});
        made.push_back(
            {.name = "mnuStamp",
             .depth = 1,
             .count = static_cast<int>(StampTexts().size()),
             .text = [](const Context& context, const Id& id) { return context.Stamp(id.index); },
             .action =
                 [](Context& context, const Id& id) {
                     context.Editor().SetStamp(context.Stamp(id.index));
                     context.Editor().SetTool(MarkTool::Stamp);
                 }});
        made.push_back({.name = "LookSep", .kind = Kind::Separator});
        made.push_back({.name = "Colour",
                        .kind = Kind::Owner,
                        .picture = "Colour",
                        .tooltip = "Kleur",
                        .rule = usable});
        made.push_back({.name = "mnuColour",
                        .depth = 1,
                        .count = static_cast<int>(MarkColours().size()),
                        .text =
                            [](const Context& context, const Id& id) {
                                const auto& row = MarkColours()[static_cast<std::size_t>(id.index)];
                                return context.frame.Text(row.caption);
                            },
                        .action =
                            [](Context& context, const Id& id) {
                                context.Editor().SetColour(
                                    MarkColours()[static_cast<std::size_t>(id.index)].colour);
                            }});
        made.push_back({.name = "LineWidth",
                        .kind = Kind::Owner,
                        .picture = "LineWidth",
                        .tooltip = "Lijndikte",
                        .rule = usable});
        made.push_back({.name = "mnuLineWidth",
                        .depth = 1,
                        .count = static_cast<int>(MarkWidths().size()),
                        .rule = [](const Context& context, const Id& id) -> CommandState {
                            return {true, true,
                                    context.Editor().Width() ==
                                        MarkWidths()[static_cast<std::size_t>(id.index)].width};
                        },
                        .text =
                            [](const Context& context, const Id& id) {
                                const auto& row = MarkWidths()[static_cast<std::size_t>(id.index)];
                                return context.frame.Text(row.caption);
                            },
                        .action =
                            [](Context& context, const Id& id) {
                                context.Editor().SetWidth(
                                    MarkWidths()[static_cast<std::size_t>(id.index)].width);
                            }});
        made.push_back({.name = "EditSep", .kind = Kind::Separator});
        made.push_back(
            {.name = "EditText",
             .picture = "EditText",
             .tooltip = "Tekst wijzigen",
             .rule = [](const Context& context, const Id&) -> CommandState {
                 return {true, context.Editor().CanEditText()};
             },
             .action = [](Context& context, const Id&) { context.Editor().EditText(); }});
        made.push_back(
            {.name = "DeleteMark",
             .picture = "DeleteMark",
             .tooltip = "Annotatie verwijderen",
             .rule = selected,
             .action = [](Context& context, const Id&) { context.Editor().DeleteSelected(); }});
        return made;
    }();
    static const Commands<Context> table{std::span<const Row>(rows)};
    return table;
}

data::Translation MarkToolbar::Translation() const { return TranslationBy(lclFrame.Translate()); }

std::vector<ToolbarItem> MarkToolbar::Toolbar() {
    return Table().Bar({lclFrame, lclPages}, Translation());
}

PopupMenu MarkToolbar::ButtonMenu(std::string_view name) {
    return VisibleEntries(Table().Menu({lclFrame, lclPages}, Translation(), name));
}

void MarkToolbar::ButtonClicked(std::string_view name) {
    try {
        Context context{lclFrame, lclPages};
        const auto* row = Table().Find(name);
        if (!row || !Table().Allowed(context, *row)) return;
        if (row->kind == CommandKind::Owner) {
            const auto menu = ButtonMenu(name);
            auto* window = lclPages.Window();
            std::optional<std::size_t> chosen;
            if (window) lclFrame.Undisturbed([&] { chosen = window->ShowMenu(menu, row->name); });
            if (chosen && *chosen < menu.size()) MenuChosen(menu[*chosen]);
        } else {
            Table().Run(context, {row->name});
        }
        lclPages.ToolboxChanged();
    } catch (const std::exception& error) {
        lclFrame.TellError("Toolbox_ButtonClick", error);
    }
}

void MarkToolbar::MenuChosen(const MenuEntry& entry) {
    Context context{lclFrame, lclPages};
    Table().Run(context, {entry.name, entry.index});
}

} // namespace kavidex::controls
