// The commands of a control as one table. A popup menu, a toolbar and the keys are views of the
// same rows, so that what one of them refuses, the others refuse too.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/PopupMenu.h"
#include "controls/common/Shortcut.h"
#include "controls/common/Toolbar.h"
#include "platform/text.h"

namespace kavidex::controls {

struct CommandState {
    bool visible = true, enabled = true, checked = false;
};

// Which command: those of one control array share a name and differ by their index.
struct CommandId {
    std::string_view name;
    int index = 0;
};

// `Context` is what the rules and the actions of a control need at one moment. Where rows name
// rights it has `bool HasRight(std::string_view right) const`.
template <class Context>
struct Command {
    std::string_view name;
    std::string_view caption{}; // in a menu, before translation
    CommandKind kind = CommandKind::Push;
    int depth = 0; // a row is owned by the nearest one above it that is less deep
    std::string_view picture{}, tooltip{}, checkedTooltip{};
    std::string_view right{}; // needed to enable it; empty: none
    Shortcut key{};
    int count = 1;        // of a control array
    bool offered = true;  // false: it has its place, but what it opens is not built in
    bool keyOnly = false; // in no menu and on no toolbar
    CommandState (*rule)(const Context&, const CommandId&) = nullptr; // null: always
    // The caption where it is made at the moment, translated; empty: no such command now.
    std::string (*text)(const Context&, const CommandId&) = nullptr;
    void (*action)(Context&, const CommandId&) = nullptr;
};

template <class Context>
class Commands {
public:
    using Row = Command<Context>;

    constexpr explicit Commands(std::span<const Row> rows) : lclRows(rows) {}

    std::span<const Row> Rows() const { return lclRows; }

    // Without case; null when there is none.
    const Row* Find(std::string_view name) const {
        for (const auto& row : lclRows)
            if (platform::EqualAsciiNoCase(row.name, name)) return &row;
        return nullptr;
    }

    // Of the row itself; Allowed asks its owners too.
    CommandState State(const Context& context, const Row& row, int index = 0) const {
        if (!row.offered || index < 0 || index >= row.count) return {false, false};
        const CommandId id{row.name, index};
        CommandState state = row.rule ? row.rule(context, id) : CommandState{};
        if (row.text) state.visible = state.visible && !row.text(context, id).empty();
        if constexpr (requires { context.HasRight(row.right); })
            state.enabled = state.enabled && (row.right.empty() || context.HasRight(row.right));
        return state;
    }

    bool Allowed(const Context& context, const Row& row, int index = 0) const {
        const auto allowed = [&](const Row& one, int at) {
            const auto state = State(context, one, at);
            return state.visible && state.enabled;
        };
        if (!allowed(row, index)) return false;
        int depth = row.depth;
        for (const Row* one = &row; depth > 0 && one != lclRows.data();)
            if ((--one)->depth < depth) {
                if (!allowed(*one, 0)) return false;
                depth = one->depth;
            }
        return true;
    }

    // False, and nothing is done, when there is no such command or it is refused now.
    bool Run(Context& context, const CommandId& id) const {
        const Row* row = Find(id.name);
        if (!row || !row->action || !Allowed(context, *row, id.index)) return false;
        row->action(context, {row->name, id.index});
        return true;
    }

    // The command of the key, null when none has it. A key whose command is refused is used all the
    // same: it does nothing here, and nothing else elsewhere.
    const Row* Of(const Shortcut& key) const {
        for (const auto& row : lclRows)
            if (key.key != 0 && row.offered && row.key == key) return &row;
        return nullptr;
    }

    // The whole table, or what the named row owns, hidden entries included.
    PopupMenu Menu(const Context& context, const data::Translation& translation,
                   std::string_view owner = {}) const {
        PopupMenu menu;
        const auto rows = owner.empty() ? lclRows : Below(owner);
        const int depth = rows.empty() ? 0 : rows.front().depth;
        for (const auto& row : rows)
            for (int index = 0; index < row.count && !row.keyOnly; ++index) {
                MenuEntry entry{std::string(row.name), index, {}};
                if (row.text)
                    entry.caption = row.text(context, {row.name, index});
                else if (!row.caption.empty())
                    entry.caption = data::Translated(translation, row.caption);
                const auto state = State(context, row, index);
                entry.depth = row.depth - depth;
                entry.visible = state.visible;
                entry.enabled = state.enabled;
                entry.checked = state.checked;
                entry.shortcut = ShortcutText(row.key, translation);
                menu.push_back(std::move(entry));
            }
        return menu;
    }

    // The rows that nothing owns, hidden ones included.
    std::vector<ToolbarItem> Bar(const Context& context,
                                 const data::Translation& translation) const {
        std::vector<ToolbarItem> bar;
        for (const auto& row : lclRows) {
            if (row.depth > 0 || row.keyOnly) continue;
            const auto state = State(context, row);
            ToolbarItem item{row.name, row.kind, row.picture};
            item.visible = state.visible;
            item.enabled = state.enabled;
            item.pressed = state.checked;
            const bool other = state.checked && !row.checkedTooltip.empty();
            if (!row.tooltip.empty())
                item.tooltip =
                    data::Translated(translation, other ? row.checkedTooltip : row.tooltip);
            if (const auto key = ShortcutText(row.key, translation);
                !key.empty() && !item.tooltip.empty())
                item.tooltip += " (" + key + ")";
            bar.push_back(std::move(item));
        }
        return bar;
    }

private:
    std::span<const Row> Below(std::string_view owner) const {
        std::size_t first = 0;
        while (first < lclRows.size() && !platform::EqualAsciiNoCase(lclRows[first].name, owner))
            ++first;
        if (first == lclRows.size()) return {};
        std::size_t last = first + 1;
        while (last < lclRows.size() && lclRows[last].depth > lclRows[first].depth) ++last;
        return lclRows.subspan(first + 1, last - first - 1);
    }

    std::span<const Row> lclRows;
};

} // namespace kavidex::controls
