// The logic of the folder tree control: one dossier's tree, and what the user does with its items.
// It works without a window; a window that is attached shows the state as it is.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "controls/common/GrantedRights.h"
#include "controls/common/OperationLock.h"
#include "controls/common/Shortcut.h"
#include "controls/common/Translator.h"
#include "controls/tree/TreeGrid.h"
#include "controls/tree/TreeImages.h"
#include "controls/tree/TreeMemory.h"
#include "controls/tree/TreePropertySet.h"
#include "controls/tree/TreeWindow.h"
#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::model {
class clsItem;
class clsItemCol;
class clsTree;
class clsUserAuth;
} // namespace kavidex::model

namespace kavidex::controls::forms {
class Form;
}

namespace kavidex::controls {

class MailSender;
struct SentMail;

template <class Context>
class Commands;

// What a user does in the tree, by whatever road: menu, key, toolbar, drop. A host's call is free.
enum class UserAction { Create, CreateFolder, AddExternal, Change, Delete, Mail, Print };

class ctrlTree final : public TreePropertySet {
public:
    // Loads the workstation options; the window comes later, or never.
    explicit ctrlTree(const platform::Workstation& workstation);
    ~ctrlTree();
    ctrlTree(const ctrlTree&) = delete;
    ctrlTree& operator=(const ctrlTree&) = delete;

    // --- Properties -----------------------------------------------------------------------------

    // Setting the id loads that tree and shows it; 0 empties the control, and so does a tree that
    // cannot be read.
    std::int32_t TreeId() const { return lclState.TreeId; }
    void SetTreeId(std::int32_t id);

    // In place of another connection it ends the work on the tree: the id belongs to that
    // database. An id that was set before the first connection is loaded from it.
    const data::ConnectionPtr& DbConnection() const { return lclConnection; }
    void SetDbConnection(data::ConnectionPtr connection);
    const std::shared_ptr<model::clsUserAuth>& UserAuth() const { return lclUserAuth; }
    void SetUserAuth(std::shared_ptr<model::clsUserAuth> rights);
    const std::shared_ptr<Translator>& Translate() const { return lclTranslator; }
    void SetTranslate(std::shared_ptr<Translator> translator);
    // By the control around this one: long work asks its lock, and documents that are made here
    // belong to the host's key of the dossier. Both outlive the tree.
    void Serve(OperationLock& lock, std::function<std::string()> dossierKey);
    const std::optional<FontFace>& Font() const { return lclFont; }
    void SetFont(std::optional<FontFace> font);
    // Offers mailing by it, which must outlive the tree; null: mailing is not offered.
    void SetMailSender(MailSender* sender) { lclMail = sender; }

    void LoadProperties(PropertyBag& bag);
    void SaveProperties(PropertyBag& bag) const;

    // --- Operations -----------------------------------------------------------------------------

    // Reads the tree again from the database and shows it; keeps the selection where it still is,
    // and all of it when reading fails.
    void Refresh();
    void RefreshByUser(); // and tells the control around this one

    // Writes a new tree with its default folders, without a list those of DossierType, and shows
    // it; false on failure.
    bool CreateNew(std::string_view description, std::string_view listOfDefaultTabs);
    // The same in two steps: written whole, null on failure, before the host hears of it.
    std::shared_ptr<model::clsTree> CreateTree(std::string_view description,
                                               std::string_view listOfDefaultTabs);
    void ShowNew(const std::shared_ptr<model::clsTree>& tree);
    // Makes the folders that the list names ("a;b;c", or "Dossiertype=" and a type) below the item;
    // the number of folders made, negative on failure.
    std::int32_t fncGetAndCreateTabs(std::string_view listOfTabs, std::int32_t parentId);

