// Putting deleted items back: the user's own deletions one after the other, and what is shown as
// deleted.
#include <algorithm>
#include <iterator>
#include <unordered_set>

#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::size_t keptDeletions = 100;

} // namespace

void ctrlTree::DeleteSelected() {
    const auto here = SameDossier();
    Deletion deletion;
    DeleteItems(SelectedIds(), &deletion);
    if (!here() || deletion.empty()) return;
    lclDeletions.push_back(std::move(deletion));
    if (lclDeletions.size() > keptDeletions) lclDeletions.erase(lclDeletions.begin());
}

void ctrlTree::UndoDeletion() {
    Guarded("ctrlTree", [&] {
        if (lclDeletions.empty()) return;
        auto last = std::move(lclDeletions.back());
        lclDeletions.pop_back();
        const auto here = SameDossier();
        auto left = PutBack(std::move(last));
        // What could not be put back now may be later.
        if (!left.empty() && here()) lclDeletions.push_back(std::move(left));
    });
}

void ctrlTree::RestoreSelected() {
    Guarded("ctrlTree", [&] {
        Deletion deletion;
        for (const auto& item : TopmostSelected())
            if (item->Id() < 0) deletion.push_back({-item->Id(), item->Description(), {}});
        PutBack(std::move(deletion));
    });
}

std::vector<ItemPtr> ctrlTree::TopmostSelected() const {
    const auto selected = SelectedIds();
    const std::unordered_set<std::int32_t> among(selected.begin(), selected.end());
    std::vector<ItemPtr> items;
    for (const auto id : selected) {
        auto above = GetParent(id);
        while (above && !among.contains(above->Id())) above = GetParent(above->Id());
        const auto item = GetNode(id);
        if (!above && item) items.push_back(item);
    }
    return items;
}

Deletion ctrlTree::PutBack(Deletion deletion) {
    const auto tree = lclTree;
    std::vector<std::int32_t> back, around, atRoot;
    Deletion left;
    std::vector<std::string> failed;
    for (auto& top : deletion) {
        try {
            auto restored = tree->RestoreItem(top.id, top.taken);
            back.push_back(top.id);
            if (restored.atRoot) atRoot.push_back(top.id);
            std::move(restored.folders.begin(), restored.folders.end(), std::back_inserter(around));
        } catch (const platform::Error& error) {
            lclWorkstation.log.Write("ctrlTree", top.description + ": " + error.what());
            failed.push_back(top.description + ": " + error.what());
            if (error.Number() != platform::errors::notFound) left.push_back(std::move(top));
        }
    }
    if (lclTree != tree) return left;
    const auto here = SameDossier();
    ClearSelectedItems();
    Refresh();
    for (const auto id : back) {
        if (!here()) return left;
        if (GetNode(id)) EvItemCreated.Raise(Info(id));
    }
    if (!here()) return left;
    TellPutBack(around, atRoot, failed);
    if (!back.empty() && here()) SelectNode(back.front(), true);
    return left;
}

// Only what the user does not see at once: items that went with them, or elsewhere, or not at all.
void ctrlTree::TellPutBack(const std::vector<std::int32_t>& around,
                           const std::vector<std::int32_t>& atRoot,
                           const std::vector<std::string>& failed) const {
    const auto names = [&](const std::vector<std::int32_t>& ids) {
        std::vector<std::string> lines;
        for (const auto id : ids)
            if (const auto item = GetNode(id)) lines.push_back(item->Description());
        for (const auto& line : lines) lclWorkstation.log.Write("PutBack", line);
        return "\r\n" + Listed(lines);
    };
    std::string text;
    const auto add = [&](const std::string& more) { text += (text.empty() ? "" : "\r\n") + more; };
    if (!around.empty()) add(Text("Ook de verwijderde map is teruggezet: $%$", {names(around)}));
    if (!atRoot.empty())
        add(Text("De map bestaat niet meer; op het hoogste niveau teruggezet: $%$",
                 {names(atRoot)}));
    if (!failed.empty()) add(Text("Niet teruggezet: $%$", {"\r\n" + Listed(failed)}));
    if (text.empty()) return;
    lclWorkstation.messages.Show(
        {text, Text("Terugzetten"), platform::Buttons::Ok,
         failed.empty() ? platform::Icon::Information : platform::Icon::Exclamation});
}

} // namespace kavidex::controls
