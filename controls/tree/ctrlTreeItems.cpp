// Adding, renaming, moving and deleting items, and which of it a user may.
#include <algorithm>

#include "controls/tree/ItemCopier.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

ItemPtr ctrlTree::AddTab(std::string_view description, std::int32_t parentId) {
    return Add(0, "tab", nullptr, 0, description, parentId);
}

ItemPtr ctrlTree::Add(std::int32_t id, std::string_view type,
                      const std::shared_ptr<model::clsItemCol>& children, std::int32_t itemId,
                      std::string_view description, std::int32_t parentId) {
    ItemPtr item;
    Guarded("Add", [&] {
        const auto parent = parentId != 0 ? parentId : FolderAt(lclSelected);
        if (!lclTree || parent == 0) return;
        if (model::ColumnText(type) != type)
            throw platform::Error(platform::errors::invalidArgument,
                                  "An item type has at most 255 characters");
        item = lclTree->AddChildItem(id, type, children, itemId, model::ColumnText(description),
                                     parent);
        if (item) AddItem(item, parent, false);
    });
    return item;
}

void ctrlTree::AddItem(const ItemPtr& item, std::int32_t parentId, bool select) {
    if (!item) return;
    FillFrom(item, parentId);
    UpdateText(parentId);
    // The root stands open, as after loading; it could not before it had its first child.
    const auto root = lclWindow ? Root() : nullptr;
    if (root && root->Id() == parentId && HandleOf(parentId) && root->ChildCollection() &&
        root->ChildCollection()->Count() == 1)
        lclWindow->Expand(HandleOf(parentId), true);
    const auto id = item->Id();
    const auto here = SameDossier();
    EvItemCreated.Raise(Info(id));
    if (!select || !here()) return;
    ClearSelectedItems();
    SelectNode(id, true);
}

namespace {

struct ActionRule {
    UserAction action;
    bool TreeProperties::*allowed;
    std::string_view right;
    bool changes; // refused while the tree is read only
};
constexpr ActionRule actionRules[] = {
    {UserAction::Create, &TreeProperties::NewEnabled, "EditDossiers", true},
    {UserAction::CreateFolder, &TreeProperties::AllowCreateFolders, "CreateFolders", true},
    {UserAction::AddExternal, &TreeProperties::AllowAddExternal, "AddExternal", true},
    {UserAction::Change, &TreeProperties::UpdateEnabled, "EditDossiers", true},
    {UserAction::Delete, &TreeProperties::DeleteEnabled, "Delete", true},
    {UserAction::Mail, &TreeProperties::ShowMail, "Mail", false},
    {UserAction::Print, &TreeProperties::ShowPrint, "Print", false},
};

} // namespace

bool ctrlTree::MayUser(UserAction action) const {
    for (const auto& rule : actionRules)
        if (rule.action == action)
            return lclState.*rule.allowed && !(rule.changes && lclState.ReadOnly) &&
                   lclRights.Has(rule.right);
    return false;
}

bool ctrlTree::MayInsert(std::size_t entry) const {
    const auto types = platform::Split(lclState.TypeForInsert, ';');
    if (entry >= types.size() || !AcceptsType(types[entry]) || !MayUser(UserAction::Create))
        return false;
    return !platform::EqualNoCase(platform::TrimView(types[entry]), "tab") ||
           MayUser(UserAction::CreateFolder);
}

bool ctrlTree::AcceptsType(std::string_view type) const {
    const auto wanted = platform::LowerCase(platform::TrimView(type));
    const auto types = platform::Split(platform::LowerCase(lclState.AllowedTypes), ';');
    return std::all_of(types.begin(), types.end(),
                       [](const auto& one) { return platform::TrimView(one).empty(); }) ||
           std::any_of(types.begin(), types.end(),
                       [&](const auto& one) { return platform::TrimView(one) == wanted; });
}

void ctrlTree::CreateInsertItem(int entry) {
    Guarded("ctrlTree", [&] {
        const auto names = platform::Split(lclState.NameForInsert, ';');
        const auto types = platform::Split(lclState.TypeForInsert, ';');
        const auto position = static_cast<std::size_t>(entry);
        const auto folder = FolderAt(lclSelected);
        if (position >= names.size() || position >= types.size() || folder == 0) return;
        if (!MayInsert(position))
            return lclWorkstation.log.Write("ctrlTree", "Refused: a new " + types[position]);
        const auto name = model::ColumnText(names[position]);
        const auto& type = types[position];
        const bool note = platform::EqualNoCase(platform::TrimView(type), "nnt");
        ItemPtr item;
        OnItem([&] {
            item = note ? CreateNote(name, folder)
                        : lclTree->AddChildItem(0, type, nullptr, 0, name, folder);
        });
        if (!item) return;
        const auto here = SameDossier();
        AddItem(item, folder, true);
        if (!here()) return;
        ShowSelected();
        if (note) return NoteMade.Raise(item->Id());
        if (lclSelected == item->Id() && CanEditLabel(item->Id())) EditLabel(item->Id());
    });
}

ItemPtr ctrlTree::CreateNote(std::string_view name, std::int32_t folder) {
    const auto now = lclWorkstation.clock.Now();
    const auto time = platform::TimeNumber(now);
    const auto made =
        " " + platform::DayFirst(now) + " " + time.substr(0, 2) + ":" + time.substr(2, 2);
    const auto description = model::ColumnText(name, made.size()) + made;
    return AddNote(lclWorkstation, *lclTree, lclDossierKey ? lclDossierKey() : "", description,
                   folder);
}

