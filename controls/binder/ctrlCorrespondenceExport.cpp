// Counting the dossier's documents and copying them out of the store.
#include "controls/binder/ctrlCorrespondenceGuarded.h"
#include "controls/common/CopyOut.h"
#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::int32_t notImplemented = static_cast<std::int32_t>(0x80004001);

} // namespace

std::int32_t ctrlCorrespondence::ContainsDocuments(std::string_view prmType) const {
    return Usable() ? lclTree->CountDocuments(prmType) : 0;
}

std::int32_t ctrlCorrespondence::ExportFiles(std::string_view prmDirectory) {
    std::int32_t result = -1;
    Guarded("ExportFiles", [&] {
        if (!Usable() || platform::TrimView(prmDirectory).empty()) return;
        lclWorkstation.files.CreateDirectories(prmDirectory);
        const auto copied =
            CopyOut(lclWorkstation, DbConnection(), lclLock, TranslationBy(lclTranslator),
                    lclTree->AllItems(), prmDirectory);
        result = copied.failures == 0 ? static_cast<std::int32_t>(copied.files.size())
                                      : -copied.failures;
    });
    return result;
}

std::vector<std::string> ctrlCorrespondence::ExportSelectedFiles(bool Merge,
                                                                 bool AddDescriptionPage) {
    if (Merge || AddDescriptionPage)
        throw platform::Error(notImplemented,
                              "Merging and description pages need the image component",
                              "ctrlCorrespondence");
    std::vector<std::string> copies;
    Guarded("ExportSelectedFiles", [&] {
        if (!Usable()) return;
        copies = CopyOut(lclWorkstation, DbConnection(), lclLock, TranslationBy(lclTranslator),
                         lclTree->SelectedItems(), MakeCopyFolder(lclWorkstation))
                     .files;
    });
    return copies;
}

} // namespace kavidex::controls
