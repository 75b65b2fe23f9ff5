// Pages that the viewer exports become a document of their own, beside the one they come from.
#include "controls/binder/ctrlCorrespondence.h"
#include "controls/tree/ctrlTree.h"
#include "imaging/PageOperations.h"
#include "mail/MailNames.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

bool ctrlCorrespondence::FilePages(const std::shared_ptr<model::clsItem>& source,
                                   const std::string& file,
                                   const std::vector<std::int32_t>& pages) {
    const auto folder = source ? lclTree->GetParent(source->Id()) : nullptr;
    if (!folder || pages.empty())
        throw platform::Error(platform::errors::invalidArgument,
                              "The document of these pages is not in the open dossier");
    auto& files = lclWorkstation.files;
    std::string name = source->Description() + " (";
    for (const auto page : pages)
        name += (page == pages.front() ? "" : ", ") + std::to_string(page);
    const auto made =
        mail::FreePath(files, files.TemporaryFolder(), mail::SafeName(name + ")"), ".tif");
    imaging::ExtractPages(files, file, {pages.begin(), pages.end()}, made);
    const auto result = AddFiles({made}, {}, folder->Id(), false, false);
    try {
        files.Remove(made);
    } catch (const platform::Error& error) {
        lclWorkstation.log.Write("ExportPages", error.what());
    }
    return result == addFiles::done;
}

} // namespace kavidex::controls
