// Construction, properties, and what is handed down to the children.
#include "controls/binder/ctrlCorrespondence.h"

#include "controls/binder/BinderWindow.h"
#include "controls/binder/IntakeWiring.h"
#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/checklist/ctlChecklist.h"
#include "controls/common/OwnTranslator.h"
#include "controls/mailing/DossierMail.h"
#include "controls/mailing/FileInTree.h"
#include "controls/settings/frmSettings.h"
#include "controls/splitter/ctlSplitPanel.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "data/AdoFactory.h"
#include "data/ConnectionAssignment.h"
#include "data/logText.h"
#include "data/schema/AccessRepair.h"
#include "model/clsItem.h"
#include "model/clsUserAuth.h"
#include "model/filing.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

// Properties that the tree control has under the same name.
template <class Type>
struct PassedOn {
    Type BinderProperties::*from;
    void (ctrlTree::*to)(const Type&);
};

using P = BinderProperties;
constexpr PassedOn<bool> flags[] = {
    {&P::Enabled, &ctrlTree::SetEnabled},
    {&P::ShowParentsOnly, &ctrlTree::SetShowParentsOnly},
    {&P::ShowExternalViewer, &ctrlTree::SetShowExternalViewer},
    {&P::SelectItems, &ctrlTree::SetSelectItems},
    {&P::ShowDescriptionsInToolTip, &ctrlTree::SetShowDescriptionsInToolTip},
};
constexpr PassedOn<std::int32_t> colours[] = {
    {&P::BackColor, &ctrlTree::SetBackColor},
    {&P::ForeColor, &ctrlTree::SetForeColor},
};
constexpr PassedOn<std::int16_t> styles[] = {
    {&P::BackStyle, &ctrlTree::SetBackStyle},
    {&P::BorderStyle, &ctrlTree::SetBorderStyle},
    {&P::OLEDropMode, &ctrlTree::SetOLEDropMode},
};
constexpr PassedOn<std::string> texts[] = {
    {&P::TypeForInsert, &ctrlTree::SetTypeForInsert},
    {&P::DossierType, &ctrlTree::SetDossierType},
    {&P::ValueFile, &ctrlTree::SetValueFile},
    {&P::EmailAddress, &ctrlTree::SetEmailAddress},
};

template <class Rows>
void PassOn(const Rows& rows, const BinderProperties& state, ctrlTree& tree) {
    for (const auto& row : rows) (tree.*row.to)(state.*row.from);
}

} // namespace

ctrlCorrespondence::ctrlCorrespondence(const platform::Workstation& workstation,
                                       std::shared_ptr<data::AdoFactory> ado,
                                       std::shared_ptr<data::AccessRepair> repair,
                                       IntakeComponents components)
    : lclWorkstation(workstation), lclAdo(std::move(ado)), lclRepair(std::move(repair)),
      lclRights(workstation, [this] { Tell("De rechten kunnen niet gelezen worden"); }),
      lclLock(workstation), lclTree(std::make_unique<ctrlTree>(workstation)),
      lclViewer(std::make_unique<ctlViewer>(workstation)),
      lclExtViewer(std::make_unique<ctrlExtViewer>(workstation)),
      lclSplitPanel(std::make_unique<ctlSplitPanel>()),
      lclChecklist(std::make_unique<ctlChecklist>(workstation)),
      lclSpCheckList(std::make_unique<ctlSplitPanel>()) {
    lclState.Language = LanguageOption(workstation);
    lclTree->Serve(lclLock, [this] { return DossierKey(); });
    data::ConnectionListeners listeners;
    listeners.leaving = [this] { Guarded("DbConnection", [&] { EndEveryDossier(); }); };
    listeners.changed = [this] { PropertyChanged.Raise("DbConnection"); };
    listeners.handOver = [this](const data::ConnectionPtr& given) { ConnectionHandedOver(given); };
    listeners.ready = [this](const data::ConnectionPtr&) {
        lclState.TemplatePath = lclAssignment->TemplatePath();
        if (lclOwnTranslator) { // its rows may be new
            lclOwnTranslator->SetDbConnection(DbConnection());
            HandDownTranslator();
        }
        HandDownRights();
        LookUpKey(Id());
        TreeShown();
        TakeWaiting(); // of a dossier that was set before its connection
    };
    lclAssignment = std::make_unique<data::ConnectionAssignment>(
        workstation, std::move(listeners),
        [this](std::string_view text, const auto& values) { return Text(text, values); });
    const auto sending = components.sending;
    lclIntake.reset(new IntakeParts{{*this, workstation, lclLock, std::move(components)}});
    if (sending) {
        lclIntake->mail =
            std::make_shared<DossierMail>(workstation, *sending, [this](const SentMail& mail) {
                if (lclTree->Shows(*mail.dossier) || lclAssignment->IsElsewhere())
                    lclIntake->intake.AddFiles({mail.path}, {}, mail.folder, false, false);
                else
                    FileInTree(lclWorkstation, *lclTree, mail);
            });
        lclTree->SetMailSender(lclIntake->mail.get());
    }
    lclIntake->scan.changed = [this] { ApplyLayout(); };
    lclIntake->queue.giveToScanner = [this](const std::string& folder) {
        return lclWindow && lclIntake->scan.Import(folder);
    };
    SubscribeToChildren();
    SubscribeToViewers();
    SubscribeToChecklist();
    MakeOwnTranslator();
    PassOnToTree();
    ApplyLayout();
}