    // A new folder below the selected folder, or below `parentId` where it is not 0. Null
    // on refusal.
    ItemPtr AddTab(std::string_view description, std::int32_t parentId = 0);
    // A new item, inserted when `id` is 0; an `id` that is given exists in the database already.
    ItemPtr Add(std::int32_t id, std::string_view type,
                const std::shared_ptr<model::clsItemCol>& children, std::int32_t itemId,
                std::string_view description, std::int32_t parentId = 0);
    // Shows an item that stands in the model already, with EvItemCreated; selects it when asked.
    void AddItem(const ItemPtr& item, std::int32_t parentId, bool select);

    bool RenameItem(std::int32_t id, std::string_view description);
    // Deletes the item with all below it; with id 0 the collected selection, or the selected item.
    bool DeleteItem(std::int32_t id = 0);
    // Null when the model refuses.
    ItemPtr MoveItem(std::int32_t id, std::int32_t newParentId);

    // The item of a shown node, null when there is none.
    ItemPtr GetNode(std::int32_t id) const;
    ItemPtr GetItem(std::int32_t id, std::string_view description = {}) const;
    ItemPtr GetItemWithinTree(const ItemPtr& start, std::int32_t id,
                              std::string_view description = {}) const;
    ItemPtr GetParent(std::int32_t id) const;
    ItemPtr SelectedItem() const;               // null: nothing is selected
    std::vector<ItemPtr> SelectedItems() const; // collected ones in the order of selection
    std::vector<ItemPtr> AllItems() const;      // in the order of the tree, without the root
    void ClearSelectedItems();
    void fncResetSelectedItems(); // as above, and selects the node where the selection began
    bool ContainsDocuments() const;
    // Without the deleted ones, which the view may show; an empty type is every type.
    std::int32_t CountDocuments(std::string_view type) const;

    // The rule that every road of the user asks: the switch of the property, and the right.
    bool MayUser(UserAction action) const;
    bool MayInsert(std::size_t entry) const;       // the i-th entry of NameForInsert
    bool AcceptsType(std::string_view type) const; // by AllowedTypes

    // Selects the next or previous document in the order of the tree; false at the end.
    bool SetNextChildItem();
    bool SetPreviousChildItem();
    bool StepToDocument(int step, std::int32_t from); // 1 or -1; from that item, not the selection
    bool IsWithin(std::int32_t id, std::int32_t ancestor) const;
    bool SetHighLightToItem(std::int32_t id);
    void fncShowStatusBar(bool show);
    bool StatusBarVisible() const { return lclShowStatusBar; }

    // The documents of the dossier as a list in the tree's place: its rows, and its selection, are
    // those of the tree's items.
    bool ListMode() const { return lclListMode; }
    void SetListMode(bool list);
    VirtualList& Grid() { return lclGrid.List(); }

    // Descriptions from the root on, joined by backslashes.
    std::string NodeFullPath(std::int32_t id) const;
    std::shared_ptr<model::clsTree> Tree() const { return lclTree; }
    // Whether it is the one that is open, read again or not.
    bool Shows(const model::clsTree& dossier) const;

    // --- The window and what it reports --------------------------------------------------------

    // Fills the window with what there is; null detaches. The window must detach before it dies.
    void AttachWindow(TreeWindow* window);

