// The thumbnails of a document's pages: how they lie, which are selected, which are made and which
// is to be made next. It works without a window; a window that is attached shows it.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "controls/common/Event.h"
#include "controls/common/Shortcut.h"
#include "controls/exchange/DragDrop.h"
#include "imaging/PageBitmap.h"

namespace kavidex::controls {

class ThumbsWindow {
public:
    virtual ~ThumbsWindow() = default;
    virtual void Repaint() = 0; // all of it, and the scroll bar
    virtual void Repaint(int page) = 0;
    virtual void CurrentChanged() = 0; // for screen readers
    // Drags the data as the left button is held, and waits until it is dropped; the effect.
    virtual std::int32_t Drag(const DropData& data) = 0;
};

class ThumbStrip {
public:
    struct Cell {
        int x = 0, y = 0, width = 0, height = 0; // in the room, as it is scrolled
    };

    // Pages count from 1. Nothing is selected, nothing made.
    void SetCount(int count);
    int Count() const { return lclCount; }
    // The page that is shown; it alone gets selected unless it is among those that are.
    void SetCurrent(int page);
    int Current() const { return lclCurrent; }

    // Pictures; those that are farthest from the room go when there are many.
    const imaging::PageBitmap* Picture(int page) const; // null: not made yet
    bool Failed(int page) const { return lclFailed.contains(page); }
    void Put(int page, imaging::PageBitmap picture);
    void PutFailed(int page); // it cannot be made
    void Forget(int page);    // it looks different now
    // In the room first, then around it; 0: enough are made.
    int Wanted() const;

    const std::set<int>& Selected() const { return lclSelected; }
    void Select(std::set<int> pages);

    // The room, and a resolution for the sizes.
    void SetRoom(int width, int height, int dpi);
    int PictureSize() const { return lclSide; } // the side of the square that a picture lies in
    Cell CellOf(int page) const;
    int PageAt(int x, int y) const; // 0: none
    int ContentHeight() const;
    int Top() const { return lclTop; }
    void ScrollTo(int top);
    void Show(int page); // scrolled into the room

    void Clicked(int page, bool control, bool shift); // 0: beside the pages
    bool Key(const Shortcut& key);                    // true: used

    Event<int> Chosen; // a page to be shown
    Event<> SelectionChanged;
    Event<int, int> ContextMenu; // a point of the screen
    Event<> DeleteAsked, DragStarted;
    Event<> RoomChanged; // other pages are in view

    // The window must detach (null) before it dies.
    void AttachWindow(ThumbsWindow* window) { lclWindow = window; }
    ThumbsWindow* Window() const { return lclWindow; }

private:
    int Columns() const;
    int CellWidth() const;
    int CellHeight() const;
    void Repaint() const;
    void SelectTo(int page);
    void MoveTo(int page, bool shift);

    int lclCount = 0, lclCurrent = 0, lclAnchor = 0;
    std::set<int> lclSelected, lclFailed;
    std::map<int, imaging::PageBitmap> lclPictures;
    int lclWidth = 0, lclHeight = 0, lclSide = 96, lclGap = 8, lclLabel = 18, lclTop = 0;
    ThumbsWindow* lclWindow = nullptr;
};

} // namespace kavidex::controls