ctrlCorrespondence::~ctrlCorrespondence() {
    lclWindow = nullptr;
    try {
        CloseObject();
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("CloseObject", error.what());
    }
}

// --- Properties ---------------------------------------------------------------------------------

template <class Type>
void ctrlCorrespondence::Report(Type BinderProperties::*member) const {
    if (const auto* row = FindProperty(BinderPropertyTable(), member))
        return PropertyChanged.Raise(row->ReportedAs());
    // Those that are not saved.
    if (PropertyMember(member) == PropertyMember(&P::EmailAddress))
        PropertyChanged.Raise("EmailAddress");
    if (PropertyMember(member) == PropertyMember(&P::ShowDescriptionsInToolTip))
        PropertyChanged.Raise("ShowDescriptionsInToolTip");
}

template <class Type>
void ctrlCorrespondence::Change(Type BinderProperties::*member, const Type& value) {
    if (const auto* row = FindProperty(BinderPropertyTable(), member)) CheckValue(*row, value);
    lclState.*member = value;
    Report(member);
    TakeEffect(PropertyMember(member));
}

template void ctrlCorrespondence::Report(std::int16_t BinderProperties::*) const;
template void ctrlCorrespondence::Change(bool BinderProperties::*, const bool&);
template void ctrlCorrespondence::Change(std::int16_t BinderProperties::*, const std::int16_t&);
template void ctrlCorrespondence::Change(std::int32_t BinderProperties::*, const std::int32_t&);
template void ctrlCorrespondence::Change(std::string BinderProperties::*, const std::string&);

void ctrlCorrespondence::TakeEffect(const std::optional<PropertyMember>& changed) {
    const auto touches = [&](auto... members) {
        return !changed || ((*changed == PropertyMember(members)) || ...);
    };
    lclChecklist->SetCheckListType(lclState.ShowCheckList);
    lclChecklist->SetDossierStatus(lclState.DossierStatus);
    lclChecklist->SetEnabled(lclState.Enabled);
    if (lclOwnTranslator &&
        static_cast<std::int32_t>(lclOwnTranslator->CurrentLanguage()) != lclState.Language) {
        lclOwnTranslator->SetLanguage(static_cast<controls::Language>(lclState.Language));
        HandDownTranslator();
    }
    PassOnToTree(); // which acts on what is new
    if (touches(&P::BackColor, &P::ForeColor, &P::Enabled, &P::ColWidth)) PassOnToViewer();
    if (touches(&P::ShowTreeOnly, &P::ShowCheckList))
        ApplyLayout();
    else if (touches(&P::AllowSettings, &P::ShowAddButton))
        ToolbarChanged();
    if (lclWindow &&
        touches(&P::BackColor, &P::ForeColor, &P::Enabled, &P::BackStyle, &P::BorderStyle))
        lclWindow->AppearanceChanged();
}

