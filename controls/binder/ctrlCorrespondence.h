// The logic of the binder control: one dossier's folder tree, its documents, and the toolbar above
// them. It works without a window; a window that is attached shows the state as it is.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "controls/binder/BinderProperties.h"
#include "controls/common/Appearance.h"
#include "controls/common/Event.h"
#include "controls/common/GrantedRights.h"
#include "controls/common/OperationLock.h"
#include "controls/common/PopupMenu.h"
#include "controls/common/Toolbar.h"
#include "controls/common/Translator.h"
#include "controls/intake/FilingReport.h"
#include "controls/tree/TreeEvents.h"
#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::data {
class AccessRepair;
class AdoFactory;
class ConnectionAssignment;
class clsSettings;
} // namespace kavidex::data
namespace kavidex::model {
class clsItem;
class clsItemCol;
class clsTree;
class clsUserAuth;
} // namespace kavidex::model

namespace kavidex::controls {

class BinderWindow;
class IntakeWiring;
struct IntakeParts;
class OwnTranslator;
class ctlChecklist;
class ctlSplitPanel;
class ctlViewer;
class ctrlExtViewer;
class ctrlTree;

// Numbers of the layouts; 0 leaves the splitter's orientation as it is.
namespace layouts {
constexpr std::int16_t none = 0, treeOnly = 1, viewerOnly = 2, treeLeft = 3, treeTop = 4;
}

template <class Context>
class Commands;

class ctrlCorrespondence : public ToolbarSource {
public:
    // `ado` and `repair` serve DbOpenConnection only; without `ado` it reports a failure. Without a
    // component what it does is not to be had, which the user is told.
    explicit ctrlCorrespondence(const platform::Workstation& workstation,
                                std::shared_ptr<data::AdoFactory> ado = nullptr,
                                std::shared_ptr<data::AccessRepair> repair = nullptr,
                                IntakeComponents components = {});
    ~ctrlCorrespondence() override; // ends the work on the dossier as CloseObject does
    ctrlCorrespondence(const ctrlCorrespondence&) = delete;
    ctrlCorrespondence& operator=(const ctrlCorrespondence&) = delete;

    // --- Properties -----------------------------------------------------------------------------

    // Name() and SetName(value); setting reports the change to the container and takes effect.
#define KAVIDEX_BINDER_PROPERTY(Type, Name)                                                        \
    const Type& Name() const { return lclState.Name; }                                             \
    void Set##Name(const Type& value) { Change(&BinderProperties::Name, value); }

    KAVIDEX_BINDER_PROPERTY(std::int32_t, Language)
    KAVIDEX_BINDER_PROPERTY(bool, ShowDescriptionsInToolTip)
    KAVIDEX_BINDER_PROPERTY(std::int32_t, BackColor)
    KAVIDEX_BINDER_PROPERTY(std::int32_t, ForeColor)
    KAVIDEX_BINDER_PROPERTY(bool, Enabled)
    KAVIDEX_BINDER_PROPERTY(std::int16_t, BackStyle)
    KAVIDEX_BINDER_PROPERTY(std::int16_t, BorderStyle)
    KAVIDEX_BINDER_PROPERTY(std::int16_t, OLEDropMode)
    KAVIDEX_BINDER_PROPERTY(std::int32_t, ColWidth)
    KAVIDEX_BINDER_PROPERTY(std::string, IniFile)
    KAVIDEX_BINDER_PROPERTY(std::string, NameForInsert)
    KAVIDEX_BINDER_PROPERTY(std::string, TypeForInsert)
    KAVIDEX_BINDER_PROPERTY(std::string, DossierType)
    KAVIDEX_BINDER_PROPERTY(std::string, InitString)
    KAVIDEX_BINDER_PROPERTY(std::string, Description)
    KAVIDEX_BINDER_PROPERTY(std::string, DbPassWord)
    KAVIDEX_BINDER_PROPERTY(std::string, DbUserId)
    KAVIDEX_BINDER_PROPERTY(bool, ShowParentsOnly)
    KAVIDEX_BINDER_PROPERTY(bool, ShowTreeOnly)
    KAVIDEX_BINDER_PROPERTY(bool, ShowExternalViewer)
    KAVIDEX_BINDER_PROPERTY(bool, AllowSettings)
    KAVIDEX_BINDER_PROPERTY(bool, ShowAddButton)
    KAVIDEX_BINDER_PROPERTY(std::string, ValueFile)
    KAVIDEX_BINDER_PROPERTY(std::string, AlternateScanSetting)
    KAVIDEX_BINDER_PROPERTY(std::string, DossierStatus)
    KAVIDEX_BINDER_PROPERTY(bool, SelectItems)
    KAVIDEX_BINDER_PROPERTY(std::string, EmailAddress)
#undef KAVIDEX_BINDER_PROPERTY

