// New dossiers, and folders made by lists of names.
#include <map>

#include "controls/tree/DefaultTabs.h"
#include "controls/tree/ctrlTree.h"
#include "data/clsSettings.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

// A failure on tables that nobody brought up to date says what to do about it: this control itself
// never changes them.
bool CreateRow(model::clsTree& tree, const data::ConnectionPtr& connection,
               const platform::Workstation& workstation) {
    try {
        return tree.CreateNew();
    } catch (const platform::Error& error) {
        data::clsSettings settings(workstation);
        settings.SetDbConnection(connection);
        std::string version;
        if (!settings.GetSetting("Build", "DbVersion", version)) version = "0";
        if (version == data::currentVersion) throw;
        throw platform::Error(error.Number(),
                              "The tables of this database are of version " + version +
                                  ", needed is " + std::string(data::currentVersion) +
                                  ". Handing the connection to the binder control first brings "
                                  "them up to date. (" +
                                  error.what() + ")",
                              error.Source());
    }
}

// Folders of these names, within each other where a name is a path; how many were made. `itemOf`
// gives the item of an id, `make` a new folder, null when it was refused.
template <class ItemOf, class MakeFolder>
std::int32_t MakePaths(const std::vector<std::string>& names, std::int32_t top,
                       const platform::DateTime& now, ItemOf itemOf, MakeFolder make) {
    std::int32_t made = 0;
    std::map<std::string, std::int32_t> folders; // that were made just now, by their paths
    for (const auto& name : names) {
        auto parent = top;
        std::string path;
        const auto steps = platform::Split(name, '\\');
        for (std::size_t i = 0; i < steps.size() && parent != 0; ++i) {
            path += '\\' + steps[i];
            const bool last = i + 1 == steps.size();
            if (const auto known = folders.find(path); !last && known != folders.end()) {
                parent = known->second;
                continue;
            }
            const auto around = itemOf(parent);
            const auto siblings = around ? around->ChildCollection() : nullptr;
            const auto number = siblings ? static_cast<int>(siblings->Count()) + 1 : 1;
            const auto folder = make(FillTokens(steps[i], now, number), parent);
            parent = folder ? folder->Id() : 0;
            folders[path] = parent;
            if (folder) ++made;
        }
    }
    return made;
}

} // namespace

bool ctrlTree::CreateNew(std::string_view description, std::string_view listOfDefaultTabs) {
    const auto tree = CreateTree(description, listOfDefaultTabs);
    if (tree) ShowNew(tree);
    return tree != nullptr;
}

std::shared_ptr<model::clsTree> ctrlTree::CreateTree(std::string_view description,
                                                     std::string_view listOfDefaultTabs) {
    std::shared_ptr<model::clsTree> created;
    Guarded("CreateNew", [&] {
        if (!lclConnection) return;
        const bool typed = listOfDefaultTabs.empty() && !lclState.DossierType.empty() &&
                           !platform::EqualNoCase(lclState.DossierType, "Dossiermap");
        // Before anything is made: a dossier without its folders would stay without them.
        const auto tabs = DefaultTabs(typed ? "Dossiertype=" + lclState.DossierType
                                            : std::string(listOfDefaultTabs),
                                      lclConnection, lclWorkstation);
        auto tree = std::make_shared<model::clsTree>(lclWorkstation);
        tree->SetTranslation(TranslationBy(lclTranslator));
        tree->SetOrderByName(lclState.OrderByName);
        tree->SetSortFoldersAndDocs(lclState.FoldersAndDocs);
        tree->SetDbConnection(lclConnection);
        tree->SetDescription(model::ColumnText(description));
        tree->SetNewEnabled(lclState.NewEnabled);
        tree->SetDeleteEnabled(lclState.DeleteEnabled);
        tree->SetUpdateEnabled(lclState.UpdateEnabled);
        if (!CreateRow(*tree, lclConnection, lclWorkstation)) return;
        created = std::move(tree);
        WriteTabs(*created, tabs);
    });
    return created;
}

// A folder that the store refuses is told; the dossier is there without it.
void ctrlTree::WriteTabs(model::clsTree& tree, const std::vector<std::string>& names) const {
    MakePaths(
        names, tree.Item()->Id(), lclWorkstation.clock.Now(),
        [&](std::int32_t parent) { return tree.GetItem(parent, {}); },
        [&](const std::string& name, std::int32_t parent) {
            ItemPtr folder;
            Guarded("Add", [&] { folder = tree.AddChildTab(model::ColumnText(name), parent); });
            return folder;
        });
}

void ctrlTree::ShowNew(const std::shared_ptr<model::clsTree>& tree) {
    Guarded("CreateNew", [&] {
        ForgetTree();
        ++lclLoads;
        lclTree = tree;
        lclState.Description = tree->Description();
        lclState.TreeId = tree->TreeId();
        PropertyChanged.Raise("TreeId");
        Fill();
        if (!Root()) return;
        std::vector<ItemPtr> made;
        Walk(tree->Item(), 0, [&](const ItemPtr& item, std::int32_t parent) {
            if (parent != 0) made.push_back(item);
        });
        for (const auto& folder : made)
            if (lclTree == tree) EvItemCreated.Raise(Info(folder->Id())); // a host may leave it
    });
}

std::int32_t ctrlTree::fncGetAndCreateTabs(std::string_view listOfTabs, std::int32_t parentId) {
    std::int32_t made = 0;
    const bool done = Guarded("fncGetAndCreateTabs", [&] {
        made = MakeTabs(DefaultTabs(listOfTabs, lclConnection, lclWorkstation), parentId);
    });
    return done ? made : -1;
}

std::int32_t ctrlTree::MakeTabs(const std::vector<std::string>& names, std::int32_t parentId) {
    return MakePaths(
        names, parentId, lclWorkstation.clock.Now(),
        [&](std::int32_t parent) { return GetNode(parent); },
        [&](const std::string& name, std::int32_t parent) { return AddTab(name, parent); });
}

} // namespace kavidex::controls
