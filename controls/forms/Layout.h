// What a form looks like, as data: its fields by name, where they stand in dialog units, and how
// they follow when the form grows. The order of the rows is the order of the Tab key.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kavidex::controls::forms {

enum class Kind : std::uint8_t {
    Label, // names the input field whose row comes next
    Edit,
    Memo, // several lines
    Check,
    Option, // one of a group; style::group opens the next group
    Combo,
    List,
    Tree,
    Picture,
    Tabs,  // its pages are items; fields that stand `on` it show with their page
    Frame, // a titled border; fields `on` it are shown and enabled with it
    Button,
    Browse, // an edit with a button behind it that raises Clicked
    Progress,
    Pane, // room for another control, handed over with Field::SetPane
};

// In dialog units of the system's message font, from the form's corner (also for fields on tabs).
struct Box {
    int x = 0, y = 0, width = 0, height = 0;
    bool operator==(const Box&) const = default;
};

// The sides of the form from which a field keeps its distance: opposite ones stretch it.
namespace anchor {
constexpr unsigned left = 1, top = 2, right = 4, bottom = 8;
constexpr unsigned leftTop = left | top, rightTop = right | top, leftBottom = left | bottom;
constexpr unsigned rightBottom = right | bottom, wide = leftTop | right, tall = leftTop | bottom;
constexpr unsigned all = wide | bottom;
} // namespace anchor

namespace style {
constexpr unsigned readOnly = 1U << 0;  // text that can be selected and copied
constexpr unsigned multi = 1U << 1;     // a list of which several items can be selected
constexpr unsigned checks = 1U << 2;    // a box at each item of a list or tree
constexpr unsigned edits = 1U << 3;     // items edited in place (F2); a combo that takes any text
constexpr unsigned drags = 1U << 4;     // items can be dragged to fields that answer DragOver
constexpr unsigned sorts = 1U << 5;     // a click on a heading sorts the rows
constexpr unsigned group = 1U << 6;     // the first option of a group
constexpr unsigned isDefault = 1U << 7; // the button of Enter
constexpr unsigned isCancel = 1U << 8;  // the button of Escape and of the close box
constexpr unsigned password = 1U << 9;
constexpr unsigned hidden = 1U << 10; // at the start
constexpr unsigned bold = 1U << 11;
constexpr unsigned noWrap = 1U << 12;   // a memo that scrolls sideways
constexpr unsigned noHeader = 1U << 13; // a list without headings
// Hidden, what keeps its distance from the right alone in its row, on its left, moves up.
constexpr unsigned givesRoom = 1U << 14;
} // namespace style

struct Column {
    std::string_view caption;
    int width = 0; // dialog units; 0: what the other columns leave
    bool right = false;
    bool edits = false; // its cells are edited in place
};

struct FieldRow {
    std::string_view name;
    Kind kind = Kind::Label;
    Box box;
    // Translated. The pages of Tabs and the choices of a Combo part theirs by semicolons, with ids
    // from 1. On an input field without a label: the name that a screen reader tells.
    std::string_view caption = {};
    unsigned anchors = anchor::leftTop;
    unsigned styles = 0;
    std::string_view on = {}; // the Tabs or Frame that it stands on
    int page = 0;             // on Tabs: the id of its page
    std::span<const Column> columns = {};

    bool Has(unsigned wanted) const { return (styles & wanted) != 0; }
};

struct Layout {
    std::string_view name, caption;
    int width = 0, height = 0; // the least size, and the size at the start
    bool resizable = false;
    std::span<const FieldRow> fields;
};

// Where a field stands once the form has grown by so much; all in one unit, whichever.
Box Grown(const Box& box, unsigned anchors, int growX, int growY);

} // namespace kavidex::controls::forms
