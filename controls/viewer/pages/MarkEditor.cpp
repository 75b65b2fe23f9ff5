#include "controls/viewer/pages/MarkEditor.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "controls/common/Shortcut.h"
#include "imaging/annotations/TextPainter.h"
#include "platform/text.h"

namespace kavidex::controls {

using imaging::annotations::Annotations;
using imaging::annotations::Box;
using imaging::annotations::Colour;
using imaging::annotations::Mark;
using imaging::annotations::MarkType;
using imaging::annotations::Point;

namespace {

// The corners and the middles of the sides, clockwise from the left top.
constexpr struct {
    double x, y;
} boxHandles[] = {{0, 0}, {.5, 0}, {1, 0}, {1, .5}, {1, 1}, {.5, 1}, {0, 1}, {0, .5}};

constexpr int textPoints = 12;

std::int32_t Rounded(double value) { return static_cast<std::int32_t>(std::lround(value)); }

std::vector<Point> OnPage(const Mark& mark) {
    std::vector<Point> points = mark.points;
    for (Point& point : points) point = {point.x + mark.bounds.left, point.y + mark.bounds.top};
    return points;
}

bool IsStraight(const Mark& mark) { return mark.type == MarkType::Line && mark.points.size() == 2; }

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines = platform::Split(text, '\n');
    for (auto& line : lines)
        if (!line.empty() && line.back() == '\r') line.pop_back();
    return lines;
}

// As the tag has them: lines end in CR LF.
std::string WithLineEnds(const std::string& text) {
    std::string result;
    for (const auto& line : LinesOf(text)) result += (result.empty() ? "" : "\r\n") + line;
    return result;
}

} // namespace

// --- The toolbox
// ----------------------------------------------------------------------------------

void MarkEditor::SetTool(MarkTool tool) {
    PointerLost();
    lclTool = tool;
    if (tool != MarkTool::Select) Select(std::nullopt);
}

void MarkEditor::SetColour(const Colour& colour) {
    lclColours[static_cast<std::size_t>(lclTool)] = colour;
    if (auto mark = SelectedMark()) {
        mark->colour = colour;
        Change(*mark);
    }
}

void MarkEditor::SetWidth(int width) {
    lclWidth = width;
    if (auto mark = SelectedMark(); mark && mark->lineWidth > 0) {
        mark->lineWidth = PixelWidth();
        Change(*mark);
    }
}

void MarkEditor::Reset(const PageShape& page) {
    ++lclShown;
    lclPage = page;
    lclDragging = false;
    lclDraft.reset();
    lclPath.clear();
    lclSelected.reset();
}

double MarkEditor::Dots() const { return lclPage.yDpi >= 1 ? lclPage.yDpi : 200; }

std::uint32_t MarkEditor::PixelWidth() const {
    return static_cast<std::uint32_t>(std::max(1.0, std::round(lclWidth * Dots() / 100)));
}

// --- Selecting
// ------------------------------------------------------------------------------------

void MarkEditor::Select(std::optional<std::size_t> mark) {
    if (lclSelected == mark) return;
    lclSelected = mark;
    lclOwner.MarksRepaint();
    lclOwner.MarkSelected();
}

std::optional<Mark> MarkEditor::SelectedMark() const {
    auto* marks = lclOwner.EditableMarks();
    if (!marks || !lclSelected || *lclSelected >= marks->Count()) return std::nullopt;
    return marks->At(*lclSelected);
}

std::vector<PagePlace> MarkEditor::Handles() const {
    const auto mark = Moving() && lclDraft ? lclDraft : SelectedMark();
    std::vector<PagePlace> handles;
    if (!mark) return handles;
    if (IsStraight(*mark)) {
        for (const Point& point : OnPage(*mark))
            handles.push_back({static_cast<double>(point.x), static_cast<double>(point.y)});
        return handles;
    }
    const Box box = mark->bounds.Normal();
    for (const auto& at : boxHandles)
        handles.push_back(
            {box.left + at.x * (box.right - box.left), box.top + at.y * (box.bottom - box.top)});
    return handles;
}

int MarkEditor::HandleAt(PagePlace at, double reach) const {
    const auto handles = Handles();
    for (std::size_t i = 0; i < handles.size(); ++i)
        if (std::abs(handles[i].x - at.x) <= reach && std::abs(handles[i].y - at.y) <= reach)
            return static_cast<int>(i);
    return noHandle;
}