    void NodeSelected(std::int32_t id);  // it alone
    bool NodeClicked(std::int32_t id);   // that is selected already; true: this showed it again
    void NodeActivated(std::int32_t id); // double click or Enter
    void NodeChecked(std::int32_t id, bool checked);
    bool HasCollected() const { return !lclCollected.empty(); }
    // As in the file manager: into or out of the collected selection (Ctrl), all from where the
    // selection began (Shift), to them what is collected (Ctrl and Shift); the current node moves
    // along, and moves alone (Ctrl and an arrow).
    void NodeToggled(std::int32_t id);
    void SelectedUpTo(std::int32_t id, bool add);
    void CurrentMoved(std::int32_t id);
    void CurrentStepped(int step, bool extend); // the current node to the one below or above it
    void NodeCollapsed(std::int32_t id);        // what it hides is no longer collected
    bool IsCollected(std::int32_t id) const { return lclCollected.contains(id); }
    // What was cut, until it is pasted or something else is put on the clipboard.
    bool ShowsCut() const { return !lclShownCut.empty(); }
    bool IsCut(std::int32_t id) const { return ShowsCut() && lclShownCut.contains(id); }
    void ShowCut(); // anew, as the clipboard is another
    // What the box `txtSwitch` holds: the name of the child that shows; another name switches.
    static std::string_view ShownChild(bool list) { return list ? "Grid" : "tree1"; }
    void SwitchTyped(std::string_view text);
    void Woken(); // as it asked its window to
    bool CanEditLabel(std::int32_t id) const;
    std::string EditText(std::int32_t id) const;              // what the label's editor starts with
    bool LabelEdited(std::int32_t id, std::string_view text); // false: the old text stays
    std::string ToolTip(std::int32_t id) const;
    // At a screen point, over a node or over empty space.
    void ContextMenu(std::optional<std::int32_t> id, int x, int y);
    // A key of the menu's commands; true when it was used, be it that the command is refused.
    bool CommandKey(int key, bool control, bool shift);
    static bool HasCommand(const Shortcut& key);
    // The next item whose description contains what was last looked for is selected; false: the
    // user was told that there is none.
    bool FindNext(bool forward);

    bool BeginDrag(std::int32_t id); // whether a drag of the item (or the collected ones) may start
    std::int32_t Drag(std::int32_t id); // the whole of it; the effect
    const std::string& DropString() const { return lclState.DropString; } // what a drag carries
    std::int32_t DragOver(DragState state, const DropData& data, std::int32_t targetId);
    std::int32_t Dropped(const DropData& data, std::int32_t targetId);
    void CompleteDrag(std::int32_t effect = drop::none);
    void HoverExpanded(std::int32_t id);

    // For drawing without a window.
    struct DrawnRow {
        int depth;
        std::string imageKey, text; // the key of a picture, or a file extension
    };
    std::string StatusText() const;
    std::vector<DrawnRow> FirstRows(int count) const; // the root and its children

    // The menu as it would open over the node; ContextMenu shows it.
    PopupMenu PrepareMenu(std::optional<std::int32_t> id);
    void ChooseMenu(const MenuEntry& entry);

private:
    struct Node {
        ItemPtr item;
        std::int32_t parent = 0; // 0: a root
        NodeHandle handle = 0;   // 0: not shown, or there is no window
        bool shown = false;
    };
    struct MenuContext; // what the rows of the menu act on
    static const Commands<MenuContext>& MenuTable();

    void TakeEffect(const Row::Member& member) override;
    void ShowAppearance();
    void ShowBoxes();
    void ShowStatusText();

    std::string Text(std::string_view text, const std::vector<std::string>& values = {}) const;
    // Runs one public operation: its error is shown under "Error in " and the routine's name.
    bool Guarded(std::string_view routine, const std::function<void()>& work) const;
    // Says in the user's words that an item is gone from the database; all else passes.
    void OnItem(const std::function<void()>& work) const;
    [[noreturn]] void ThrowGone(std::int32_t number) const;
    void ShowError(std::string_view caption, const std::vector<std::string>& values,
                   const std::exception& error) const;

    void SubscribeToGrid();
    void FillGrid();    // its rows and its selection
    void GridChanged(); // fills it soon, once for many changes
    void SelectRows();
    void RowsSelected();
    // In list mode the row to select once these are deleted: the next, else the one before; 0:
    // none.
    std::int32_t NextRow(const std::vector<std::int32_t>& deleted) const;
    void ShowSelected(); // in the tree again where the list has no row of it
    void EditLabel(std::int32_t id);
    // Modal. Nothing when the tree is gone by the time it closes: no member may be touched then.
    std::optional<bool> ShowForm(forms::Form& form);

