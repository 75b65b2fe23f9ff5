#include "controls/forms/Form.h"

#include <algorithm>

#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls::forms {

namespace {

bool ShowsItsCaption(Kind kind) {
    return kind == Kind::Label || kind == Kind::Check || kind == Kind::Option ||
           kind == Kind::Frame || kind == Kind::Button;
}

std::vector<Item> ItemsOf(std::string_view captions, const Form& form) {
    std::vector<Item> items;
    for (const auto& caption : platform::Split(captions, ';'))
        items.push_back({static_cast<std::int32_t>(items.size()) + 1, {form.Text(caption)}});
    return items;
}

} // namespace

Form::Form(const Layout& layout, const platform::Workstation& workstation,
           std::shared_ptr<Translator> translator)
    : lclLayout(layout), lclWorkstation(workstation), lclTranslator(std::move(translator)) {
    for (const FieldRow& row : layout.fields) {
        Field& field = lclFields.emplace_back(*this, row);
        field.lclVisible = !row.Has(style::hidden);
        field.lclReadOnly = row.Has(style::readOnly);
        if (row.kind == Kind::Tabs || row.kind == Kind::Combo)
            field.lclItems = ItemsOf(row.caption, *this);
        if (row.kind == Kind::Tabs && !field.lclItems.empty())
            field.lclSelected = {field.lclItems.front().id};
    }
    ShowCaptions();
}

Form::~Form() {
    if (lclView) lclView->Close();
}

Field& Form::operator[](std::string_view name) {
    for (Field& field : lclFields)
        if (field.Name() == name) return field;
    throw platform::Error(platform::errors::invalidArgument,
                          "The form has no field " + std::string(name),
                          std::string(lclLayout.name));
}

void Form::ShowCaptions() {
    for (Field& field : lclFields) {
        if (lclView && !field.Row().columns.empty()) lclView->Show(field, Aspect::Text);
        if (!field.lclOwnText || !ShowsItsCaption(field.Type())) continue;
        field.SetText(Text(field.Row().caption));
        field.lclOwnText = true;
    }
    if (!lclOwnCaption) return;
    SetCaption(Text(lclLayout.caption));
    lclOwnCaption = true;
}

void Form::SetTranslate(std::shared_ptr<Translator> translator) {
    lclTranslator = std::move(translator);
    ShowCaptions();
}

void Form::SetCaption(std::string_view caption) {
    lclOwnCaption = false;
    lclCaption = caption;
    if (lclView) lclView->ShowCaption();
}

std::string Form::Text(std::string_view text, const std::vector<std::string>& values) const {
    if (text.empty()) return {};
    return lclTranslator ? lclTranslator->Translate(text, values)
                         : platform::FillPlaceholders(text, values);
}

void Form::On(std::string_view field, What what, Handler handler) {
    const Field* of = &(*this)[field];
    std::erase_if(lclHandlers, [&](const Row& row) { return row.field == of && row.what == what; });
    lclHandlers.push_back({of, what, std::move(handler)});
}

const Form::Handler* Form::HandlerOf(const Field& field, What what) const {
    for (const Row& row : lclHandlers)
        if (row.field == &field && row.what == what) return &row.handler;
    return nullptr;
}

bool Form::Handles(const Field& field, What what) const { return HandlerOf(field, what); }

bool Form::Guarded(const std::function<void()>& work) {
    try {
        work();
        return true;
    } catch (const std::exception& error) {
        std::string text = error.what();
        if (const auto* ours = dynamic_cast<const platform::Error*>(&error))
            text = std::to_string(platform::ShownNumber(ours->Number())) + " " + text;
        const std::string name(lclLayout.name);
        lclWorkstation.log.Write(name, text);
        lclWorkstation.messages.Show(
            {text, Text("Error in $%$", {name}), platform::Buttons::Ok, platform::Icon::Critical});
        return false;
    }
}

bool Form::Raise(FieldEvent* event) {
    const Handler* handler = HandlerOf(event->field, event->what);
    if (!handler) return false;
    const Handler held = *handler; // it may set another one
    return Guarded([&] { held(*event); }) && !event->refused;
}

void Form::Close(bool result) {
    if (lclClosed) return;
    lclClosed = true;
    lclResult = result;
    if (lclView) lclView->Close();
}

void Form::Attach(FormView* view) {
    lclView = view;
    if (view) lclClosed = lclResult = false;
}

