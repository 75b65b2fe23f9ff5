// The room in which a page is shown: what is seen of it, how the user moves over it, and the marks
// that are drawn on it. It works without a window; a window that is attached shows it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "controls/common/Event.h"
#include "controls/common/Shortcut.h"
#include "controls/viewer/pages/MarkEditor.h"
#include "controls/viewer/pages/PageGeometry.h"
#include "imaging/PageBitmap.h"
#include "imaging/annotations/MarkPainter.h"

namespace kavidex::controls {

class CanvasWindow {
public:
    virtual ~CanvasWindow() = default;
    virtual void Repaint() = 0;
    virtual void RoomChanged() = 0; // the scroll bars are to be told anew, all is to be repainted
    virtual imaging::annotations::TextPainter& Texts() = 0;
};

class PageCanvas {
public:
    explicit PageCanvas(MarkEditorOwner& owner) : lclEditor(owner) {}

    // --- What is shown

    // A page that is to come; its picture follows. `fit`: as the mode says, else as the page
    // before.
    void SetPage(const PageShape& page, bool fit, bool fromItsEnd = false);
    void Clear();
    bool HasPage() const { return lclHasPage; }
    // The picture has the page's own size, or any where it is drawn anew for each zoom.
    void SetPicture(imaging::PageBitmap picture);
    bool HasPicture() const { return lclPicture.has_value(); }
    std::uint32_t PictureWidth() const { return lclPicture ? lclPicture->width : 0; }
    void SetMessage(std::string text); // in place of a picture
    const std::string& Message() const { return lclMessage; }
    // Null: none are shown.
    void SetMarks(const imaging::annotations::Annotations* marks);
    void MarksChanged(); // others than before, in the same place

    const PageGeometry& Geometry() const { return lclGeometry; }
    MarkEditor& Editor() { return lclEditor; }
    const MarkEditor& Editor() const { return lclEditor; }

    FitMode Fitted() const { return lclMode; }
    bool IsFitted() const { return lclFitted; }
    void Fit(FitMode mode);
    void Zoom(int steps); // around the middle
    bool CanZoom(int steps) const { return lclHasPage && lclGeometry.CanZoom(steps); }

    // What lies in the room: a picture and where it begins. Valid until something changes. Without
    // `texts` marks have no letters.
    struct Seen {
        int x = 0, y = 0;
        const imaging::PageBitmap* picture = nullptr; // null: nothing yet
    };
    Seen See(imaging::annotations::TextPainter* texts);
    // The same without a window, in a room of its own.
    imaging::PageBitmap Draw(int width, int height, imaging::annotations::TextPainter& texts,
                             int& x, int& y) const;

    // --- What the window tells

    void SetRoom(int width, int height, int bar, int gap);
    void ScrollTo(int left, int top);
    // A turn of the wheel in notches, away from the user above 0.
    void Wheel(double notches, int x, int y, bool control, bool shift);
    void PointerDown(int x, int y);
    void PointerMoved(int x, int y);
    void PointerUp(int x, int y);
    void PointerLost();
    void DoubleClick(int x, int y);
    MarkEditor::Pointer PointerAt(int x, int y) const;
    bool Panning() const { return lclPanning; }
    bool Key(const Shortcut& key); // true: used

    Event<int> PageAsked; // a step of pages: the room's end was passed
    Event<> ZoomChanged;
    Event<int, int> ContextMenu; // a point of the screen

    // The window must detach (null) before it dies.
    void AttachWindow(CanvasWindow* window);
    CanvasWindow* Window() const { return lclWindow; }

private:
    void GeometryChanged();
    void ZoomedTo();
    double Reach() const;
    void PageKey(int step);
    void SeePage();
    void SeeMarks(imaging::annotations::TextPainter& texts);
    imaging::annotations::MarkView View() const; // of what lies in the room
    void SeeHandles(imaging::PageBitmap& picture) const;

    PageGeometry lclGeometry;
    MarkEditor lclEditor;
    bool lclHasPage = false, lclFitted = true;
    FitMode lclMode = FitMode::Best;
    std::optional<imaging::PageBitmap> lclPicture;
    std::string lclMessage;
    const imaging::annotations::Annotations* lclMarks = nullptr;

    std::optional<imaging::PageBitmap> lclWhole; // the page at this zoom, where it is not too large
    std::optional<imaging::PageBitmap> lclSeen;  // what lies in the room, with its marks
    std::optional<imaging::PageBitmap> lclDrawn; // and what is being drawn
    int lclSeenX = 0, lclSeenY = 0;
    std::optional<std::size_t> lclWithout; // the mark that is left out, since it is being moved

    bool lclPanning = false;
    int lclPanX = 0, lclPanY = 0;
    double lclWheel = 0; // what was turned beyond the page's end
    CanvasWindow* lclWindow = nullptr;
};

} // namespace kavidex::controls