    // The checklist in the panel beside the documents, by a dossier type or a list's key; trimmed.
    // Setting it shows the panel, or hides it when it is empty.
    const std::string& ShowCheckList() const { return lclState.ShowCheckList; }
    void SetShowCheckList(const std::string& type);

    // The host's key of the open dossier, which its documents carry; it ends with the dossier. One
    // that is set while none is open is for the next that is shown by its Id, unless the database
    // has the key of that tree.
    const std::string& ExternalId() const { return lclState.ExternalId; }
    void SetExternalId(const std::string& key);

    // The one that is set second of these two opens the database, but not in a form designer.
    const std::string& DbProvider() const { return lclState.DbProvider; }
    void SetDbProvider(const std::string& provider);
    const std::string& DbPath() const { return lclState.DbPath; }
    void SetDbPath(const std::string& path);

    // The id of the folder tree shown; setting it loads that tree, 0 empties the control.
    std::int32_t Id() const;
    void SetId(std::int32_t id);

    const std::shared_ptr<Translator>& Translate() const { return lclTranslator; }
    void SetTranslate(std::shared_ptr<Translator> translator);
    const std::shared_ptr<model::clsUserAuth>& UserAuth() const { return lclUserAuth; }
    void SetUserAuth(std::shared_ptr<model::clsUserAuth> rights);
    const std::optional<FontFace>& Font() const { return lclFont; }
    void SetFont(std::optional<FontFace> font); // null: the system's

    // A connection to the database in use already changes nothing; one to another ends the work on
    // the open dossier first. A connection that is handed over belongs to the host: the control
    // never closes it.
    const data::ConnectionPtr& DbConnection() const;
    void SetDbConnection(const data::ConnectionPtr& connection);

    // The key under which documents waiting in the scan queue and the backlog are looked for.
    // This one stays from dossier to dossier, that of OpenOrCreate ends with its dossier; without
    // either it is the key of the open dossier.
    void SetCheckDocumentQueueId(std::string_view id);

    void LoadProperties(PropertyBag& bag);
    void SaveProperties(PropertyBag& bag) const;

    // --- Operations: negative results and false are failures -------------------------------------

    // data::OpenResult: 0, -1 no path, -2 no provider, -3 unknown provider, -99 an error was shown.
    std::int32_t DbOpenConnection();

    // 0; -1 key look-up, -2 new key row, -3 new tree, -4 new dossier row, -5 saving it, -6 dossier
    // rows of a known key, or the host opened another dossier while this one was being opened.
    std::int32_t OpenOrCreate(std::string_view prmExternalId, std::string_view prmDescription,
                              std::string_view prmListOfDefaultTabs,
                              std::string_view prmOldExternalId,
                              std::string_view prmExIdForBacklogAndQueue);
    bool CreateNew(std::string_view prmDescription, std::string_view prmListOfDefaultTabs);
    // Files what is pending at the top level, empties the control and closes the connection when
    // the control opened it. 0, or an addFiles result when documents could not be filed.
    std::int32_t CloseObject();

    // Files every name of `data` into the folder `IntoId` (0: the selected folder, else the top
    // level), or at the top level. `IntoDescription` finds the folder by its name when `IntoId` is
    // 0.
    // An addFiles number; below 0 the user was told.
    std::int32_t AddFiles(const std::vector<std::string>& data, std::string_view IntoDescription,
                          std::int32_t IntoId, bool prmScannedDoc, bool prmAddToTop);
    std::int32_t NoFilesGiven() const; // what AddFiles answers to nothing at all; the user was told
    // Below the tree item `prmInto`; 0: the selected folder, else the top level. Null on refusal.
    std::shared_ptr<model::clsItem>
    AddItem(std::int32_t prmId, std::string_view prmItemType,
            const std::shared_ptr<model::clsItemCol>& prmChildCollection, std::int32_t prmItemId,
            std::string_view prmDescription, std::int32_t prmInto);
    bool ExistItem(std::int32_t ItemId) const; // by the id of the tree item

    std::int32_t ContainsDocuments(std::string_view prmType) const; // empty: of every type
    // The number of documents copied, below 0 when one of them or the folder failed.
    std::int32_t ExportFiles(std::string_view prmDirectory);
    // Copies the documents of the selected items, with all in selected folders, into a temporary
    // folder; the copies' full names. With `Merge` images and PDF files become one PDF file, the
    // first of them; `AddDescriptionPage` begins it with a page that tells what there is.
    std::vector<std::string> ExportSelectedFiles(bool Merge, bool AddDescriptionPage);