const Field* Form::Holder(const Field& field) const {
    for (const Field& other : lclFields)
        if (!field.Row().on.empty() && other.Name() == field.Row().on) return &other;
    return nullptr;
}

bool Form::IsShown(const Field& field) const {
    if (!field.Visible()) return false;
    const Field* holder = Holder(field);
    if (!holder) return true;
    return IsShown(*holder) &&
           (holder->Type() != Kind::Tabs || holder->Selected() == field.Row().page);
}

bool Form::IsUsable(const Field& field) const {
    const Field* holder = Holder(field);
    return field.Enabled() && (!holder || IsUsable(*holder));
}

void Form::ClearGroup(const Field& option) {
    std::vector<Field*> members;
    bool here = false;
    for (Field& field : lclFields) {
        if (field.Type() != Kind::Option) continue;
        if (field.Row().Has(style::group)) {
            if (here) break;
            members.clear();
        }
        members.push_back(&field);
        here = here || &field == &option;
    }
    for (Field* member : members)
        if (member != &option) member->SetChecked(false);
}

void Form::Typed(Field& field, std::string_view text) {
    if (text == field.lclText) return;
    field.lclText = text;
    if (field.Type() == Kind::Combo) {
        const auto same = std::find_if(field.lclItems.begin(), field.lclItems.end(),
                                       [&](const Item& item) { return item.Cell() == text; });
        field.lclSelected.clear();
        if (same != field.lclItems.end()) field.lclSelected = {same->id};
    }
    Raise({.field = field, .what = What::Changed});
}

void Form::Clicked(Field& field) {
    if (HandlerOf(field, What::Clicked)) {
        Raise({.field = field, .what = What::Clicked});
        return;
    }
    if (field.Row().Has(style::isDefault)) Close(true);
    if (field.Row().Has(style::isCancel) && (!mayCancel || mayCancel())) Close(false);
}

void Form::Toggled(Field& field, bool checked) {
    if (checked == field.lclChecked) return;
    field.SetChecked(checked);
    Raise({.field = field, .what = What::Changed});
}

void Form::Chosen(Field& field, std::vector<std::int32_t> ids) {
    if (ids == field.lclSelected) return;
    field.lclSelected = std::move(ids);
    if (field.Type() == Kind::Combo && field.Selected())
        field.lclText = field.Find(field.Selected())->Cell();
    // Pages show other fields.
    if (field.Type() == Kind::Tabs) field.Show(Aspect::State);
    Raise({.field = field, .what = What::Changed, .item = field.Selected()});
}

void Form::ItemChecked(Field& field, std::int32_t id, bool checked) {
    for (Item& item : field.lclItems)
        if (item.id == id && item.checked != checked) {
            item.checked = checked;
            Raise({.field = field, .what = What::Checked, .item = id});
            return; // the handler may have changed the items
        }
}

void Form::ItemExpanded(Field& field, std::int32_t id, bool expanded) {
    for (Item& item : field.lclItems)
        if (item.id == id && item.expanded != expanded) {
            item.expanded = expanded;
            Raise(
                {.field = field, .what = expanded ? What::Expanding : What::Collapsed, .item = id});
            return;
        }
}

bool Form::ItemEdited(Field& field, std::int32_t id, int column, std::string_view text) {
    const Item* known = field.Find(id);
    const auto of = static_cast<std::size_t>(column);
    if (!known || known->Cell(of) == text) return false;
    FieldEvent event{.field = field,
                     .what = What::Edited,
                     .item = id,
                     .column = column,
                     .text = std::string(text)};
    if (HandlerOf(field, What::Edited) && !Raise(&event)) return false;
    known = field.Find(id);
    if (!known) return false;
    Item changed = *known;
    if (changed.texts.size() <= of) changed.texts.resize(of + 1);
    changed.texts[of] = text;
    field.ChangeItem(std::move(changed));
    return true;
}

void Form::HeadingClicked(Field& field, int column) {
    FieldEvent event{.field = field, .what = What::Heading, .column = column};
    if (HandlerOf(field, What::Heading) && !Raise(&event)) return;
    if (!field.Row().Has(style::sorts)) return;
    field.Sort(column, column == field.lclSortColumn && !field.lclSortDescending);
}

void Form::Cancelled() {
    for (Field& field : lclFields)
        if (field.Row().Has(style::isCancel)) {
            if (IsShown(field) && IsUsable(field)) Clicked(field);
            return;
        }
    if (!mayCancel || mayCancel()) Close(false);
}

} // namespace kavidex::controls::forms
