// Counting the dossier's documents and copying them out of the store.
#include <unordered_set>

#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/common/Listed.h"
#include "controls/common/MergeOut.h"
#include "controls/lists/DocumentRows.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Messages.h"
#include "platform/TemporaryFolder.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

// In the order of the tree; with a folder goes all that lies below it.
std::vector<ItemPtr> DocumentsOf(const ctrlTree& tree) {
    std::unordered_set<std::int32_t> wanted;
    for (const auto& item : tree.SelectedItems()) wanted.insert(item->Id());
    std::vector<ItemPtr> documents;
    for (const auto& item : tree.AllItems()) {
        const auto parent = tree.GetParent(item->Id());
        const bool taken = wanted.contains(item->Id()) || (parent && wanted.contains(parent->Id()));
        if (!taken) continue;
        wanted.insert(item->Id());
        if (!item->AllowChildren()) documents.push_back(item);
    }
    return documents;
}

} // namespace

std::int32_t ctrlCorrespondence::ContainsDocuments(std::string_view prmType) const {
    return Usable() ? lclTree->CountDocuments(prmType) : 0;
}

void ctrlCorrespondence::TellNotExported(const std::vector<std::string>& descriptions) const {
    if (descriptions.empty()) return;
    const auto lines = "\r\n" + Listed(descriptions, TranslationBy(lclTranslator));
    lclWorkstation.messages.Show({Text("Niet geëxporteerd: $%$", {lines}),
                                  Text("Export waarschuwing"), platform::Buttons::Ok,
                                  platform::Icon::Exclamation});
}

std::int32_t ctrlCorrespondence::ExportFiles(std::string_view prmDirectory) {
    std::int32_t result = -1;
    Guarded("ExportFiles", [&] {
        if (!Usable() || platform::TrimView(prmDirectory).empty()) return;
        lclWorkstation.files.CreateDirectories(prmDirectory);
        const auto copied =
            CopyOut(lclWorkstation, DbConnection(), lclLock, TranslationBy(lclTranslator),
                    lclTree->AllItems(), prmDirectory);
        const auto missing = static_cast<std::int32_t>(copied.failed.size() + copied.left);
        result = missing == 0 ? static_cast<std::int32_t>(copied.files.size()) : -missing;
        TellNotExported(copied.failed);
    });
    return result;
}

std::vector<std::string> ctrlCorrespondence::ExportSelectedFiles(bool Merge,
                                                                 bool AddDescriptionPage) {
    std::vector<std::string> copies;
    Guarded("ExportSelectedFiles", [&] {
        if (!Usable() || !lclTree->Tree()) return;
        MergeOrder order;
        order.documents = DocumentsOf(*lclTree);
        order.merge = Merge;
        order.descriptionPage = AddDescriptionPage;
        order.marks = HasRight("ViewAnnotations");
        order.title = platform::Trim(lclTree->Tree()->Description());
        if (order.title.empty()) order.title = Text("Dossier");
        const auto now = lclWorkstation.clock.Now();
        order.heading = {lclState.ExternalId,
                         InsertMoment(platform::DateNumber(now), platform::TimeNumber(now))};
        order.place = [&](const model::clsItem& item) {
            const auto parent = lclTree->GetParent(item.Id());
            return parent ? lclTree->NodeFullPath(parent->Id()) : std::string();
        };
        const auto folder = MakeCopyFolder(lclWorkstation);
        const auto copied = Merge || AddDescriptionPage
                                ? MergeOut(lclWorkstation, DbConnection(), lclLock,
                                           TranslationBy(lclTranslator), order, folder)
                                : CopyOut(lclWorkstation, DbConnection(), lclLock,
                                          TranslationBy(lclTranslator), order.documents, folder);
        if (copied.left > 0) return platform::RemoveTemporaryFolder(lclWorkstation, folder);
        copies = copied.files;
        TellNotExported(copied.failed);
    });
    return copies;
}

} // namespace kavidex::controls
