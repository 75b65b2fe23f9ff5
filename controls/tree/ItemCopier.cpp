#include "controls/tree/ItemCopier.h"

#include "model/clsDocument.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/filing.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

using ItemPtr = std::shared_ptr<model::clsItem>;

ItemPtr AddNote(const platform::Workstation& workstation, model::clsTree& tree,
                std::string_view dossierKey, std::string_view description, std::int32_t folder) {
    const auto now = workstation.clock.Now();
    model::clsDocument document(workstation);
    document.SetTranslation(tree.Translation());
    document.SetDatabaseObject(tree.DbConnection());
    document.SetExternalId(dossierKey);
    document.SetDocType("nnt");
    document.SetDescription(description);
    document.SetInsertedBy(workstation.user.Name());
    document.SetInsertDate(platform::DateNumber(now));
    document.SetInsertTime(platform::TimeNumber(now));
    if (!document.SaveNewRow()) return nullptr; // the document has told the user why
    if (document.AllreadyExists())
        throw platform::Error(platform::errors::alreadyExists,
                              "The store already holds a file " + std::to_string(document.DocId()));
    try {
        if (auto item = tree.AddChildItem(0, "nnt", nullptr, document.DocId(), description, folder))
            return item;
    } catch (const std::exception&) {
        document.RemoveNewRow(); // a document in no folder is out of reach
        throw;
    }
    document.RemoveNewRow();
    return nullptr;
}

ItemPtr ItemCopier::Copy(const model::clsItem& item, std::int32_t folder, bool moves) {
    const auto document = lclDocuments.Of(item);
    ItemPtr copy;
    if (document.outcome == model::DocumentLook::NoDocument)
        copy = lclTree.AddChildItem(0, item.ItemType(), nullptr, item.ItemId(), item.Description(),
                                    folder);
    else if (document.outcome == model::DocumentLook::FileMissing && !moves &&
             platform::EqualNoCase(document.type, "nnt"))
        copy = AddNote(lclWorkstation, lclTree, lclDossierKey.value_or(document.externalId),
                       item.Description(), folder);
    else
        copy = CopyDocument(document, item, folder, moves);
    if (!copy) throw platform::Error(platform::errors::fail, "The folder did not take it.");
    return copy;
}

ItemPtr ItemCopier::CopyDocument(const model::DocumentFile& document, const model::clsItem& item,
                                 std::int32_t folder, bool moves) {
    if (!document.HasFile()) throw platform::Error(document.number, document.error);
    model::FilingRequest request;
    request.source = document.path;
    request.folderId = folder;
    request.externalId = lclDossierKey.value_or(document.externalId);
    request.description = item.Description();
    request.mail = document.extraInfo;
    request.readOnly = document.readOnly;
    if (moves) { // it is the same document that lies elsewhere then
        request.insertedBy = document.insertedBy;
        request.insertDate = document.insertDate;
        request.insertTime = document.insertTime;
    }
    const auto filed = model::FileDocument(lclWorkstation, lclTree, request);
    if (!filed) throw platform::Error(filed.number, filed.error);
    return filed.item;
}

} // namespace kavidex::controls
