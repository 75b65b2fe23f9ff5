// How the editor of default folders changes its tree.
#include <algorithm>

#include "controls/admin/ctlDefaultFolders.h"
#include "platform/text.h"

namespace kavidex::controls {

void ctlDefaultFolders::Add() {
    if (lclType.id == 0 || !MayChange()) return;
    const auto* at = Chosen();
    Folder made{lclNext++, at ? at->parent : 0, 0, {}, {}};
    const auto base = Text("Nieuwe map");
    made.name = base;
    for (int n = 2; HasNamed(made.parent, made.name); ++n)
        made.name = base + " " + std::to_string(n);
    // Behind the chosen one and all that it holds.
    auto place = lclFolders.end();
    if (at) {
        place = std::find_if(lclFolders.begin(), lclFolders.end(),
                             [&](const Folder& folder) { return folder.id == at->id; });
        const auto top = at->id;
        do ++place;
        while (place != lclFolders.end() && LiesWithin(place->id, top));
    }
    const auto id = made.id;
    lclFolders.insert(place, std::move(made));
    Changed();
    Show();
    Choose(id);
    Form()["treFolders"].EditItem(id);
}

void ctlDefaultFolders::Remove() {
    const auto* folder = Chosen();
    if (!folder || !MayChange()) return;
    const auto top = folder->id;
    std::vector<std::int32_t> gone;
    for (const auto& other : lclFolders)
        if (LiesWithin(other.id, top)) gone.push_back(other.id);
    std::erase_if(lclFolders, [&](const Folder& other) {
        return std::find(gone.begin(), gone.end(), other.id) != gone.end();
    });
    Changed();
    Show();
}

void ctlDefaultFolders::Editing(forms::FieldEvent& event) { event.refused = !MayChange(); }

void ctlDefaultFolders::Tick(forms::FieldEvent& event) {
    auto* folder = Find(event.item);
    const auto* item = event.field.Find(event.item);
    if (!folder || !item || !MayChange()) return Show();
    folder->automatic = item->checked;
    Changed();
}

void ctlDefaultFolders::DragOver(forms::FieldEvent& event) {
    event.refused = event.source != &event.field || event.dragged.empty() || !MayChange() ||
                    LiesWithin(event.item, event.dragged.front());
}

void ctlDefaultFolders::Dropped(forms::FieldEvent& event) {
    Place(event.dragged.front(), event.item, event.place);
}

void ctlDefaultFolders::NameType() {
    auto* folder = Chosen();
    const auto& type = Form()["txtTabType"].Text();
    if (!folder || folder->type == type) return;
    folder->type = type;
    Changed();
}

void ctlDefaultFolders::Rename(forms::FieldEvent& event) {
    auto* folder = Find(event.item);
    const auto name = platform::Trim(event.text);
    event.refused = !folder || name == folder->name || !MayBeNamed(*folder, name);
    if (event.refused) return;
    folder->name = name;
    event.refused = name != event.text;
    Changed();
    if (event.refused) Show();
    ShowChosen();
}

void ctlDefaultFolders::MoveBy(int steps) {
    const auto* folder = Chosen();
    if (!folder || !MayChange()) return;
    std::vector<std::int32_t> siblings;
    for (const auto& other : lclFolders)
        if (other.parent == folder->parent) siblings.push_back(other.id);
    const auto at = std::find(siblings.begin(), siblings.end(), folder->id) - siblings.begin();
    const auto to = at + steps;
    if (to < 0 || to >= static_cast<std::ptrdiff_t>(siblings.size())) return;
    Place(folder->id, siblings[static_cast<std::size_t>(to)],
          steps < 0 ? forms::Place::Before : forms::Place::After);
}

bool ctlDefaultFolders::Indent(bool deeper) {
    const auto* folder = Chosen();
    if (!folder || !MayChange()) return true;
    if (!deeper) {
        if (folder->parent != 0) Place(folder->id, folder->parent, forms::Place::After);
        return true;
    }
    std::int32_t before = 0;
    for (const auto& other : lclFolders) {
        if (other.id == folder->id) break;
        if (other.parent == folder->parent) before = other.id;
    }
    if (before != 0) Place(folder->id, before, forms::Place::On);
    return true;
}

// Takes the folder with all that it holds out of the list and puts it there again.
void ctlDefaultFolders::Place(std::int32_t id, std::int32_t target, forms::Place place) {
    if (!Find(id) || LiesWithin(target, id) || !MayChange()) return;
    const auto* beside = Find(target);
    const auto parent = !beside ? 0 : place == forms::Place::On ? target : beside->parent;
    auto probe = *Find(id);
    if (probe.parent != parent) {
        probe.parent = parent;
        if (!MayBeNamed(probe, probe.name)) return;
    }
    std::vector<Folder> moved, rest;
    for (const auto& folder : lclFolders)
        (LiesWithin(folder.id, id) ? moved : rest).push_back(folder);
    moved.front().parent = parent;
    auto at = rest.end();
    if (beside) {
        at = std::find_if(rest.begin(), rest.end(),
                          [&](const Folder& folder) { return folder.id == target; });
        if (place != forms::Place::Before)
            at = std::find_if(at, rest.end(),
                              [&](const Folder& folder) { return !LiesWithin(folder.id, target); });
    }
    rest.insert(at, moved.begin(), moved.end());
    lclFolders = std::move(rest);
    Changed();
    Show();
    Choose(id);
}

void ctlDefaultFolders::InsertToken() {
    auto* folder = Chosen();
    const auto* token = Form()["cmbToken"].Find(Form()["cmbToken"].Selected());
    if (!folder || !token || !MayChange()) return;
    const auto name = platform::Trim(folder->name + " " + token->Cell());
    if (!MayBeNamed(*folder, name)) return;
    const auto id = folder->id;
    folder->name = name;
    Changed();
    Show();
    Choose(id);
}

} // namespace kavidex::controls
