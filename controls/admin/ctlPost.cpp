#include "controls/admin/ctlPost.h"

#include <algorithm>

#include "controls/pictures/IconKeys.h"
#include "controls/viewer/ctlViewer.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Log.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::Column;
using forms::FieldRow;
using forms::Item;
using forms::Kind;
using forms::What;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr int insertKey = 0x2D, deleteKey = 0x2E;

constexpr Column waitingColumns[] = {{"Document", 96}, {"Soort", 0}};
constexpr Column givenColumns[] = {
    {"Document", 96}, {"Uitgedeeld", 70}, {"Geopend", 40}, {"Opmerking", 0}};

constexpr FieldRow fields[] = {
    {"lblWaiting", Kind::Label, {6, 6, 150, 9}, "Te verdelen post:"},
    {"lstWaiting",
     Kind::List,
     {6, 17, 150, 100},
     "",
     anchor::leftTop,
     style::multi | style::drags | style::sorts,
     {},
     0,
     waitingColumns},
    {"lblUsers", Kind::Label, {162, 6, 130, 9}, "Gebruikers en groepen:"},
    {"treUsers", Kind::Tree, {162, 17, 130, 100}, "", anchor::leftTop},
    {"lblRemark", Kind::Label, {6, 124, 52, 9}, "Opmerking:"},
    {"txtRemark", Kind::Edit, {60, 122, 152, 13}},
    {"btnGive", Kind::Button, {216, 122, 76, 14}, "Uitdelen"},
    {"lblGiven", Kind::Label, {6, 142, 286, 9}, "Uitgedeelde post:"},
    {"lstGiven",
     Kind::List,
     {6, 153, 286, 74},
     "",
     anchor::tall,
     style::multi | style::drags,
     {},
     0,
     givenColumns},
    {"btnAdd", Kind::Button, {6, 232, 80, 14}, "Bestanden toevoegen...", anchor::leftBottom},
    {"btnTakeBack", Kind::Button, {216, 232, 76, 14}, "Terugnemen", anchor::leftBottom},
    {"panViewer", Kind::Pane, {298, 6, 176, 221}, "Document", anchor::all},
    {"btnSave", Kind::Button, {298, 232, 54, 14}, "Opslaan", anchor::rightBottom, style::hidden},
    {"btnUndo",
     Kind::Button,
     {356, 232, 60, 14},
     "Ongedaan maken",
     anchor::rightBottom,
     style::hidden},
    {"btnClose",
     Kind::Button,
     {424, 232, 50, 14},
     "Sluiten",
     anchor::rightBottom,
     style::isCancel | style::hidden},
};
constexpr forms::Layout layout = {"ctlPost", "Postverdeling", 480, 252, true, fields};

// Only users take post; a group shows those that it has.
constexpr std::string_view giveRight = "EditDossiers";

} // namespace

ctlPost::ctlPost(const platform::Workstation& workstation)
    : AdminControl(layout, workstation, giveRight),
      lclViewer(std::make_unique<ctlViewer>(workstation)) {
    auto& form = Form();
    const auto buttons = [this](forms::FieldEvent&) { ShowButtonsOfPost(); };
    form.On("lstWaiting", What::Changed, [this](forms::FieldEvent& event) { ShowDocument(event); });
    form.On("lstGiven", What::Changed, [this](forms::FieldEvent& event) { ShowDocument(event); });
    form.On("treUsers", What::Changed, [this](forms::FieldEvent&) {
        Guarded([this] {
            lclGiven.clear();
            if (const auto* user = ChosenUser(); user && lclBoxes.contains(user->id))
                lclGiven = model::PostIn(model::Store(DbConnection()), lclBoxes[user->id].folder);
        });
        ShowBox();
    });
    form.On("txtRemark", What::Changed, buttons);
    form.On("btnGive", What::Clicked, [this](forms::FieldEvent&) {
        if (const auto* user = ChosenUser()) Give(Form()["lstWaiting"].SelectedItems(), user->id);
    });
    form.On("lstWaiting", What::Key, [this](forms::FieldEvent& event) {
        event.refused = event.key != insertKey;
        if (!event.refused)
            if (const auto* user = ChosenUser())
                Give(Form()["lstWaiting"].SelectedItems(), user->id);
    });
    form.On("btnTakeBack", What::Clicked,
            [this](forms::FieldEvent&) { TakeBack(Form()["lstGiven"].SelectedItems()); });
    form.On("lstGiven", What::Key, [this](forms::FieldEvent& event) {
        event.refused = event.key != deleteKey;
        if (!event.refused) TakeBack(Form()["lstGiven"].SelectedItems());
    });
    form.On("treUsers", What::DragOver, [this](forms::FieldEvent& event) {
        const auto user = std::find_if(lclHolders.begin(), lclHolders.end(),
                                       [&](const auto& h) { return h.id == event.item; });
        event.refused = event.source != &Form()["lstWaiting"] || user == lclHolders.end() ||
                        user->isGroup || !MayChange();
    });
    form.On("treUsers", What::Dropped,
            [this](forms::FieldEvent& event) { Give(event.dragged, event.item); });
    form.On("lstWaiting", What::DragOver, [this](forms::FieldEvent& event) {
        event.refused = event.source != &Form()["lstGiven"] || !MayChange();
    });
    form.On("lstWaiting", What::Dropped,
            [this](forms::FieldEvent& event) { TakeBack(event.dragged); });
    form.On("btnAdd", What::Clicked, [this](forms::FieldEvent&) { AddFiles(); });
    Show();
}

