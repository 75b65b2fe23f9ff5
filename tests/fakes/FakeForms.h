// A user before a form without a window: does only what could be done with one, and so finds a form
// that cannot be used.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "controls/forms/Form.h"
#include "platform/text.h"

namespace kavidex::tests {

class FormUser : public controls::forms::FormView {
public:
    using Field = controls::forms::Field;
    using What = controls::forms::What;
    using Aspect = controls::forms::Aspect;

    explicit FormUser(controls::forms::Form& form) : lclForm(form) { form.Attach(this); }
    ~FormUser() override {
        if (lclForm.View() == this) lclForm.Attach(nullptr);
    }
    FormUser(const FormUser&) = delete;
    FormUser& operator=(const FormUser&) = delete;

    controls::forms::Form& Form() const { return lclForm; }
    std::string Caption() const { return lclForm.Caption(); }
    const std::string& Text(const char* name) const { return lclForm[name].Text(); }
    bool Ticked(const char* name) const { return lclForm[name].Checked(); }
    bool CanUse(const char* name) const {
        return lclForm.IsShown(lclForm[name]) && lclForm.IsUsable(lclForm[name]);
    }

    void Type(const char* name, const char* text) {
        Field& field = Usable(name);
        if (field.ReadOnly()) throw std::logic_error(std::string(name) + " is only to be read");
        lclForm.Typed(field, text);
    }
    void Click(const char* name) { lclForm.Clicked(Usable(name)); }
    void Tick(const char* name, bool ticked = true) { lclForm.Toggled(Usable(name), ticked); }
    void Choose(const char* name, std::int32_t id) { ChooseAll(name, {id}); }
    void ChooseAll(const char* name, std::vector<std::int32_t> ids) {
        for (const auto id : ids) ItemOf(name, id);
        lclForm.Chosen(Usable(name), std::move(ids));
    }
    void TickItem(const char* name, std::int32_t id, bool ticked = true) {
        ItemOf(name, id);
        lclForm.ItemChecked(Usable(name), id, ticked);
    }
    void Expand(const char* name, std::int32_t id) {
        ItemOf(name, id);
        lclForm.ItemExpanded(Usable(name), id, true);
    }
    bool EditItem(const char* name, std::int32_t id, const char* text, int column = 0) {
        controls::forms::FieldEvent begins{
            .field = Usable(name), .what = What::Editing, .item = id, .column = column};
        if (lclForm.Handles(begins.field, What::Editing) && !lclForm.Raise(&begins)) return false;
        return lclForm.ItemEdited(begins.field, id, column, text);
    }
    // Whether the target took what was dragged.
    bool Drag(const char* from, std::vector<std::int32_t> ids, const char* to, std::int32_t item,
              controls::forms::Place place = controls::forms::Place::On) {
        controls::forms::FieldEvent drag{.field = Usable(to),
                                         .what = What::DragOver,
                                         .item = item,
                                         .source = &Usable(from),
                                         .dragged = std::move(ids),
                                         .place = place};
        if (!lclForm.Handles(drag.field, What::DragOver) || !lclForm.Raise(&drag)) return false;
        drag.what = What::Dropped;
        return lclForm.Raise(&drag);
    }
    bool PressKey(const char* name, int key, bool control = false) {
        Field& field = Usable(name);
        return lclForm.Raise({.field = field,
                              .what = What::Key,
                              .item = field.Selected(),
                              .key = key,
                              .control = control});
    }
    void Enter() {
        for (Field& field : lclForm.Fields())
            if (field.Row().Has(controls::forms::style::isDefault) && CanUse(field.Name().data()))
                return lclForm.Clicked(field);
    }
    void Escape() { lclForm.Cancelled(); }

    // What the logic asked to be shown.
    std::int32_t edited = 0;
    void Show(const Field&, Aspect) override {}
    void ShowItem(const Field&, std::int32_t) override {}
    void ShowCaption() override {}
    void EditItem(const Field&, std::int32_t id, int) override { edited = id; }
    void Focus(const Field&) override {}
    void Close() override {}

private:
    Field& Usable(const char* name) const {
        if (!CanUse(name)) throw std::logic_error(std::string(name) + " cannot be used now");
        return lclForm[name];
    }
    void ItemOf(const char* name, std::int32_t id) const {
        if (!lclForm[name].Find(id))
            throw std::logic_error(std::string(name) + " has no item " + std::to_string(id));
    }

    controls::forms::Form& lclForm;
};

// Each form that is shown meets the next of `users`; one whom nobody waits for is cancelled.
class FakeForms : public controls::forms::FormPresenter {
public:
    std::deque<std::function<void(FormUser&)>> users;
    std::deque<std::optional<std::string>> chosen; // answers of the choosers

    // An editor on that connection, whose dialogs come here.
    template <class Editor, class Connection>
    std::unique_ptr<Editor> EditorOn(const platform::Workstation& machine,
                                     const Connection& connection) {
        auto made = std::make_unique<Editor>(machine);
        made->presenter = [this] { return this; };
        made->SetDbConnection(connection);
        return made;
    }
    bool ShowModal(controls::forms::Form& form) override {
        FormUser user(form);
        if (!users.empty()) {
            const auto acts = users.front();
            users.pop_front();
            acts(user);
        }
        if (!form.IsClosed()) form.Close(false);
        return form.Result();
    }
    bool ShowModeless(controls::forms::Form&) override { return true; }
    std::optional<std::string> ChooseFolder(std::string_view, std::string_view) override {
        return Next();
    }
    std::optional<std::string> ChooseFile(std::string_view, std::string_view, std::string_view,
                                          bool) override {
        return Next();
    }

    std::vector<std::string> ChooseFiles(std::string_view, std::string_view) override {
        const auto all = Next();
        return all ? platform::Split(*all, ';') : std::vector<std::string>();
    }

private:
    std::optional<std::string> Next() {
        if (chosen.empty()) return std::nullopt;
        const auto next = chosen.front();
        chosen.pop_front();
        return next;
    }
};

} // namespace kavidex::tests