    ItemPtr Root() const; // null while no tree is loaded
    bool LoadTree();      // false: reading failed, and what was shown is still there
    void ShowTree(bool keep);
    void ForgetTree(); // what was selected, cut or dragged belongs to the tree that goes
    // Asked after the host or the user had a turn: whether what was begun goes on. Another
    // database has the same ids.
    std::function<bool()> SameDossier() const;
    void AskRights();
    void Fill();
    void FillOnce();
    // `step` is called after each item.
    void FillFrom(const ItemPtr& top, std::int32_t parentId,
                  const std::function<void()>& step = {});
    std::vector<ItemPtr> Children(const model::clsItem& item) const; // in the order of the view
    // One item and all below it, parents first.
    void Walk(const ItemPtr& top, std::int32_t parentId,
              const std::function<void(const ItemPtr&, std::int32_t parentId)>& visit) const;
    bool IsShown(const model::clsItem& item) const;
    void fncItemToTreeView(const ItemPtr& item, std::int32_t parentId);
    NodeHandle HandleOf(std::int32_t id) const;
    std::string NodeText(const model::clsItem& item) const;
    void UpdateText(std::int32_t id);
    void Forget(std::int32_t id); // the item's node and all below it

    TreeItemInfo Info(std::int32_t id) const;
    void MakeCurrent(std::int32_t id);
    void BeginCollection(std::int32_t beside);
    void Collect(std::vector<std::int32_t> ids);  // in place of what was collected
    std::vector<std::int32_t> VisibleIds() const; // from top to bottom, in open folders
    bool SelectNode(std::int32_t id, bool raise);
    bool SelectAlone(std::int32_t id, bool raise); // the collected selection ends
    std::int32_t FolderAt(std::int32_t id) const; // itself, or the folder around it; the root for 0
    std::vector<std::int32_t> SelectedIds() const;