// The window in the pane goes before what it shows.
ctlPost::~ctlPost() { Form()["panViewer"].SetPane(nullptr); }

// --- What is shown ------------------------------------------------------------------------------

void ctlPost::Read() {
    lclPlace = {};
    lclFolder = 0;
    lclHolders.clear();
    lclBoxes.clear();
    lclWaiting.clear();
    lclGiven.clear();
    lclTree.reset();
    lclViewer->ShowItem(nullptr);
    lclViewer->SetDbConnection(DbConnection());
    if (!DbConnection()) return;
    const model::Store store(DbConnection());
    lclHolders = model::LoadHolders(Machine(), store);
    lclPlace = model::FindUserTree(Machine(), store);
    lclBoxes = model::PostBoxes(store, lclPlace);
    lclFolder = model::PostFolder(Machine(), store, lclPlace, {});
    lclWaiting = model::PostIn(store, lclFolder);
    if (const auto* user = ChosenUser(); user && lclBoxes.contains(user->id))
        lclGiven = model::PostIn(store, lclBoxes[user->id].folder);
}

void ctlPost::Show() {
    lclViewer->SetTranslate(Translate());
    lclViewer->SetUserAuth(UserAuth());
    std::vector<Item> users, waiting;
    for (const auto& holder : lclHolders) {
        const auto box = lclBoxes.find(holder.id);
        Item item;
        item.id = holder.id;
        item.texts = {box == lclBoxes.end() || box->second.count == 0
                          ? holder.name
                          : holder.name + " (" + std::to_string(box->second.count) + ")"};
        item.parent = holder.group;
        item.icon = holder.isGroup ? "Users" : "SelectedUser";
        item.expanded = true;
        users.push_back(std::move(item));
    }
    for (const auto& post : lclWaiting)
        waiting.push_back({post.id, {post.description, post.type}, 0, FileIconKey(post.type)});
    Form()["treUsers"].SetItems(std::move(users));
    Form()["lstWaiting"].SetItems(std::move(waiting));
    ShowBox();
}

void ctlPost::ShowBox() {
    std::vector<Item> given;
    for (const auto& post : lclGiven)
        given.push_back({post.id,
                         {post.description, post.on + " " + post.by,
                          Text(post.opened ? "Ja" : "Nee"), post.remark},
                         0,
                         FileIconKey(post.type)});
    Form()["lstGiven"].SetItems(std::move(given));
    ShowButtonsOfPost();
}

void ctlPost::ShowButtonsOfPost() {
    auto& form = Form();
    const bool may = MayChange();
    form["btnGive"].SetEnabled(may && ChosenUser() && form["lstWaiting"].Selected());
    form["btnTakeBack"].SetEnabled(may && form["lstGiven"].Selected());
    form["btnAdd"].SetEnabled(may && Presenter());
}