void ctrlCorrespondence::PassOnToViewer() {
    lclViewer->SetBackColor(lclState.BackColor);
    lclViewer->SetForeColor(lclState.ForeColor);
    lclViewer->SetEnabled(lclState.Enabled);
    lclViewer->SetColWidth(lclState.ColWidth);
}

void ctrlCorrespondence::PassOnToTree() {
    PassOn(flags, lclState, *lclTree);
    PassOn(colours, lclState, *lclTree);
    PassOn(styles, lclState, *lclTree);
    PassOn(texts, lclState, *lclTree);
    lclTree->SetNameForInsert(NamesForInsert());
}

void ctrlCorrespondence::SetFont(std::optional<FontFace> font) {
    lclFont = std::move(font);
    PropertyChanged.Raise("Font");
    lclTree->SetFont(lclFont);
    lclViewer->SetFont(lclFont);
    TakeEffect();
}

void ctrlCorrespondence::SetExternalId(const std::string& key) {
    if (model::ColumnText(key) != key)
        throw platform::Error(platform::errors::invalidPropertyValue,
                              "Invalid property value: ExternalId has at most 255 characters");
    lclKeyKnown = true;
    Change(&BinderProperties::ExternalId, key);
}

void ctrlCorrespondence::LoadProperties(PropertyBag& bag) {
    const auto turn = Begin();
    if (Id() != 0) EndDossier(turn);
    const auto before = lclState;
    controls::LoadProperties(BinderPropertyTable(), lclState, bag);
    // The bag speaks of the connection of then, and not of a dossier that a host opened meanwhile.
    if (DbConnection()) lclState.DbOpened = before.DbOpened;
    if (Overtaken(turn)) {
        lclState.Id = before.Id;
        lclState.ExternalId = before.ExternalId;
    }
    lclAssignment->SetTemplatePath(lclState.TemplatePath);
    lclState.ShowCheckList = platform::Trim(lclState.ShowCheckList);
    lclChecklistOpen = !lclState.ShowCheckList.empty();
    TakeEffect();
    if (Overtaken(turn)) return;
    LookUpKey(lclState.Id);
    lclBacklogDue = lclState.Id != 0;
    lclTree->SetTreeId(lclState.Id);
    if (!Overtaken(turn)) TreeShown();
    TakeWaiting();
}

void ctrlCorrespondence::SaveProperties(PropertyBag& bag) const {
    BinderProperties state = lclState;
    state.Id = Id();
    state.TemplatePath = lclAssignment->TemplatePath();
    state.ChecklistPresent = ChecklistShown();
    state.ScannedDoc = lclIntake->intake.HasScannedPending();
    if (const auto folder = SelectedFolder()) {
        // The item has 16 bits; an id beyond them is not kept rather than kept wrong.
        const auto id = static_cast<std::int16_t>(folder->Id());
        state.SelectedTabId = id == folder->Id() ? id : std::int16_t{0};
    }
    controls::SaveProperties(BinderPropertyTable(), state, bag);
}

// --- Translator and rights ----------------------------------------------------------------------

void ctrlCorrespondence::SetTranslate(std::shared_ptr<Translator> translator) {
    if (!translator) return MakeOwnTranslator();
    if (translator != lclOwnTranslator) lclOwnTranslator.reset();
    lclTranslator = std::move(translator);
    HandDownTranslator();
}

void ctrlCorrespondence::MakeOwnTranslator() {
    lclOwnTranslator = std::make_shared<OwnTranslator>(lclWorkstation);
    lclOwnTranslator->SetDbConnection(DbConnection());
    lclOwnTranslator->SetLanguage(static_cast<controls::Language>(lclState.Language));
    lclTranslator = lclOwnTranslator;
    HandDownTranslator();
}

