#include "controls/admin/ctlPost.h"

#include <algorithm>

#include "controls/pictures/IconKeys.h"
#include "controls/viewer/ctlViewer.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/clsUserAuth.h"
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

constexpr Column waitingColumns[] = {{"Document", 0}, {"Soort", 34}};
constexpr Column givenColumns[] = {
    {"Document", 80}, {"Uitgedeeld", 86}, {"Geopend", 40}, {"Opmerking", 0}};
constexpr std::size_t openedColumn = 2;

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
    {"btnAdd", Kind::Button, {6, 232, 84, 14}, "Bestanden toevoegen...", anchor::leftBottom},
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
     style::isCancel | style::hidden | style::givesRoom},
};
constexpr forms::Layout layout = {"ctlPost", "Postverdeling", 480, 252, true, fields};

} // namespace

ctlPost::ctlPost(const platform::Workstation& workstation)
    : AdminControl(layout, workstation, "ReadDossiers", "EditDossiers"),
      lclViewer(std::make_unique<ctlViewer>(workstation)) {
    On("lstWaiting", What::Changed, &ctlPost::ShowDocument);
    On("lstWaiting", What::Key, &ctlPost::WaitingKey);
    On("lstWaiting", What::DragOver, &ctlPost::OverWaiting);
    On("lstWaiting", What::Dropped, &ctlPost::DropOnWaiting);
    On("treUsers", What::Changed, &ctlPost::ChooseReceiver);
    On("treUsers", What::DragOver, &ctlPost::OverReceiver);
    On("treUsers", What::Dropped, &ctlPost::DropOnReceiver);
    On("btnGive", What::Clicked, &ctlPost::GiveChosen);
    On("lstGiven", What::Changed, &ctlPost::ShowDocument);
    On("lstGiven", What::Key, &ctlPost::GivenKey);
    On("btnAdd", What::Clicked, &ctlPost::AddFiles);
    On("btnTakeBack", What::Clicked, &ctlPost::TakeChosenBack);
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
    lclViewer->ShowItem(nullptr);
    lclViewer->SetDbConnection(DbConnection());
    if (!MaySee()) return;
    const model::Store store(DbConnection());
    lclHolders = model::LoadHolders(Machine(), store);
    lclPlace = model::FindUserTree(Machine(), store);
    lclBoxes = model::PostBoxes(store, lclPlace);
    lclFolder = model::PostFolder(Machine(), store, lclPlace, {});
    lclWaiting = model::PostIn(store, lclFolder);
    lclGiven = GivenToChosen();
}

std::vector<model::PostItem> ctlPost::GivenToChosen() const {
    return model::PostIn(model::Store(DbConnection()), BoxOf(Chosen()));
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
    form["btnGive"].SetEnabled(may && Chosen() && form["lstWaiting"].Selected());
    form["btnTakeBack"].SetEnabled(may && form["lstGiven"].Selected());
    form["btnAdd"].SetEnabled(may && Presenter());
}

// What one of its own users looks at is opened from then on.
void ctlPost::ShowDocument(forms::FieldEvent& event) {
    const auto chosen = event.field.Selected();
    const bool given = &event.field == &Form()["lstGiven"];
    auto& list = given ? lclGiven : lclWaiting;
    const auto post =
        std::find_if(list.begin(), list.end(), [&](const auto& one) { return one.id == chosen; });
    const auto* receiver = Chosen();
    const bool opens = given && post != list.end() && !post->opened && receiver && IsOwn(*receiver);
    if (opens && !MarkOpened(*post)) return;
    Guarded([&] {
        lclViewer->ShowItem(nullptr);
        if (post != list.end())
            lclViewer->ShowItem(std::make_shared<model::clsItem>(
                post->id, post->type, post->document, post->description, DbConnection()));
    });
    ShowButtonsOfPost();
}

// Where it cannot be written, the document is shown all the same.
bool ctlPost::MarkOpened(model::PostItem& post) {
    auto result = model::PostResult::Done;
    Guarded([&] {
        const model::Store store(DbConnection());
        model::Transaction transaction(store, Machine());
        result = model::MarkPostOpened(Machine(), store, BoxOf(Chosen()), post.id);
        if (result != model::PostResult::Done) return;
        transaction.Commit();
        post.opened = true;
        if (auto item = *Form()["lstGiven"].Find(post.id); item.texts.size() > openedColumn) {
            item.texts[openedColumn] = Text("Ja");
            Form()["lstGiven"].ChangeItem(std::move(item));
        }
    });
    if (result == model::PostResult::Done) return true;
    Refresh();
    TellGone();
    return false;
}