MarkEditor::Pointer MarkEditor::PointerAt(PagePlace at, double reach) const {
    auto* marks = lclOwner.EditableMarks();
    if (lclTool == MarkTool::None || !marks) return Pointer::Page;
    if (lclTool == MarkTool::Text || lclTool == MarkTool::Note) return Pointer::Text;
    if (lclTool != MarkTool::Select) return Pointer::Draw;
    if (HandleAt(at, reach) != noHandle) return Pointer::Size;
    const auto under = marks->HitTest({Rounded(at.x), Rounded(at.y)}, reach);
    if (!under) return Pointer::Page;
    return under == lclSelected ? Pointer::Move : Pointer::Arrow;
}

// --- The pointer
// ----------------------------------------------------------------------------------

Point MarkEditor::Clamped(PagePlace at) const {
    return {Rounded(std::clamp(at.x, 0.0, double(lclPage.width))),
            Rounded(std::clamp(at.y, 0.0, double(lclPage.height)))};
}

bool MarkEditor::PointerDown(PagePlace at, double reach) {
    auto* marks = lclOwner.EditableMarks();
    if (lclTool == MarkTool::None || !marks) return false;
    lclGrip = at;
    if (lclTool == MarkTool::Select) {
        lclHandle = HandleAt(at, reach);
        if (lclHandle == noHandle) {
            Select(marks->HitTest({Rounded(at.x), Rounded(at.y)}, reach));
            if (!lclSelected) return false;
            lclHandle = wholeMark;
        }
        lclDragging = true;
        return true;
    }
    if (at.x < 0 || at.y < 0 || at.x > lclPage.width || at.y > lclPage.height) return true;
    lclDragging = true;
    lclPath = {Clamped(at)};
    lclDraft = NewMark();
    Draw(Clamped(at));
    return true;
}

void MarkEditor::PointerMoved(PagePlace at) {
    if (!lclDragging) return;
    if (lclSelected)
        lclDraft = Dragged(at);
    else
        Draw(Clamped(at));
    lclOwner.MarksRepaint();
}

void MarkEditor::PointerUp(PagePlace at) {
    if (!lclDragging) return;
    PointerMoved(at);
    lclDragging = false;
    auto draft = std::exchange(lclDraft, std::nullopt);
    lclPath.clear();
    const bool moved = at.x != lclGrip.x || at.y != lclGrip.y;
    if (draft && lclSelected && moved)
        Change(*draft);
    else if (draft && !lclSelected)
        Finish(std::move(*draft));
    lclOwner.MarksRepaint();
}

void MarkEditor::PointerLost() {
    if (!lclDragging) return;
    lclDragging = false;
    lclDraft.reset();
    lclPath.clear();
    lclOwner.MarksRepaint();
}

bool MarkEditor::DoubleClick(PagePlace at, double reach) {
    auto* marks = lclOwner.EditableMarks();
    if (lclTool != MarkTool::Select || !marks) return false;
    PointerLost();
    Select(marks->HitTest({Rounded(at.x), Rounded(at.y)}, reach));
    EditText();
    return lclSelected.has_value();
}

bool MarkEditor::Key(int key, double step) {
    if (key == keys::escape && (lclDragging || lclSelected)) {
        PointerLost();
        Select(std::nullopt);
        return true;
    }
    auto mark = SelectedMark();
    if (!mark || lclDragging) return false;
    const auto by = std::max(1, Rounded(step));
    switch (key) {
    case keys::del: DeleteSelected(); return true;
    case keys::enter: EditText(); return true;
    case keys::left: mark->Move(-by, 0); break;
    case keys::right: mark->Move(by, 0); break;
    case keys::up: mark->Move(0, -by); break;
    case keys::down: mark->Move(0, by); break;
    default: return false;
    }
    Change(*mark);
    return true;
}

// --- Drawing
// --------------------------------------------------------------------------------------

Mark MarkEditor::NewMark() const {
    const auto& row = *FindMarkTool(lclTool);
    Mark mark;
    mark.type = row.type;
    mark.colour = lclColours[static_cast<std::size_t>(lclTool)].value_or(row.colour);
    mark.highlighting = row.highlighting;
    if (mark.HasPoints() || mark.type == MarkType::HollowRectangle) mark.lineWidth = PixelWidth();
    if (mark.HasText()) {
        mark.font.face = "Arial";
        mark.font.height = textPoints;
        mark.creationScale = imaging::annotations::CreationScale(Dots());
    }
    if (mark.type == MarkType::TextStamp) {
        mark.font.weight = 700;
        mark.font.height = 2 * textPoints;
        mark.text = lclStamp;
    }
    return mark;
}

void MarkEditor::Draw(Point at) {
    const Point from = lclPath.front();
    if (lclTool == MarkTool::Freehand) {
        if (!(lclPath.back() == at)) lclPath.push_back(at);
        lclDraft->SetPoints(lclPath);
    } else if (lclTool == MarkTool::Line) {
        lclDraft->SetPoints({from, at});
    } else if (lclTool == MarkTool::Stamp) {
        lclDraft->bounds = {at.x, at.y, at.x, at.y};
        SizeForText(*lclDraft);
    } else {
        lclDraft->bounds = Box{from.x, from.y, at.x, at.y}.Normal();
    }
}

