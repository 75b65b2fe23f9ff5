// Drawing and changing the marks of the page that is shown, by the pointer and the keys. Places are
// in pixels of the page.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "controls/viewer/pages/MarkTools.h"
#include "controls/viewer/pages/PageGeometry.h"
#include "imaging/annotations/Annotations.h"

namespace kavidex::imaging::annotations {
class TextPainter;
}

namespace kavidex::controls {

class MarkEditorOwner {
public:
    // Of the page shown; null: there is none whose marks may, or can, be changed.
    virtual imaging::annotations::Annotations* EditableMarks() = 0;
    // Puts the text before the user; false: it was cancelled.
    virtual bool AskMarkText(std::string& text) = 0;
    using MarkEdit = std::function<void(imaging::annotations::Annotations&)>;
    // Changes the marks of the page shown, where they may be changed. False: it was refused, and
    // the user was told.
    virtual bool EditMarks(const MarkEdit& edit, bool adds) = 0;
    virtual void MarksRepaint() = 0;
    virtual void MarkSelected() = 0;                        // another one, or none
    virtual std::uint32_t MarkTime() = 0;                   // seconds since 1970 in UTC
    virtual imaging::annotations::TextPainter* Texts() = 0; // null: nothing can be measured

protected:
    ~MarkEditorOwner() = default;
};

class MarkEditor {
public:
    using Mark = imaging::annotations::Mark;

    explicit MarkEditor(MarkEditorOwner& owner) : lclOwner(owner) {}

    MarkTool Tool() const { return lclTool; }
    void SetTool(MarkTool tool); // what is being drawn ends
    void SetStamp(std::string text) { lclStamp = std::move(text); }
    // Those of the tool in use and of the mark that is selected.
    void SetColour(const imaging::annotations::Colour& colour);
    void SetWidth(int width);
    int Width() const { return lclWidth; }
    // Another page is shown, or its marks are others.
    void Reset(const PageShape& page);

    // `reach`: how far from a mark a click still meets it. True when the editor uses the pointer;
    // otherwise it moves the page.
    bool PointerDown(PagePlace at, double reach);
    void PointerMoved(PagePlace at);
    void PointerUp(PagePlace at);
    void PointerLost(); // nothing comes of what was being drawn
    bool DoubleClick(PagePlace at, double reach);
    bool Key(int key, double step); // `step`: one pixel of the screen
    enum class Pointer { Page, Draw, Text, Arrow, Move, Size };
    Pointer PointerAt(PagePlace at, double reach) const;

    bool HasSelection() const { return lclSelected.has_value(); }
    std::optional<std::size_t> Selected() const { return lclSelected; }
    bool CanEditText() const;
    void EditText();
    void DeleteSelected();

    // What is drawn now, or the selected mark where it is being moved to.
    const std::optional<Mark>& Draft() const { return lclDraft; }
    bool Moving() const { return lclDragging && lclSelected.has_value(); }
    // Where the selected mark can be taken hold of; none: nothing is selected.
    std::vector<PagePlace> Handles() const;

private:
    using Point = imaging::annotations::Point;
    static constexpr int noHandle = -1, wholeMark = -2;

    Point Clamped(PagePlace at) const;
    int HandleAt(PagePlace at, double reach) const;
    std::optional<Mark> SelectedMark() const;
    void Select(std::optional<std::size_t> mark);
    Mark NewMark() const;
    void Draw(Point at);
    void Finish(Mark mark);
    bool AskText(std::string& text);
    bool TakeText(Mark& mark, bool sized);
    void SizeForText(Mark& mark) const;
    bool Change(const Mark& mark); // false: it was refused
    Mark Dragged(PagePlace to) const;
    double Dots() const; // an inch
    std::uint32_t PixelWidth() const;

    MarkEditorOwner& lclOwner;
    PageShape lclPage;
    MarkTool lclTool = MarkTool::None;
    std::string lclStamp;
    std::array<std::optional<imaging::annotations::Colour>, 10> lclColours; // by tool
    int lclWidth = 2;
    std::optional<std::size_t> lclSelected;
    std::optional<Mark> lclDraft;
    std::vector<Point> lclPath; // drawn so far
    bool lclDragging = false;
    int lclHandle = noHandle;
    PagePlace lclGrip; // where the pointer went down
    int lclShown = 0;  // counts the pages: a question may outlive one
};

} // namespace kavidex::controls