    std::int32_t MakeTabs(const std::vector<std::string>& names, std::int32_t parentId);
    void WriteTabs(model::clsTree& tree, const std::vector<std::string>& names) const;
    void CreateInsertItem(int entry);
    ItemPtr CreateNote(std::string_view name, std::int32_t folder);
    using MayGo = std::function<bool(std::int32_t id)>; // of each that a deletion takes; empty: all
    bool DeleteItems(const std::vector<std::int32_t>& ids, Deletion* deletion,
                     const MayGo& may = {});
    // The node to select next; `taken` gets the ids of all that went.
    std::int32_t fncDeleteSingleItem(std::int32_t id, std::vector<std::int32_t>& taken,
                                     const MayGo& may);
    void DeleteSelected(); // by the user, who may undo it
    void UndoDeletion();
    void RestoreSelected();
    Deletion PutBack(Deletion deletion); // what could not be put back, and may be tried again
    void TellPutBack(const std::vector<std::int32_t>& around,
                     const std::vector<std::int32_t>& atRoot,
                     const std::vector<std::string>& failed) const;
    std::vector<ItemPtr> TopmostSelected() const; // without what is below another selected item
    void Find();
    std::vector<ItemPtr> ItemsToFind() const; // what the tree, or the list, shows, in its order
    std::int32_t FindBeside(std::int32_t id, std::string_view text, bool forward) const; // 0: none
    std::int32_t NextSelection(std::int32_t id) const;
    // Those that moved.
    std::vector<std::int32_t> MoveItems(const std::vector<std::int32_t>& ids, std::int32_t target);
    bool PasteCut(std::int32_t folder);
    bool MayChange(std::int32_t id) const;
    bool MayMove(std::int32_t id, std::int32_t target) const;
    static std::vector<std::int32_t> DraggedIds(std::string_view text);
    std::vector<std::int32_t> DraggedWith(std::int32_t id) const;
    void StartDrag(const std::vector<std::int32_t>& ids);
    std::int32_t OfferedEffect(const DropData& data, std::int32_t folder) const;
    DropData AcceptedOf(const DropData& data) const; // the user is told what AllowedTypes refuses
    void ToggleOption(const TreeOption& option);
    void ShowItemProperties(const std::vector<std::int32_t>& ids);
    void Take(bool cut);
    void ForgetTaken();          // what was cut looks as before
    ctrlTree* Taker() const;     // the tree that cut or copied what can be pasted; null: none
    bool TakenElsewhere() const; // in another program, or in a tree that is gone
    bool MayPaste(std::int32_t folder) const;
    void Paste();
    bool PasteCopies(ctrlTree& source, std::int32_t folder);
    struct Copied {
        int made = 0;
        std::vector<std::string> failed; // the items that could not be copied
        bool ended = false;              // the user stopped it, or left the dossier
    };
    Copied CopyTaken(const Taken& taken, const data::ConnectionPtr& from,
                     std::optional<std::string> key, std::int32_t folder);
    void DeleteCopied(ctrlTree& source, const Taken& taken);
    std::vector<Taken::Item> ItemsBelow(const std::vector<std::int32_t>& ids) const;
    bool RereadCut(); // what was cut as it stands by now; false: it could not be read
    std::string NotCopied(const std::vector<std::string>& items) const;
    void TellFailed(const std::string& text, const std::string& caption) const;
    std::string Listed(const std::vector<std::string>& names,
                       std::string_view between = "\r\n") const;
    bool MayCopyHere(const model::clsItem& item) const;
    std::vector<ItemPtr> DocumentsBelow(const std::vector<std::int32_t>& ids) const;
    void CopySpecial();
    void PasteSpecial();
    void CopyLink();
    struct Printing;
    void Print();
    void Mail(bool asPdf);
    void KeepSentMail(SentMail mail);
    // The selected documents, and those in selected folders where the user answers yes.
    std::vector<ItemPtr> ChosenDocuments(const std::string& question,
                                         const std::string& caption) const;
    bool HasDocuments(const std::vector<std::int32_t>& ids) const;

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    std::shared_ptr<model::clsUserAuth> lclUserAuth;
    GrantedRights lclRights;
    std::string lclDefaultNames; // NameForInsert as long as nobody chose one
    std::shared_ptr<Translator> lclTranslator;
    std::optional<FontFace> lclFont;
    std::shared_ptr<model::clsTree> lclTree;
    TreeWindow* lclWindow = nullptr;
    bool lclShowStatusBar = true;
    TreeGrid lclGrid;
    bool lclListMode = false, lclGridDue = false;
    std::vector<std::shared_ptr<void>> lclGridTokens;

    std::unordered_map<std::int32_t, Node> lclNodes;
    std::unordered_set<std::int32_t> lclCollected;
    std::vector<std::int32_t> lclCollectedOrder;
    OperationLock lclOwnLock;
    OperationLock* lclLock = &lclOwnLock;
    std::function<std::string()> lclDossierKey;
    Taken lclTaken;
    std::unordered_set<std::int32_t> lclShownCut;
    std::string lclToken; // of what was taken here last, also when it was pasted since
    static thread_local ctrlTree* lclTaker;      // the tree in which this thread's user took last
    std::int32_t lclSelected = 0, lclAnchor = 0; // where the user's selection began
    TreeImages lclImages;
    std::int32_t lclFillErrors = 0;
    bool lclFilling = false, lclFillAgain = false;
    std::uint32_t lclDossiers = 0; // that were shown here, this one included
    std::uint32_t lclLoads = 0;    // begun
    MailSender* lclMail = nullptr;
    std::vector<Deletion> lclDeletions; // that can be undone, the last one last
    std::string lclSought;
    std::vector<forms::Form*> lclForms; // that are open
    std::shared_ptr<void> lclAlive = std::make_shared<char>();
};

} // namespace kavidex::controls