const model::RightsHolder* ctlPost::Find(std::int32_t id) const {
    const auto found = std::find_if(lclHolders.begin(), lclHolders.end(),
                                    [&](const auto& holder) { return holder.id == id; });
    return found == lclHolders.end() ? nullptr : &*found;
}

const model::RightsHolder* ctlPost::Chosen() const {
    return Find(const_cast<ctlPost*>(this)->Form()["treUsers"].Selected());
}

model::NodeId ctlPost::BoxOf(const model::RightsHolder* receiver) const {
    const auto box = receiver ? lclBoxes.find(receiver->id) : lclBoxes.end();
    return box == lclBoxes.end() ? 0 : box->second.folder;
}

// By the name that the host's rights are for, or by the system's.
bool ctlPost::IsMe(const model::RightsHolder& user) const {
    return platform::EqualNoCase(user.name, Machine().user.Name()) ||
           (UserAuth() && platform::EqualNoCase(user.name, UserAuth()->UserId()));
}

bool ctlPost::IsOwn(const model::RightsHolder& receiver) const {
    if (!receiver.isGroup) return IsMe(receiver);
    return std::any_of(lclHolders.begin(), lclHolders.end(), [&](const auto& user) {
        return !user.isGroup && IsMe(user) && model::IsWithin(lclHolders, user.id, receiver.id);
    });
}

// --- What the user does -------------------------------------------------------------------------

void ctlPost::ChooseReceiver() {
    lclGiven.clear();
    Guarded([&] { lclGiven = GivenToChosen(); });
    ShowBox();
}

void ctlPost::WaitingKey(forms::FieldEvent& event) {
    event.refused = event.key != insertKey;
    if (!event.refused) GiveChosen();
}

void ctlPost::GivenKey(forms::FieldEvent& event) {
    event.refused = event.key != deleteKey;
    if (!event.refused) TakeChosenBack();
}

void ctlPost::OverReceiver(forms::FieldEvent& event) {
    event.refused = event.source != &Form()["lstWaiting"] || !Find(event.item) || !MayChange();
}

void ctlPost::DropOnReceiver(forms::FieldEvent& event) { Give(event.dragged, event.item); }

void ctlPost::OverWaiting(forms::FieldEvent& event) {
    event.refused = event.source != &Form()["lstGiven"] || !MayChange();
}

void ctlPost::DropOnWaiting(forms::FieldEvent& event) { TakeBack(event.dragged); }

void ctlPost::GiveChosen() {
    if (const auto* receiver = Chosen()) Give(Form()["lstWaiting"].SelectedItems(), receiver->id);
}

void ctlPost::TakeChosenBack() { TakeBack(Form()["lstGiven"].SelectedItems()); }

void ctlPost::TellGone() const {
    Tell("Een van de documenten is intussen verplaatst, geopend of verwijderd. Er is niets "
         "gewijzigd.");
}

void ctlPost::Act(const std::function<model::PostResult(const model::Store&)>& act) {
    auto result = model::PostResult::Done;
    const bool went = Guarded([&] {
        const model::Store store(DbConnection());
        model::Transaction transaction(store, Machine());
        result = act(store);
        if (result == model::PostResult::Done) transaction.Commit();
    });
    Refresh();
    if (!went) return;
    switch (result) {
    case model::PostResult::Done: EvSaved.Raise(); break;
    case model::PostResult::Gone: TellGone(); break;
    case model::PostResult::NoReceiver:
        Tell("Deze ontvanger is intussen verwijderd. Er is niets gewijzigd.");
        break;
    }
}

void ctlPost::Give(std::vector<std::int32_t> items, std::int32_t receiver) {
    const auto* to = Find(receiver);
    if (items.empty() || !to || !MayChange()) return;
    const auto remark = platform::Trim(Form()["txtRemark"].Text());
    if (!model::FitsAsRemark(remark)) return Tell("De opmerking is te lang");
    Act([&, holder = *to](const model::Store& store) {
        return model::GivePost(Machine(), store, lclPlace, lclFolder, items, holder, remark);
    });
}

void ctlPost::TakeBack(std::vector<std::int32_t> items) {
    const auto box = BoxOf(Chosen());
    if (items.empty() || box == 0 || !MayChange()) return;
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
    const bool went = Guarded([&] {
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
    if (!went) return;
    if (failed.empty()) return EvSaved.Raise();
    Machine().log.Write("ctlPost", failed);
    Tell("Niet alle bestanden zijn toegevoegd: $%$", {failed});
}

} // namespace kavidex::controls