// Names that nobody chose follow the language.
std::string ctrlCorrespondence::NamesForInsert() const {
    if (lclState.NameForInsert != BinderProperties().NameForInsert) return lclState.NameForInsert;
    return Text("Nieuwe tab") + ";" + Text("Nieuwe notitie");
}

void ctrlCorrespondence::HandDownTranslator() {
    lclTree->SetTranslate(lclTranslator);
    lclTree->SetNameForInsert(NamesForInsert());
    lclViewer->SetTranslate(lclTranslator);
    lclExtViewer->SetTranslate(lclTranslator);
    lclChecklist->SetTranslate(lclTranslator);
    if (lclIntake) lclIntake->scan.SetupChanged();
    ToolbarChanged();
}

void ctrlCorrespondence::SetUserAuth(std::shared_ptr<model::clsUserAuth> rights) {
    lclUserAuth = std::move(rights);
    HandDownRights();
}

void ctrlCorrespondence::HandDownRights() {
    lclRights.Set(lclUserAuth, DbConnection());
    lclTree->SetUserAuth(lclUserAuth);
    lclViewer->SetUserAuth(lclUserAuth);
    lclExtViewer->SetUserAuth(lclUserAuth);
    lclChecklist->SetUserAuth(lclUserAuth);
    WriteSwitches();
    if (lclIntake) lclIntake->scan.SetupChanged();
    ToolbarChanged();
}

// What could not be read is asked again, so the switches follow the answers.
void ctrlCorrespondence::WriteSwitches() {
    if (!lclUserAuth && !DbConnection()) return;
    const bool edit = HasRight("EditDossiers");
    lclTree->SetNewEnabled(edit);    // its folders
    lclTree->SetUpdateEnabled(edit); // its documents
    lclTree->SetAllowAddExternal(HasRight("AddExternal"));
    lclTree->SetAllowCreateFolders(HasRight("CreateFolders"));
    lclTree->SetDeleteEnabled(HasRight("Delete"));
    lclTree->SetShowMail(HasRight("Mail"));
    lclTree->SetShowPrint(HasRight("Print"));
}

bool ctrlCorrespondence::HasRight(std::string_view right) const { return lclRights.Has(right); }

// --- Messages -----------------------------------------------------------------------------------

std::string ctrlCorrespondence::Text(std::string_view text,
                                     const std::vector<std::string>& values) const {
    return lclTranslator ? lclTranslator->Translate(text, values)
                         : platform::FillPlaceholders(text, values);
}

void ctrlCorrespondence::Tell(std::string_view text, const std::vector<std::string>& values) const {
    platform::Message message;
    message.text = Text(text, values);
    message.icon = platform::Icon::Exclamation;
    lclWorkstation.messages.Show(message);
}

// The report is for whoever looks after the system: its lines are the same in every language.
void ctrlCorrespondence::ReportError(std::string_view where, const std::exception& error) const {
    const auto* ours = dynamic_cast<const platform::Error*>(&error);
    std::string text = "Error # " + std::to_string(ours ? platform::ShownNumber(ours->Number())
                                                        : platform::errors::fail);
    const auto line = [&](std::string_view marker, const std::string& value) {
        text += "\r\n" + std::string(marker) + value;
    };
    line("   Generated by ", ours ? ours->Source() : "Kavidex");
    line("   Description  ", error.what());
    int index = 0;
    if (const auto connection = DbConnection())
        for (const auto& detail : connection->Errors()) {
            line("Error #", std::to_string(++index) + ":");
            line("   ADO Error   #", std::to_string(platform::ShownNumber(detail.number)));
            line("   Description  ", detail.description);
            line("   Source       ", detail.source);
        }
    lclWorkstation.log.Write(where, data::InLog(error));
    lclWorkstation.messages.Show({text, Text("Error in $%$", {std::string(where)}),
                                  platform::Buttons::Ok, platform::Icon::Critical});
}

} // namespace kavidex::controls
