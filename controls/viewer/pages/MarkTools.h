// The tools of the annotation toolbox: what each draws, and with which look it begins.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "imaging/annotations/Mark.h"

namespace kavidex::controls {

enum class MarkTool {
    None, // the pointer moves the page
    Select,
    Line,
    Freehand,
    HollowRectangle,
    FilledRectangle,
    Highlighter,
    Text,
    Note,
    Stamp,
};

struct MarkToolRow {
    MarkTool tool;
    std::string_view key, caption; // of its button
    imaging::annotations::MarkType type{};
    imaging::annotations::Colour colour{};
    bool highlighting = false;
};

// Those that draw, in the order of their buttons.
std::span<const MarkToolRow> MarkToolTable();
const MarkToolRow* FindMarkTool(MarkTool tool); // null: it draws nothing

struct MarkColourRow {
    std::string_view caption;
    imaging::annotations::Colour colour;
};
std::span<const MarkColourRow> MarkColours();

// Widths of lines in hundredths of an inch.
struct MarkWidthRow {
    std::string_view caption;
    int width;
};
std::span<const MarkWidthRow> MarkWidths();

// The day is put in for the placeholder.
struct StampRow {
    std::string_view caption;
};
std::span<const StampRow> StampTexts();

} // namespace kavidex::controls