    // 0; looks for documents that wait in the scan queue under that key.
    std::int32_t fncCheckDocumentQueue(std::string_view prmExternalId);

    void Refresh(); // also reads the tree again
    void OLEDrag(); // drags the tree's selected item

    // --- Events ---------------------------------------------------------------------------------

    Event<> Click, DblClick;
    Event<std::int16_t&, std::int16_t> KeyDown, KeyUp; // key code (0: handled), shift state
    Event<std::int16_t&> KeyPress;
    Event<std::int16_t, std::int16_t, float, float> MouseDown, MouseMove, MouseUp; // twips
    Event<const DropData&, std::int32_t&> OLEStartDrag;           // allowed effects
    Event<const DropData&, std::int16_t&> OLESetData;             // clipboard format
    Event<std::int32_t&, bool&> OLEGiveFeedback;                  // effect, default cursors
    Event<const DropData&, std::int32_t&, DragState> OLEDragOver; // effect
    Event<const DropData&, std::int32_t&> OLEDragDrop;            // effect
    Event<std::int32_t&> OLECompleteDrag;                         // effect

    Event<const TreeItemInfo&> ItemSelected; // declared for older hosts, never raised
    Event<const TreeItemInfo&> EvItemSelected, EvItemCreated, EvItemDelete;
    Event<> ItemDropped, EvCompleteDrag, EvChecklistChanged;
    Event<const std::string&, const std::string&> EvOpenDossier; // prmKey, prmType

    Event<std::string_view> PropertyChanged; // the saved item's name, for the container

    // Answers whether the control stands in a form designer; the container knows.
    void SetDesigning(std::function<bool()> designing) { lclDesigning = std::move(designing); }

    // --- Parts, and what the window reports ----------------------------------------------------

    ctrlTree& treCorr() const { return *lclTree; }
    ctlViewer& Viewer() const { return *lclViewer; }
    ctrlExtViewer& ExtViewer() const { return *lclExtViewer; }
    ctlSplitPanel& SplitPanel() const { return *lclSplitPanel; }
    ctlChecklist& Checklist() const { return *lclChecklist; }
    ctlSplitPanel& spCheckList() const { return *lclSpCheckList; }
    bool ChecklistShown() const;

    // Null detaches. The window must detach before it dies.
    void AttachWindow(BinderWindow* window);

    std::vector<ToolbarItem> Toolbar() override;
    bool ToolbarVisible() const { return !lclState.ShowTreeOnly; }
    void ButtonClicked(std::string_view key) override;
    void ButtonDropped(std::string_view key) override;
    PopupMenu ButtonMenu(std::string_view key); // what the button drops down
    void MenuChosen(const MenuEntry& entry);

    // The folder whose documents the viewer lists, and which takes what is dropped there; 0: none.
    std::int32_t ListedFolder() const;

    std::int16_t LastUsedLayout() const { return lclState.LastUsedLayout; }
    // The layout on the screen, also while none was chosen.
    std::int16_t ShownLayout() const;
    void SetLayout(std::int16_t layout);
    bool Usable() const; // a dossier is open
    bool HasRight(std::string_view right) const;
    std::int32_t SplitterPosition() const; // as the workstation keeps it

private:
    friend class IntakeWiring;

    struct CommandContext; // what the rows of the toolbar act on
    static const Commands<CommandContext>& CommandTable();

    template <class Type>
    void Change(Type BinderProperties::*member, const Type& value);
    template <class Type>
    void Report(Type BinderProperties::*member) const;
    // Of one property; null: of all.
    using PropertyMember = Property<BinderProperties>::Member;
    void TakeEffect(const std::optional<PropertyMember>& changed = std::nullopt);
    void PassOnToTree();
    void PassOnToViewer();

    void SubscribeToChildren();
    void SelectItem(std::int32_t id);
    void OnItemSelected(const TreeItemInfo& item);
    void SubscribeToViewers();
    void ShowItem(const TreeItemInfo& item, bool inWindow);
    // A document in its own program, or in the external window; false: it is for the viewer.
    bool ShowElsewhere(const std::shared_ptr<model::clsItem>& document, bool asked);
    void FollowExternalWindow();
    void StepInWindow(int step);
    bool OnChosenAgain(const TreeItemInfo& item);
    void EmptyViewers();
    void RefreshList();
    void TreeRefreshed(); // the viewer's, when a folder is shown
    void SubscribeToChecklist();
    void ToggleChecklist();
    void ShowInChecklist(); // the open dossier as it is now
    void ShowSettings();
    void TakeOptions(std::span<const std::string_view> changed); // of the workstation
    // `source`: the document that they are pages of. False: no document was made of them, and the
    // user was told.
    bool FilePages(const std::shared_ptr<model::clsItem>& source, const std::string& file,
                   const std::vector<std::int32_t>& pages);