void MarkEditor::Finish(Mark mark) {
    const Box box = mark.bounds.Normal();
    // A click that did not draw.
    const double least = Dots() / 40;
    const bool tooSmall = box.right - box.left < least && box.bottom - box.top < least;
    const bool takesText = mark.type == MarkType::Text || mark.type == MarkType::Note;
    if (tooSmall && !mark.HasText()) return;
    // A text that was refused stands in the question again.
    do {
        if (takesText && !TakeText(mark, !tooSmall)) return;
    } while (!lclOwner.EditMarks([&](Annotations& marks) { marks.Add(mark, lclOwner.MarkTime()); },
                                 true) &&
             takesText);
}

bool MarkEditor::AskText(std::string& text) {
    const int shown = lclShown;
    return lclOwner.AskMarkText(text) && shown == lclShown;
}

bool MarkEditor::TakeText(Mark& mark, bool sized) {
    std::string text = mark.text;
    if (!AskText(text) || platform::TrimView(text).empty()) return false;
    mark.text = WithLineEnds(text);
    if (!sized) SizeForText(mark);
    return true;
}

// As large as the text on lines of their own; a note has some room of its own too.
void MarkEditor::SizeForText(Mark& mark) const {
    const double height = mark.TextPixels();
    imaging::annotations::TextLook look;
    look.face = mark.font.face;
    look.bold = mark.font.weight >= 600;
    look.height = height;
    auto* texts = lclOwner.Texts();
    double width = 0, total = 0;
    for (const auto& line : LinesOf(mark.text)) {
        width = std::max(width, texts ? texts->Width(look, line)
                                      : 0.6 * height * static_cast<double>(line.size()));
        total += texts ? texts->LineHeight(look) : 1.2 * height;
    }
    // Letters stand in the page's true form, its pixels may not.
    width = width / lclPage.Stretch() + height / 2;
    if (mark.type == MarkType::Note) {
        width = std::max(width + height, 1.5 * Dots());
        total = std::max(total + height, Dots());
    }
    const Box box = mark.bounds.Normal();
    mark.bounds = {box.left, box.top, box.left + Rounded(width), box.top + Rounded(total)};
}

// --- Changing
// -------------------------------------------------------------------------------------

Mark MarkEditor::Dragged(PagePlace to) const {
    Mark mark = *SelectedMark();
    const auto dx = Rounded(to.x - lclGrip.x), dy = Rounded(to.y - lclGrip.y);
    if (lclHandle == wholeMark) {
        mark.Move(dx, dy);
        return mark;
    }
    const auto handle = static_cast<std::size_t>(lclHandle);
    if (IsStraight(mark)) {
        auto points = OnPage(mark);
        if (handle < points.size()) points[handle] = Clamped(to);
        mark.SetPoints(points);
        return mark;
    }
    if (handle >= std::size(boxHandles)) return mark;
    Box box = mark.bounds.Normal();
    const auto& at = boxHandles[handle];
    const Point point = Clamped(to);
    if (at.x == 0) box.left = point.x;
    if (at.x == 1) box.right = point.x;
    if (at.y == 0) box.top = point.y;
    if (at.y == 1) box.bottom = point.y;
    // Drawn over its other side it lies the other way round.
    box = box.Normal();
    box.right = std::max(box.right, box.left + 1);
    box.bottom = std::max(box.bottom, box.top + 1);
    mark.bounds = mark.bounds.Normal();
    mark.Resize(box);
    return mark;
}

bool MarkEditor::Change(const Mark& mark) {
    return !lclSelected ||
           lclOwner.EditMarks(
               [&](Annotations& marks) { marks.Change(*lclSelected, mark, lclOwner.MarkTime()); },
               false);
}

bool MarkEditor::CanEditText() const {
    const auto mark = SelectedMark();
    return mark && mark->HasText();
}

void MarkEditor::EditText() {
    auto mark = SelectedMark();
    if (!mark || !mark->HasText()) return;
    std::string text = mark->text;
    const std::string before = mark->text;
    do {
        if (!AskText(text) || WithLineEnds(text) == before) return;
        mark->text = WithLineEnds(text);
    } while (!Change(*mark));
}

void MarkEditor::DeleteSelected() {
    if (!SelectedMark()) return;
    const auto index = *std::exchange(lclSelected, std::nullopt);
    lclOwner.EditMarks([index](Annotations& marks) { marks.Remove(index); }, false);
}

} // namespace kavidex::controls
