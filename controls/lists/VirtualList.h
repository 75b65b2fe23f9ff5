// A list of rows with headings to sort by, of any length: what it shows, how it is sorted, what is
// selected. It works without a window; a window that is attached shows it and tells of the user.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/Event.h"
#include "controls/common/Shortcut.h"
#include "controls/exchange/DragDrop.h"
#include "controls/lists/ListRows.h"
#include "data/Texts.h"

namespace kavidex::controls {

struct ListColumn {
    std::string_view caption;     // before translation
    std::string_view field;       // of the rows
    std::string_view sortField{}; // that it is sorted by; empty: the field itself
    bool hidden = false;
    int width = 0;  // in pixels at 96 dots an inch; 0: an equal share of what the others leave
    int least = 40; // of a share: where it does not fit, the list scrolls
};

class ListWindow {
public:
    virtual ~ListWindow() = default;
    virtual void RowsChanged() = 0; // their number or their order
    virtual void TitlesChanged() = 0;
    virtual void WidthsChanged() = 0;
    virtual void SelectionChanged() = 0;
    virtual void BoxesChanged() = 0;           // whether there are any, or which are ticked
    virtual void ShowRow(std::size_t row) = 0; // scrolled to and marked as current
    virtual void EditRow(std::size_t row) = 0; // opens the editor of its first column
};

// Rows and columns are counted as they are shown: hidden columns have no number.
class VirtualList {
public:
    explicit VirtualList(std::span<const ListColumn> columns, bool manySelected = false);

    void SetTranslation(data::Translation translation);
    // Sorted as the list is; the rows that are still there stay selected. Null: none.
    void SetRows(std::unique_ptr<ListRows> rows);

    std::size_t Count() const { return lclOrder.size(); }
    std::int32_t Id(std::size_t row) const; // throws std::out_of_range
    std::optional<std::size_t> RowOf(std::int32_t id) const;
    std::string Text(std::size_t row, std::size_t column) const;
    std::string Picture(std::size_t row) const; // of the icon store; empty: none
    bool HasPictures() const { return lclRows && lclRows->HasPictures(); }

    std::size_t Columns() const { return lclShown.size(); }
    // With "(oplopend)" or "(aflopend)" where the list is sorted by it.
    std::string Title(std::size_t column) const;
    void SetWidth(std::size_t column, int width);
    // In pixels, for that room and resolution.
    // `titles`: the pixels that each heading needs, where that is known; a share is no narrower.
    std::vector<int> Widths(int room, int dpi, const std::vector<int>& titles = {}) const;

    // Sorts by the column; a second time the other way round. When reading a key throws, the order
    // and the marks stay as they were.
    void HeadingClicked(std::size_t column);
    void Unsort();            // as the rows come, without marks
    std::string Sort() const; // "[InsertSort] DESC"; empty: as the rows come
    // The next row from `from` on, around the end, whose first column begins with the text.
    std::optional<std::size_t> Find(std::string_view text, std::size_t from) const;

    // Boxes in front of the rows; whether one is ticked is the asker's to know. Null: no boxes.
    void SetBoxes(std::function<bool(std::int32_t id)> ticked);
    void BoxesChanged();
    bool HasBoxes() const { return lclTicked != nullptr; }
    bool Ticked(std::size_t row) const { return lclTicked && row < Count() && lclTicked(Id(row)); }

    // Opens the editor of the row's first column; nothing where there is no window.
    void EditLabel(std::int32_t id);

    bool ManySelected() const { return lclMany; }
    const std::vector<std::int32_t>& Selected() const { return lclSelected; } // ids
    void Select(const std::vector<std::int32_t>& ids); // without an event; shows the first
    void SelectAll();

    // What the window tells.
    void RowsSelected(const std::vector<std::size_t>& rows);
    void RowActivated(std::size_t row); // double click or Enter
    void RowBoxClicked(std::size_t row);
    bool EditBegun(std::size_t row); // false: it may not be edited
    void EditEnded(const std::string& text);

    Event<> SelectionChanged;
    Event<std::int32_t> Activated;                            // the row's id
    Event<std::optional<std::int32_t>, int, int> ContextMenu; // id or none, a point of the screen
    Event<const Shortcut&, bool&> KeyPressed;                 // set to true: used
    Event<std::int32_t> DragStarted;                          // the id where it began
    Event<std::int32_t> BoxClicked;                           // or the space bar on the row
    Event<std::int32_t, bool&> EditAsked;                     // set to true: it may be edited
    Event<std::int32_t, const std::string&> Edited;           // what the user wrote
    Event<> FocusTaken;

    // The window must detach (null) before it dies.
    void AttachWindow(ListWindow* window);

private:
    const ListColumn& Column(std::size_t column) const { return lclColumns[lclShown[column]]; }
    std::string_view SortField() const;
    std::vector<std::uint32_t> Sorted() const;
    void KeepSelection();

    std::vector<ListColumn> lclColumns;
    std::vector<std::size_t> lclShown; // positions of columns that are not hidden
    bool lclMany;
    data::Translation lclTranslation;
    std::unique_ptr<ListRows> lclRows;
    std::vector<std::uint32_t> lclOrder; // positions among the rows
    std::optional<std::size_t> lclSortColumn;
    bool lclDescending = false;
    std::vector<std::int32_t> lclSelected;
    std::function<bool(std::int32_t)> lclTicked;
    std::int32_t lclEdited = 0; // rows may come, go and change places below the open editor
    ListWindow* lclWindow = nullptr;
};

} // namespace kavidex::controls