bool ctrlTree::MayChange(std::int32_t id) const {
    return id > 0 && lclNodes.contains(id) && MayUser(UserAction::Change);
}

bool ctrlTree::CanEditLabel(std::int32_t id) const { return MayChange(id); }

std::string ctrlTree::EditText(std::int32_t id) const {
    const auto item = GetNode(id);
    return item ? item->Description() : std::string();
}

bool ctrlTree::LabelEdited(std::int32_t id, std::string_view text) {
    return CanEditLabel(id) && !platform::TrimView(text).empty() && RenameItem(id, text);
}

bool ctrlTree::RenameItem(std::int32_t id, std::string_view description) {
    const auto item = GetNode(id);
    if (!item) return false;
    const std::string old = item->Description(), wanted = model::ColumnText(description);
    if (old == wanted) return true;
    return Guarded("ctrlTree", [&] {
        OnItem([&] { item->Rename(wanted); });
        UpdateText(id);
        GridChanged();
        const auto info = Info(id);
        EvItemRenamed.Raise(info, old);
    });
}

bool ctrlTree::DeleteItem(std::int32_t id) {
    return DeleteItems(id != 0 ? std::vector<std::int32_t>{id} : SelectedIds(), nullptr);
}

bool ctrlTree::DeleteItems(const std::vector<std::int32_t>& ids, Deletion* deletion,
                           const MayGo& may) {
    std::int32_t next = 0;
    bool deleted = false;
    const auto row = NextRow(ids);
    const auto here = SameDossier();
    for (const auto one : ids) {
        // An item below one that was deleted before it is gone already.
        const auto found = lclNodes.find(one);
        if (found == lclNodes.end() || found->second.parent == 0) continue;
        try {
            Deleted item{one, found->second.item->Description(), {}};
            next = fncDeleteSingleItem(one, item.taken, may);
            deleted = true;
            if (!here()) return deleted; // these ids tell nothing of what is here now
            if (deletion && one > 0) deletion->push_back(std::move(item));
        } catch (const std::exception& error) {
            ShowError("Error fncDeleteSingleItem", {}, error);
            break; // the others would hardly fare better, each with a message
        }
    }
    if (deleted) SelectNode(row != 0 && lclNodes.contains(row) ? row : next, true);
    return deleted;
}

std::int32_t ctrlTree::NextSelection(std::int32_t id) const {
    const auto parent = GetParent(id);
    std::int32_t before = 0;
    bool passed = false;
    for (const auto& sibling : Children(*parent)) {
        const auto found = lclNodes.find(sibling->Id());
        if (sibling->Id() == id)
            passed = true;
        else if (found == lclNodes.end() || !found->second.shown)
            continue;
        else if (passed)
            return sibling->Id();
        else
            before = sibling->Id();
    }
    return before != 0 ? before : parent->Id();
}

std::int32_t ctrlTree::fncDeleteSingleItem(std::int32_t id, std::vector<std::int32_t>& taken,
                                           const MayGo& may) {
    const auto item = GetNode(id);
    const auto parent = GetParent(id);
    const auto info = Info(id);
    const auto next = NextSelection(id);
    auto doomed = item; // the model clears the reference that it is given
    Operation operation(*lclLock);
    if (!operation)
        throw platform::Error(platform::errors::fail, Text("Er loopt nog een andere bewerking"));
    if (!lclTree->DeleteItem(doomed, id, &taken, may))
        throw platform::Error(platform::errors::fail, "Item " + std::to_string(id) + " was kept");
    // Somebody else was first: an undo brings back what stood here.
    if (taken.empty())
        for (const auto& one : ItemsBelow({id})) taken.push_back(one.item->Id());
    operation.End(); // what the host does at the event is its own
    if (const auto siblings = parent->ChildCollection()) siblings->Remove(id);
    const auto here = SameDossier();
    EvItemDelete.Raise(info);
    if (!here()) return 0;
    if (lclWindow && next == parent->Id() && HandleOf(next))
        lclWindow->Expand(HandleOf(next), false);
    if (IsWithin(lclSelected, id)) lclSelected = 0;
    Forget(id);
    UpdateText(parent->Id());
    return next;
}

bool ctrlTree::MayMove(std::int32_t id, std::int32_t target) const {
    const auto folder = GetNode(target);
    const auto found = lclNodes.find(id);
    return folder && folder->AllowChildren() && target > 0 && MayChange(id) &&
           found->second.parent != 0 && found->second.parent != target && !IsWithin(target, id);
}

ItemPtr ctrlTree::MoveItem(std::int32_t id, std::int32_t newParentId) {
    const auto found = lclNodes.find(id);
    if (!lclTree || found == lclNodes.end() || IsWithin(newParentId, id)) return nullptr;
    ItemPtr moved;
    Guarded("ctrlTree", [&] {
        const auto oldParent = found->second.parent;
        OnItem([&] { moved = lclTree->MoveItem(id, newParentId, oldParent); });
        if (!moved) return;
        const auto selected = lclSelected;
        Forget(id);
        FillFrom(moved, newParentId);
        UpdateText(oldParent);
        UpdateText(newParentId);
        if (IsWithin(selected, id)) SelectNode(selected, false);
    });
    return moved;
}

std::vector<std::int32_t> ctrlTree::MoveItems(const std::vector<std::int32_t>& ids,
                                              std::int32_t target) {
    std::vector<std::int32_t> moved;
    for (const auto id : ids) {
        if (!MayMove(id, target)) continue;
        if (!MoveItem(id, target)) break; // the user was told why
        moved.push_back(id);
    }
    return moved;
}

} // namespace kavidex::controls
