// A form as its logic sees it: named fields with their state, and what the user does with them. It
// lives without a window; whatever shows it (a window, a test) attaches as its view.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/Translator.h"
#include "controls/forms/Field.h"
#include "controls/forms/FormView.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls::forms {

// What the user did with a field.
enum class What {
    Clicked,   // a button, the button of a Browse; Tabs by the first mouse button
    Changed,   // text typed, a box ticked, a choice or an item selected, a page turned
    Checked,   // the box of an item
    Activated, // an item by double click or Enter
    Editing,   // before the editor in place opens; may be refused, given `text` or `choices`
    Edited,    // an item's `text` in `column`; taken over unless refused
    Expanding, // a tree's item opens; the moment to add its children
    Collapsed, // it closed
    Heading,   // of a list, before it sorts; refused: the logic sorts
    DragOver,  // `source` and `dragged` over `item` (0: empty space); refused unless accepted
    Dropped,
    Key, // a key that the field has no use for, by its Windows number; refused: it goes on
};

enum class Place { On, Before, After };

struct FieldEvent {
    Field& field;
    What what;
    std::int32_t item = 0;
    int column = 0;
    std::string text = {};
    std::vector<std::string> choices = {}; // of an editor in place: a drop-down list
    const Field* source = nullptr;
    std::vector<std::int32_t> dragged = {};
    Place place = Place::On;
    int key = 0;
    bool control = false, shift = false;
    bool refused = false;
};

class Form {
public:
    using Handler = std::function<void(FieldEvent&)>;

    // `layout` and `workstation` must outlive it. Captions pass through the translator; without one
    // they stay as they are.
    Form(const Layout& layout, const platform::Workstation& workstation,
         std::shared_ptr<Translator> translator = nullptr);
    ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const Layout& Table() const { return lclLayout; }
    // Throws platform::Error when the layout has no such field.
    Field& operator[](std::string_view name);
    std::deque<Field>& Fields() { return lclFields; }
    const std::deque<Field>& Fields() const { return lclFields; }

    const std::string& Caption() const { return lclCaption; }
    void SetCaption(std::string_view caption); // as it is shown
    std::string Text(std::string_view text, const std::vector<std::string>& values = {}) const;
    // Captions that the logic did not change follow.
    void SetTranslate(std::shared_ptr<Translator> translator);

    // One handler a field and kind of act; the last one stays. What it throws is shown and logged
    // with its number, and the form stays open.
    void On(std::string_view field, What what, Handler handler);
    // Whether the form may be closed by Escape, the close box or a cancel button without a handler.
    std::function<bool()> mayCancel;

    // The default and cancel buttons close the form unless they have a handler for Clicked.
    void Close(bool result);
    bool IsClosed() const { return lclClosed; }
    bool Result() const { return lclResult; }

    // Whether the field is to be seen, or takes input, with the frame and the page it stands on.
    bool IsShown(const Field& field) const;
    bool IsUsable(const Field& field) const;
    const Field* Holder(const Field& field) const; // the frame or Tabs it stands on, or null

    // --- For views: what the user did ----------------------------------------------------------

    void Attach(FormView* view); // null detaches; attaching opens a closed form again
    FormView* View() const { return lclView; }
    void Typed(Field& field, std::string_view text);
    void Clicked(Field& field);
    void Toggled(Field& field, bool checked);
    void Chosen(Field& field, std::vector<std::int32_t> ids);
    void ItemChecked(Field& field, std::int32_t id, bool checked);
    void ItemExpanded(Field& field, std::int32_t id, bool expanded);
    // Whether the text is taken over.
    bool ItemEdited(Field& field, std::int32_t id, int column, std::string_view text);
    void HeadingClicked(Field& field, int column);
    void Cancelled(); // Escape or the close box
    // Any other act; false when it was refused, or nobody handles it.
    bool Raise(FieldEvent&& event) { return Raise(&event); }
    bool Raise(FieldEvent* event); // what the handler put into it is for the caller
    bool Handles(const Field& field, What what) const;
    // Runs what belongs to the form; a failure is shown and logged.
    bool Guarded(const std::function<void()>& work);

private:
    friend class Field;
    struct Row {
        const Field* field;
        What what;
        Handler handler;
    };
    void ShowCaptions();
    void ClearGroup(const Field& option);
    const Handler* HandlerOf(const Field& field, What what) const;

    const Layout& lclLayout;
    const platform::Workstation& lclWorkstation;
    std::shared_ptr<Translator> lclTranslator;
    std::string lclCaption;
    bool lclOwnCaption = true; // as the layout has it
    std::deque<Field> lclFields;
    std::vector<Row> lclHandlers;
    FormView* lclView = nullptr;
    bool lclClosed = false, lclResult = false;
};

} // namespace kavidex::controls::forms
