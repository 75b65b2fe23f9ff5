#include "controls/viewer/external/ctrlExtViewer.h"

#include <algorithm>

#include "model/Store.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

std::span<const Property<ExtViewerProperties>> ExtViewerPropertyTable() {
    using P = ExtViewerProperties;
    static constexpr Property<P> table[] = {
        {"Id", &P::Id, 0}, {"AllowMultipleDocScroll", &P::AllowMultipleDocScroll, false}};
    return table;
}

thread_local std::vector<ctrlExtViewer*> ctrlExtViewer::lclAll;

ctrlExtViewer::ctrlExtViewer(const platform::Workstation& workstation)
    : lclWorkstation(workstation) {
    lclAll.push_back(this);
}

ctrlExtViewer::~ctrlExtViewer() {
    std::erase(lclAll, this);
    lclSubscriptions.clear();
}

// --- Properties ---------------------------------------------------------------------------------

void ctrlExtViewer::Change(std::int32_t id) {
    if (Assign(lclState, &ExtViewerProperties::Id, id)) PropertyChanged.Raise("Id");
}

void ctrlExtViewer::SetId(std::int32_t id) {
    Change(id);
    if (lclViewerForm && lclViewerForm->Id() != id) ShowItemFromId(id);
}

void ctrlExtViewer::SetAllowMultipleDocScroll(bool allow) {
    if (!Assign(lclState, &ExtViewerProperties::AllowMultipleDocScroll, allow)) return;
    if (lclViewerForm) lclViewerForm->SetAllowMultipleDocScroll(allow);
    PropertyChanged.Raise("AllowMultipleDocScroll");
}

void ctrlExtViewer::SetTranslate(std::shared_ptr<Translator> translator) {
    lclTranslator = std::move(translator);
    if (lclViewerForm) lclViewerForm->SetTranslate(lclTranslator);
}

void ctrlExtViewer::SetDbConnection(data::ConnectionPtr connection) {
    if (connection == lclConnection) return;
    CloseForm(); // what it shows belongs to the other database
    lclConnection = std::move(connection);
    if (lclViewerForm) lclViewerForm->SetDbConnection(lclConnection);
}

void ctrlExtViewer::SetUserAuth(std::shared_ptr<model::clsUserAuth> rights) {
    lclUserAuth = std::move(rights);
    if (lclViewerForm) lclViewerForm->Viewer().SetUserAuth(lclUserAuth);
}

void ctrlExtViewer::LoadProperties(PropertyBag& bag) {
    controls::LoadProperties(ExtViewerPropertyTable(), lclState, bag);
}

void ctrlExtViewer::SaveProperties(PropertyBag& bag) const {
    controls::SaveProperties(ExtViewerPropertyTable(), lclState, bag);
}

// --- The window ---------------------------------------------------------------------------------

// False: it was closed while it opened.
bool ctrlExtViewer::Need() {
    if (lclViewerForm) return true;
    ForgetGone();
    lclViewerForm = std::make_shared<frmViewer>(lclWorkstation);
    const auto made = lclViewerForm;
    auto& form = *made;
    form.SetTranslate(lclTranslator);
    form.SetDbConnection(lclConnection);
    form.Viewer().SetUserAuth(lclUserAuth);
    form.Viewer().SetAcceptsType(lclAcceptsType);
    form.SetAllowMultipleDocScroll(lclState.AllowMultipleDocScroll);
    Subscribe();
    form.Open(lclMaker);
    return lclViewerForm == made;
}

void ctrlExtViewer::ForgetGone() {
    std::erase_if(lclGone, [](const auto& form) { return !form->Viewer().Busy(); });
}

void ctrlExtViewer::Subscribe() {
    lclSubscriptions.clear();
    const auto keep = [&](std::shared_ptr<void> token) {
        lclSubscriptions.push_back(std::move(token));
    };
    auto& form = *lclViewerForm;
    keep(form.EvOpenDossier.Subscribe([this](const std::string& key, const std::string& type) {
        EvOpenDossier.Raise(key, type);
    }));
    keep(form.ExternalViewerOpened.Subscribe([this] { ExternalViewerOpened.Raise(); }));
    keep(form.EvExportPages.Subscribe(
        [this](const std::string& file, const std::vector<std::int32_t>& pages, bool& done) {
            EvExportPages.Raise(file, pages, done);
        }));
    keep(form.EvNextDocumentRequest.Subscribe([this] { EvNextDocumentRequest.Raise(); }));
    keep(form.EvPreviousDocumentRequest.Subscribe([this] { EvPreviousDocumentRequest.Raise(); }));
    keep(form.Viewer().Shown.Subscribe([this] { Shown.Raise(); }));
    keep(form.EvUnload.Subscribe([this] { Unloaded(); }));
}

// Where the workstation wants it so, all these windows close together.
void ctrlExtViewer::Unloaded() {
    ForgetGone();
    lclGone.push_back(std::move(lclViewerForm)); // it is its own event, and the end of its window
    EvUnload.Raise();
    Shown.Raise();
    if (!platform::GetRegFlag(lclWorkstation, "ViewerSettings", "CloseAll")) return;
    const auto others = lclAll;
    for (auto* other : others)
        if (std::find(lclAll.begin(), lclAll.end(), other) != lclAll.end()) other->CloseForm();
}

bool ctrlExtViewer::ShowItem(const ItemPtr& item) {
    if (!item || !Need()) return false;
    const auto form = lclViewerForm;
    const bool shown = form->ShowItem(item);
    Change(item->Id());
    if (lclViewerForm && lclViewerForm->Window()) lclViewerForm->Window()->Show();
    return shown && lclViewerForm == form;
}

bool ctrlExtViewer::ShowItemFromId(std::int32_t id) {
    try {
        const auto row = model::Store(lclConnection)
                             .Read("Select Type, ItemId, Description from tblTreeItem where "
                                   "TreeItemId = " +
                                   model::Number(id));
        if (row->Eof()) return false;
        return ShowItem(std::make_shared<model::clsItem>(
            id, model::TrimmedText(row->Get("Type")), data::ToInt32(row->Get("ItemId")),
            model::TrimmedText(row->Get("Description")), lclConnection));
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("ShowItemFromId", error.what());
        const auto* ours = dynamic_cast<const platform::Error*>(&error);
        const auto number = platform::ShownNumber(ours ? ours->Number() : platform::errors::fail);
        lclWorkstation.messages.Show(
            {std::to_string(number) + " " + error.what(),
             data::Translated(TranslationBy(lclTranslator), "Error in $%$", {"ShowItemFromId"}),
             platform::Buttons::Ok, platform::Icon::Critical});
        return false;
    }
}

void ctrlExtViewer::SetFocus() {
    if (lclViewerForm && lclViewerForm->Window()) lclViewerForm->Window()->SetFocus();
}

void ctrlExtViewer::Show() {
    if (Need() && lclViewerForm->Window()) lclViewerForm->Window()->Show();
}

bool ctrlExtViewer::DeleteSelectedThumbs() {
    return lclViewerForm && lclViewerForm->DeleteSelectedThumbs();
}

bool ctrlExtViewer::CloseForm() {
    if (!lclViewerForm) return true;
    const auto form = lclViewerForm;
    if (form->Window()) {
        form->Window()->Close();
    } else if (form->MayClose()) {
        form->Closed();
    }
    return lclViewerForm != form;
}

} // namespace kavidex::controls