    void MakeOwnTranslator();
    void OpenWhereTold(); // provider and path are there, and somebody works with the control
    // Opening and leaving a dossier lets the host in, which may open or close another one
    // meanwhile: the last call counts, and those before end where they are.
    std::uint32_t Begin() { return ++lclTurn; }
    bool Overtaken(std::uint32_t turn) const { return turn != lclTurn; }
    // What is pending goes to the top of the open dossier, and its key is forgotten; 0 or an
    // addFiles result.
    std::int32_t LeaveDossier(std::uint32_t turn);
    std::int32_t EndDossier(std::uint32_t turn); // the same, and nothing is open afterwards
    void EndEveryDossier();                      // those that a host opens meanwhile as well
    void ShowTree(std::int32_t id, std::uint32_t turn);
    void ShowMade(const std::shared_ptr<model::clsTree>& tree, std::uint32_t turn);
    void TreeShown(); // what stands beside it follows
    void TakeKey(std::string_view key);
    void LookUpKey(std::int32_t tree); // what cannot be read is asked again when it is needed
    void ReadKey(std::int32_t tree);
    std::string DossierKey(); // throws where it is not known whose the documents are
    Dossier OpenDossier() const;
    void HandDownTranslator();
    std::string NamesForInsert() const;
    void HandDownRights();
    void WriteSwitches();
    void ConnectionHandedOver(const data::ConnectionPtr& connection);
    std::string Text(std::string_view text, const std::vector<std::string>& values = {}) const;
    void Tell(std::string_view text, const std::vector<std::string>& values = {}) const;
    void ReportError(std::string_view where, const std::exception& error) const;
    template <class Work>
    void Guarded(std::string_view where, Work work) const;

    std::int32_t FindOrCreate(std::string_view externalId, std::string_view description,
                              std::string_view tabs, std::string_view oldExternalId,
                              std::int32_t& step, std::uint32_t turn);
    std::int32_t WasOvertaken(std::string_view key) const;
    std::int32_t CreateDossier(std::int32_t dossierId, std::string_view description,
                               std::string_view tabs, std::int32_t& step, std::uint32_t turn);
    std::string DefaultTabs(std::string_view listOfTabs) const;
    void RestoreSelection();
    const std::string& QueueKey() const; // empty: the open dossier's own
    void ImportBacklog();
    void TakeWaiting(); // backlog and scan queue of a dossier just opened

    std::shared_ptr<model::clsItem> SelectedFolder() const;
    void TellNotExported(const std::vector<std::string>& descriptions) const;

    void ApplyLayout();
    void ToolbarChanged();
    void DropDown(std::string_view key);
    template <class Work>
    void FromToolbar(Work work) const;
    void InsertNew(std::size_t which);

    const platform::Workstation& lclWorkstation;
    std::shared_ptr<data::AdoFactory> lclAdo;
    std::shared_ptr<data::AccessRepair> lclRepair;
    BinderProperties lclState;
    std::optional<FontFace> lclFont;
    std::shared_ptr<Translator> lclTranslator;
    std::shared_ptr<OwnTranslator> lclOwnTranslator; // null while the host's is in use
    std::shared_ptr<model::clsUserAuth> lclUserAuth;
    GrantedRights lclRights;
    bool lclKeyKnown = true; // else the database could not be asked yet for the open tree's key
    std::function<bool()> lclDesigning;
    bool lclStepsInWindow = false; // what comes to be selected is shown in the external window
    std::int32_t lclSteppedTo = 0; // by the last of those steps
    bool lclBacklogDue = false, lclQueueDue = false; // looked at once no operation runs
    std::uint32_t lclTurn = 0;         // counts the calls that open or leave a dossier
    std::int32_t lclClosedOutside = 0; // the document whose window closed since it was chosen
    std::string lclQueueExternalId, lclDossierQueueId; // the host's for all, and for the open one
    OperationLock lclLock;

    std::unique_ptr<ctrlTree> lclTree;
    std::unique_ptr<ctlViewer> lclViewer;
    std::unique_ptr<ctrlExtViewer> lclExtViewer;
    std::unique_ptr<ctlSplitPanel> lclSplitPanel;
    std::unique_ptr<ctlChecklist> lclChecklist;
    std::unique_ptr<ctlSplitPanel> lclSpCheckList;
    bool lclChecklistOpen = false; // where there is a checklist
    std::unique_ptr<data::ConnectionAssignment> lclAssignment;
    std::unique_ptr<IntakeParts> lclIntake;
    BinderWindow* lclWindow = nullptr;
    std::vector<std::shared_ptr<void>> lclSubscriptions;
};

} // namespace kavidex::controls