// What its own user looks at is opened from then on.
void ctlPost::ShowDocument(forms::FieldEvent& event) {
    const auto chosen = event.field.Selected();
    const bool given = &event.field == &Form()["lstGiven"];
    Guarded([&] {
        lclViewer->ShowItem(nullptr);
        const auto& list = given ? lclGiven : lclWaiting;
        const auto post = std::find_if(list.begin(), list.end(),
                                       [&](const auto& one) { return one.id == chosen; });
        if (post == list.end()) return;
        const auto shown = std::make_shared<model::clsItem>(post->id, post->type, post->document,
                                                            post->description, DbConnection());
        lclViewer->ShowItem(shown);
        const auto* user = ChosenUser();
        if (!given || post->opened || !user || !IsOwn(*user)) return;
        const model::Store store(DbConnection());
        model::Transaction transaction(store, Machine());
        model::MarkPostOpened(Machine(), store, chosen);
        transaction.Commit();
    });
    ShowButtonsOfPost();
}

const model::RightsHolder* ctlPost::ChosenUser() const {
    const auto id = const_cast<ctlPost*>(this)->Form()["treUsers"].Selected();
    const auto found = std::find_if(lclHolders.begin(), lclHolders.end(),
                                    [&](const auto& holder) { return holder.id == id; });
    return found == lclHolders.end() || found->isGroup ? nullptr : &*found;
}

bool ctlPost::IsOwn(const model::RightsHolder& user) const {
    return platform::EqualNoCase(user.name, Machine().user.Name());
}

// --- What the user does -------------------------------------------------------------------------

void ctlPost::Act(const std::function<model::PostResult(const model::Store&)>& act) {
    auto result = model::PostResult::Done;
    const bool went = Guarded([&] {
        const model::Store store(DbConnection());
        model::Transaction transaction(store, Machine());
        result = act(store);
        if (result == model::PostResult::Done) transaction.Commit();
    });
    Refresh();
    if (went && result == model::PostResult::Gone)
        Tell("Een van de documenten is intussen verplaatst, geopend of verwijderd. Er is niets "
             "gewijzigd.");
    else if (went)
        EvSaved.Raise();
}

void ctlPost::Give(std::vector<std::int32_t> items, std::int32_t user) {
    const auto to = std::find_if(lclHolders.begin(), lclHolders.end(),
                                 [&](const auto& holder) { return holder.id == user; });
    if (items.empty() || to == lclHolders.end() || to->isGroup || !MayChange()) return;
    const auto receiver = *to;
    const auto remark = platform::Trim(Form()["txtRemark"].Text());
    Act([&](const model::Store& store) {
        return model::GivePost(Machine(), store, lclPlace, lclFolder, items, receiver, remark);
    });
}

void ctlPost::TakeBack(std::vector<std::int32_t> items) {
    const auto* user = ChosenUser();
    if (items.empty() || !user || !lclBoxes.contains(user->id) || !MayChange()) return;
    const auto box = lclBoxes[user->id].folder;
    Act([&](const model::Store& store) {
        return model::TakePostBack(store, box, items, lclFolder);
    });
}

// Files come in as documents that belong to no dossier yet.
void ctlPost::AddFiles() {
    auto* const dialogs = Presenter();
    if (!dialogs || !MayChange()) return;
    const auto files = dialogs->ChooseFiles(Text("Bestanden toevoegen..."), {});
    if (files.empty()) return;
    std::string failed;
    Guarded([&] {
        const model::Store store(DbConnection());
        model::Transaction transaction(store, Machine());
        lclPlace = model::MakeUserTree(Machine(), store, Text("Gebruikers en groepen"));
        lclFolder = model::PostFolder(Machine(), store, lclPlace, Text("Post"));
        transaction.Commit();
        model::clsTree tree(Machine());
        tree.SetDbConnection(DbConnection());
        tree.SetTreeId(lclPlace.tree);
        for (const auto& file : files) {
            model::FilingRequest request;
            request.source = file;
            request.folderId = lclFolder;
            const auto filed = model::FileDocument(Machine(), tree, request);
            if (!filed) failed += (failed.empty() ? "" : "\n") + filed.error;
        }
    });
    Refresh();
    if (failed.empty()) return EvSaved.Raise();
    Machine().log.Write("ctlPost", failed);
    Tell("Niet alle bestanden zijn toegevoegd: $%$", {failed});
}

} // namespace kavidex::controls
