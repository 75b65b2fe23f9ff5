// Cutting, copying and pasting: items within and between trees, files from and to other programs.
#include <algorithm>
#include <unordered_set>

#include "controls/common/CopyOut.h"
#include "controls/tree/ItemCopier.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/documentFile.h"
#include "platform/Error.h"
#include "platform/Exchange.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/TemporaryFolder.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"
#include "platform/text.h"

namespace kavidex::controls {

thread_local ctrlTree* ctrlTree::lclTaker = nullptr;

void ctrlTree::Take(bool cut) {
    Guarded("ctrlTree", [&] {
        Taken taken;
        taken.cut = cut;
        if (platform::CreateGuid(lclWorkstation, taken.token) != 0)
            throw platform::Error(platform::errors::fail, "The clipboard got no mark");
        platform::ExchangeData data;
        for (const auto& item : TopmostSelected()) {
            taken.ids.push_back(item->Id());
            data.text += (data.text.empty() ? "" : "\r\n") + item->Description();
        }
        if (taken.ids.empty()) return;
        taken.items = ItemsBelow(taken.ids);
        data.hasText = true;
        data.own = taken.token;
        lclWorkstation.clipboard.Write(data);
        lclToken = taken.token;
        lclTaken = std::move(taken);
        auto* before = std::exchange(lclTaker, this);
        if (before && before != this) before->ShowCut();
        ShowCut();
        lclState.ManualDragDropMove = cut;
        lclState.ManualDragDropCopy = !cut;
        (cut ? EvItemCut : EvItemCopy).Raise();
    });
}

void ctrlTree::ShowCut() {
    std::unordered_set<std::int32_t> cut;
    try {
        if (lclTaken.cut && Taker() == this && !TakenElsewhere())
            cut.insert(lclTaken.ids.begin(), lclTaken.ids.end());
    } catch (const std::exception& error) { // another program holds the clipboard
        lclWorkstation.log.Write("ctrlTree", error.what());
        return;
    }
    std::swap(cut, lclShownCut);
    const auto show = [this](std::int32_t id) {
        if (lclWindow && HandleOf(id)) lclWindow->SetCut(HandleOf(id), IsCut(id));
    };
    for (const auto id : cut) show(id);
    for (const auto id : lclShownCut) show(id);
}

void ctrlTree::ForgetTaken() {
    lclTaken = {};
    ShowCut();
}

std::vector<Taken::Item> ctrlTree::ItemsBelow(const std::vector<std::int32_t>& ids) const {
    std::vector<Taken::Item> items;
    for (const auto id : ids)
        if (const auto top = GetNode(id))
            Walk(top, 0, [&](const ItemPtr& one, std::int32_t parent) {
                if (one->Id() > 0) items.push_back({one, parent});
            });
    return items;
}

ctrlTree* ctrlTree::Taker() const {
    return lclTaker && !lclTaker->lclTaken.ids.empty() && lclWorkstation.clipboard.HasOwn()
               ? lclTaker
               : nullptr;
}

bool ctrlTree::TakenElsewhere() const {
    return lclWorkstation.clipboard.HasOwn() &&
           (!lclTaker || lclWorkstation.clipboard.Read().own != lclTaker->lclToken);
}

bool ctrlTree::MayPaste(std::int32_t folder) const {
    const auto* taker = Taker();
    const auto into = GetNode(folder);
    const bool moves = taker == this && lclTaken.cut;
    return taker && into && into->Id() > 0 && into->AllowChildren() &&
           MayUser(moves ? UserAction::Change : UserAction::Create) &&
           (moves || !taker->lclTaken.cut || taker->MayUser(UserAction::Delete));
}

void ctrlTree::Paste() {
    Guarded("ctrlTree", [&] {
        if (TakenElsewhere()) {
            lclWorkstation.messages.Show({Text("Wat in een ander programma geknipt of gekopieerd "
                                               "is, kan hier niet geplakt worden"),
                                          Text("Plakken"), platform::Buttons::Ok,
                                          platform::Icon::Exclamation});
            return;
        }
        auto* taker = Taker();
        if (!taker) return;
        const auto folder = FolderAt(lclSelected);
        const bool moves = taker == this && lclTaken.cut;
        if (moves ? PasteCut(folder) : PasteCopies(*taker, folder)) EvItemPaste.Raise();
    });
}

// What does not move can be pasted elsewhere.
bool ctrlTree::PasteCut(std::int32_t folder) {
    const auto here = SameDossier();
    const auto taken = lclTaken; // moving lets the host in
    const auto moved = MoveItems(taken.ids, folder);
    if (!here()) return false;
    if (lclTaken.token == taken.token) {
        std::erase_if(lclTaken.ids, [&](std::int32_t id) {
            return std::find(moved.begin(), moved.end(), id) != moved.end();
        });
        if (lclTaken.ids.empty()) {
            ForgetTaken();
            lclState.ManualDragDropMove = false;
        } else {
            ShowCut();
        }
    }
    return !moved.empty();
}

bool ctrlTree::MayCopyHere(const model::clsItem& item) const {
    return AcceptsType(item.ItemType()) &&
           (!platform::EqualNoCase(item.ItemType(), "tab") || MayUser(UserAction::CreateFolder));
}

// Others may have renamed, moved or deleted some of it since.
bool ctrlTree::RereadCut() {
    const auto token = lclTaken.token;
    lclGrid.Forget();
    if (!LoadTree() || lclTaken.token != token) return false;
    std::erase_if(lclTaken.ids, [this](std::int32_t id) { return !GetNode(id); });
    lclTaken.items = ItemsBelow(lclTaken.ids);
    if (lclTaken.ids.empty()) ThrowGone(platform::errors::notFound);
    return true;
}

// What was cut in another tree goes there once all of it stands here.
bool ctrlTree::PasteCopies(ctrlTree& source, std::int32_t folder) {
    const auto here = SameDossier();
    if (source.lclTaken.cut && (!source.RereadCut() || !here())) return false;
    const auto taken = source.lclTaken; // the message loop may bring another
    std::optional<std::string> key;
    if (lclDossierKey) key = lclDossierKey();
    if (&source == this && key && key->empty()) key.reset();
    const auto copied = CopyTaken(taken, source.lclConnection, std::move(key), folder);
    const bool some = copied.made > 0, whole = !copied.ended && copied.failed.empty();
    // Pasted again, all that stands there by now would come twice.
    const bool ends =
        taken.cut && lclTaker == &source && source.lclTaken.token == taken.token && (whole || some);
    if (ends) source.ForgetTaken();
    if (!here()) return false;
    std::string told = copied.failed.empty() ? std::string() : NotCopied(copied.failed);
    if (taken.cut && !whole && some)
        told += (told.empty() ? "" : "\r\n\r\n") +
                Text("Niet alles is geplakt. Wat geknipt was, staat ook nog op de oude plaats");
    TellFailed(told, Text("Plakken"));
    if (ends && whole) DeleteCopied(source, taken);
    return some;
}

ctrlTree::Copied ctrlTree::CopyTaken(const Taken& taken, const data::ConnectionPtr& from,
                                     std::optional<std::string> key, std::int32_t folder) {
    Operation operation(*lclLock);
    if (!operation)
        throw platform::Error(platform::errors::fail, Text("Er loopt nog een andere bewerking"));
    if (taken.items.size() > 1)
        operation.Show(Text("Plakken"), Text("Mappen en documenten worden gekopieerd."),
                       Text("Annuleren"));
    const auto here = SameDossier();
    std::shared_ptr<model::clsTree> tree; // a host that hears of a copy may load it again
    std::optional<ItemCopier> copier;
    std::unordered_map<std::int32_t, std::int32_t> folders{{0, folder}};
    Copied copied;
    int done = 0;
    for (const auto& [item, parent] : taken.items) {
        copied.ended =
            !operation.Step(done++, static_cast<int>(taken.items.size())) || !here() || !lclTree;
        if (copied.ended) return copied;
        if (tree != lclTree) copier.emplace(lclWorkstation, from, *(tree = lclTree), key);
        const auto into = folders.find(parent);
        if (into == folders.end()) continue; // below a folder that was not copied
        try {
            if (!MayCopyHere(*item))
                throw platform::Error(platform::errors::accessDenied, "It may not be made here.");
            const auto copy = copier->Copy(*item, into->second, taken.cut);
            ++copied.made;
            if (item->AllowChildren()) folders.emplace(item->Id(), copy->Id());
            AddItem(copy, into->second, false);
        } catch (const std::exception& error) {
            lclWorkstation.log.Write("ctrlTree", item->Description() + ": " + error.what());
            copied.failed.push_back(item->Description());
        }
    }
    copied.ended = !here();
    return copied;
}

// Deletes what was cut in the other tree. What someone put there since was not copied: it stays,
// with all that was cut around it. The deletion itself asks again: what could not be read, or came
// only now, must not go either.
void ctrlTree::DeleteCopied(ctrlTree& source, const Taken& taken) {
    std::unordered_set<std::int32_t> copied;
    for (const auto& [item, parent] : taken.items) copied.insert(item->Id());
    source.Refresh();
    const auto there = source.SameDossier();
    std::vector<std::string> added;
    for (const auto id : taken.ids) {
        const auto top = there() ? source.GetItem(id) : nullptr;
        if (!top) continue; // deleted by another meanwhile
        const auto before = added.size();
        source.Walk(top, 0, [&](const ItemPtr& item, std::int32_t) {
            if (item->Id() <= 0 || copied.contains(item->Id())) return;
            added.push_back(item->Description());
            lclWorkstation.log.Write("ctrlTree", "Not copied: " + added.back());
        });
        if (added.size() == before)
            source.DeleteItems({id}, nullptr,
                               [&](std::int32_t one) { return copied.contains(one); });
    }
    if (!added.empty()) TellFailed(NotCopied(added), Text("Plakken"));
}

std::string ctrlTree::NotCopied(const std::vector<std::string>& items) const {
    return Text("Niet gekopieerd: $%$", {"\r\n" + Listed(items)});
}

void ctrlTree::TellFailed(const std::string& text, const std::string& caption) const {
    if (text.empty()) return;
    lclWorkstation.messages.Show(
        {text, caption, platform::Buttons::Ok, platform::Icon::Exclamation});
}

std::vector<ItemPtr> ctrlTree::DocumentsBelow(const std::vector<std::int32_t>& ids) const {
    std::vector<ItemPtr> documents;
    std::unordered_set<std::int32_t> met;
    for (const auto id : ids)
        if (const auto top = GetNode(id))
            Walk(top, 0, [&](const ItemPtr& item, std::int32_t) {
                if (item->Id() > 0 && !item->AllowChildren() && met.insert(item->Id()).second)
                    documents.push_back(item);
            });
    return documents;
}

void ctrlTree::CopySpecial() {
    try {
        const auto folder = MakeCopyFolder(lclWorkstation);
        const auto copied =
            CopyOut(lclWorkstation, lclConnection, *lclLock, TranslationBy(lclTranslator),
                    DocumentsBelow(SelectedIds()), folder);
        if (copied.left > 0) return platform::RemoveTemporaryFolder(lclWorkstation, folder);
        if (copied.files.empty())
            throw platform::Error(platform::errors::notFound, "There is no file to copy.");
        platform::ExchangeData data;
        data.hasFiles = true;
        data.files = copied.files;
        lclWorkstation.clipboard.Write(data);
        if (!copied.failed.empty())
            throw platform::Error(platform::errors::fail, std::to_string(copied.failed.size()) +
                                                              " documents could not be copied.");
    } catch (const std::exception& error) {
        ShowError("Error copying special", {}, error);
    }
}

void ctrlTree::PasteSpecial() {
    Guarded("ctrlTree", [&] {
        const auto here = SameDossier();
        const auto accepted = AcceptedOf(lclWorkstation.clipboard.Read());
        if (accepted.files.empty() || !here()) return;
        EvItemPastedSpecial.Raise(accepted.files, static_cast<std::int32_t>(accepted.files.size()));
    });
}

// A document's link is the path of its file, a folder's the way to it within the dossier.
void ctrlTree::CopyLink() {
    try {
        model::DocumentFiles documents(lclWorkstation, lclConnection);
        platform::ExchangeData data;
        for (const auto id : SelectedIds()) {
            const auto item = GetNode(id);
            if (!item) continue;
            auto link = NodeFullPath(id);
            if (!item->AllowChildren()) {
                const auto document = documents.Of(*item);
                if (document.path.empty()) throw platform::Error(document.number, document.error);
                link = document.path;
            }
            data.text += (data.text.empty() ? "" : "\r\n") + link;
        }
        data.hasText = true;
        lclWorkstation.clipboard.Write(data);
    } catch (const std::exception& error) {
        ShowError("Error copying link", {}, error);
    }
}

} // namespace kavidex::controls
