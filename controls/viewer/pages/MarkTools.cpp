#include "controls/viewer/pages/MarkTools.h"

namespace kavidex::controls {

using imaging::annotations::Colour;
using imaging::annotations::MarkType;

namespace {

constexpr Colour red{220, 30, 30}, blue{30, 80, 200}, green{20, 140, 60}, black{0, 0, 0},
    yellow{255, 255, 0}, paper{255, 255, 160}, orange{255, 150, 30};

constexpr MarkToolRow tools[] = {
    {.tool = MarkTool::Line,
     .key = "Line",
     .caption = "Lijn",
     .type = MarkType::Line,
     .colour = red},
    {.tool = MarkTool::Freehand,
     .key = "Freehand",
     .caption = "Vrije lijn",
     .type = MarkType::Freehand,
     .colour = red},
    {.tool = MarkTool::HollowRectangle,
     .key = "HollowRectangle",
     .caption = "Rechthoek",
     .type = MarkType::HollowRectangle,
     .colour = red},
    {.tool = MarkTool::FilledRectangle,
     .key = "FilledRectangle",
     .caption = "Gevulde rechthoek",
     .type = MarkType::FilledRectangle,
     .colour = black},
    {.tool = MarkTool::Highlighter,
     .key = "Highlighter",
     .caption = "Markeerstift",
     .type = MarkType::FilledRectangle,
     .colour = yellow,
     .highlighting = true},
    {.tool = MarkTool::Text,
     .key = "Text",
     .caption = "Tekst",
     .type = MarkType::Text,
     .colour = black},
    {.tool = MarkTool::Note,
     .key = "Note",
     .caption = "Plaknotitie",
     .type = MarkType::Note,
     .colour = paper},
    {.tool = MarkTool::Stamp,
     .key = "Stamp",
     .caption = "Stempel",
     .type = MarkType::TextStamp,
     .colour = red},
};

constexpr MarkColourRow colours[] = {
    {.caption = "Rood", .colour = red},
    {.caption = "Blauw", .colour = blue},
    {.caption = "Groen", .colour = green},
    {.caption = "Zwart", .colour = black},
    {.caption = "Geel", .colour = yellow},
    {.caption = "Oranje", .colour = orange},
    {.caption = "Wit", .colour = {255, 255, 255}},
};

constexpr MarkWidthRow widths[] = {{.caption = "Dun", .width = 1},
                                   {.caption = "Normaal", .width = 2},
                                   {.caption = "Dik", .width = 4},
                                   {.caption = "Extra dik", .width = 8}};

constexpr StampRow stamps[] = {{.caption = "Akkoord $%$"},
                               {.caption = "Niet akkoord $%$"},
                               {.caption = "Ontvangen $%$"},
                               {.caption = "Betaald $%$"},
                               {.caption = "Concept $%$"}};

} // namespace

std::span<const MarkToolRow> MarkToolTable() { return tools; }

const MarkToolRow* FindMarkTool(MarkTool tool) {
    for (const auto& row : tools)
        if (row.tool == tool) return &row;
    return nullptr;
}

std::span<const MarkColourRow> MarkColours() { return colours; }

std::span<const MarkWidthRow> MarkWidths() { return widths; }

std::span<const StampRow> StampTexts() { return stamps; }

} // namespace kavidex::controls
