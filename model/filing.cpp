#include "model/filing.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "data/logText.h"
#include "data/modData.h"
#include "model/Store.h"
#include "model/clsDocument.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/storePath.h"
#include "model/treeRows.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

constexpr std::string_view unnamedType = "bin";
constexpr std::size_t longestType = 20, longestText = 255;
constexpr int attempts = 20; // at rows whose file is there already

// Types that mean something else to the tree.
constexpr std::array<std::string_view, 5> takenTypes = {
    itemTypes::tab, itemTypes::userGroup, itemTypes::users, itemTypes::user, itemTypes::userPost};

bool CanBeType(std::string_view type) {
    const auto plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
    };
    return !type.empty() && type.size() <= longestType &&
           std::all_of(type.begin(), type.end(), plain) && !platform::IsDeviceName(type) &&
           std::find(takenTypes.begin(), takenTypes.end(), type) == takenTypes.end();
}

std::string DescriptionOf(std::string_view path) {
    std::string name = platform::FileName(path);
    if (!CanBeType(platform::LowerCase(platform::Extension(name)))) return name;
    const std::string bare = platform::WithoutExtension(name);
    return platform::TrimView(bare).empty() ? name : bare;
}

bool IsReadable(platform::Files& files, const std::string& path) {
    try {
        files.Reader(path);
        return true;
    } catch (const platform::Error&) {
        return false;
    }
}

} // namespace

// One document's steps in their order; whatever goes wrong, the source is there until the last.
class Filing {
public:
    Filing(const platform::Workstation& workstation, clsTree& tree, FilingRequest request)
        : lclWorkstation(workstation), lclTree(tree), lclRequest(std::move(request)),
          lclDocument(workstation) {}
    ~Filing() {
        if (lclOpen) TakeBack();
    }
    Filing(const Filing&) = delete;
    Filing& operator=(const Filing&) = delete;

    const FilingRequest& Request() const { return lclRequest; }
    FilingResult& Result() { return lclResult; }

    void Prepare() {
        lclResult.ofSource = true;
        FindSource();
        lclResult.ofSource = false;
        FindFolder();
        FindStore();
        DescribeDocument();
        try {
            // No lock is held meanwhile.
            lclCopy = lclDocument.CopyAside(lclRequest.source, lclRequest.atRest);
        } catch (const platform::Error& error) {
            namespace errors = platform::errors;
            lclResult.ofSource = error.Number() == errors::sharingViolation ||
                                 (error.Number() != errors::diskFull &&
                                  !IsReadable(lclWorkstation.files, lclRequest.source));
            throw;
        }
    }

    // Within a transaction. False when every number's file is there already: then the marked rows
    // should stay, so that the next filing gets past them.
    bool Write() {
        if (!InsertRow()) return false;
        AddItem();
        lclResult.path = lclDocument.StorePath();
        lclDocument.PutInPlace(lclCopy);
        return true;
    }

    void Finish() {
        lclOpen = false;
        lclResult.docId = lclDocument.DocId();
        lclResult.filed = true;
        if (lclRequest.deleteSource)
            RemoveCopied(lclWorkstation, lclRequest.source, lclResult.path);
    }

    void Failed(const std::exception& error) {
        const auto* const known = dynamic_cast<const platform::Error*>(&error);
        lclResult.number = known ? known->Number() : platform::errors::fail;
        lclResult.error = lclRequest.source + ": " + error.what();
        lclWorkstation.log.Write("FileDocument", lclRequest.source + ": " + data::InLog(error));
    }

    // The rows go first: a file without one is found and harmless, a row without its file would
    // show a document that is not there. False when rows may be left.
    bool TakeBack() noexcept {
        lclOpen = false;
        const bool rowsGone = Undo([&] {
            if (lclResult.item) lclFolder->ChildCollection()->Remove(lclResult.item->Id());
            lclResult.item = nullptr;
            RemoveRows();
        });
        Undo([&] {
            if (lclCopy.empty()) return;
            if (lclWorkstation.files.FileExists(lclCopy))
                RemoveFile(lclCopy);
            else if (rowsGone)
                RemoveFile(lclResult.path);
        });
        lclResult.path.clear();
        return rowsGone;
    }

private:
    void FindSource() const {
        if (lclRequest.source.empty())
            throw platform::Error(platform::errors::notFound, "The file has no name.");
        if (lclWorkstation.files.Attributes(lclRequest.source) & platform::attributes::directory)
            throw platform::Error(platform::errors::invalidArgument, "It is a folder, not a file.");
    }

    void FindFolder() {
        const std::string name = "The folder " + Number(lclRequest.folderId);
        lclFolder = lclRequest.folderId > 0 ? lclTree.GetItem(lclRequest.folderId, "") : nullptr;
        if (!lclFolder)
            throw platform::Error(platform::errors::notFound, name + " does not exist.");
        if (!lclFolder->AllowChildren())
            throw platform::Error(platform::errors::invalidArgument, name + " takes no documents.");
        CheckFolderLives();
    }

    // Someone else may have deleted it since this tree was loaded. Told before the file is copied;
    // what is deleted meanwhile, the item's insert refuses.
    void CheckFolderLives() const {
        const std::string id = Number(lclRequest.folderId);
        const data::RecordsetPtr row =
            Store(lclTree.DbConnection())
                .Read("Select TreeItemId from tblTreeItem where TreeItemId = " + id);
        if (row->Eof())
            throw platform::Error(platform::errors::notFound,
                                  "The folder " + id + " does not exist any more.");
    }

    void FindStore() {
        std::string base = lclRequest.baseSaveDirectory;
        if (base.empty())
            base = StoreOrTold(lclWorkstation, lclTree.DbConnection(), lclTree.Translation());
        if (base.empty())
            throw platform::Error(platform::errors::pathNotFound, "There is no document store.");
        lclDocument.SetBaseSaveDirectory(base);
    }

    void DescribeDocument() {
        const platform::DateTime now = lclWorkstation.clock.Now();
        const bool named = !lclRequest.description.empty();
        const bool signedBy = !lclRequest.insertedBy.empty();
        const bool dated = !lclRequest.insertDate.empty();
        lclDocument.SetDbConnection(lclTree.DbConnection());
        lclDocument.SetExternalId(lclRequest.externalId);
        lclDocument.SetInsertedBy(signedBy ? lclRequest.insertedBy : lclWorkstation.user.Name());
        lclDocument.SetInsertDate(dated ? lclRequest.insertDate : platform::DateNumber(now));
        lclDocument.SetInsertTime(dated ? lclRequest.insertTime : platform::TimeNumber(now));
        lclDocument.SetDescription(
            ColumnText(named ? lclRequest.description : DescriptionOf(lclRequest.source)));
        lclDocument.SetDocType(DocumentTypeOf(lclRequest.source));
        lclDocument.SetReadOnly(lclRequest.readOnly);
        if (lclRequest.mail) SetMail(*lclRequest.mail);
    }

    void SetMail(const MailInfo& mail) {
        lclDocument.SetSendTo(ColumnText(mail.sendTo));
        lclDocument.SetRecievedFrom(ColumnText(mail.recievedFrom));
        lclDocument.SetSendOn(ColumnText(mail.sendOn));
        lclDocument.SetRecievedOn(ColumnText(mail.recievedOn));
        lclDocument.SetNumberOfAttatchements(mail.numberOfAttatchements);
    }

    // False when every number's file was there already.
    bool InsertRow() {
        lclInserted = true;
        for (int attempt = 0; attempt < attempts; ++attempt) {
            lclDocument.SetDocId(0);
            lclDocument.InsertNewRow();
            if (!lclDocument.AllreadyExists()) return true;
        }
        return false;
    }

    void AddItem() {
        lclResult.item =
            lclTree.AddChildItem(0, lclDocument.DocType(), nullptr, lclDocument.DocId(),
                                 lclDocument.Description(), lclRequest.folderId);
        if (!lclResult.item)
            throw platform::Error(platform::errors::fail, "The folder did not take the document.");
    }

    template <class Step>
    bool Undo(Step step) noexcept {
        try {
            step();
            return true;
        } catch (const std::exception& error) {
            lclWorkstation.log.Write("FileDocument",
                                     "Document " + Number(lclDocument.Id()) +
                                         " could not be taken back: " + data::InLog(error));
            return false;
        }
    }

    // What is there still, since the engine has no transactions or a commit failed halfway.
    void RemoveRows() {
        if (!lclInserted || !lclDocument.IsNewRowThere()) return;
        const Store store(lclTree.DbConnection());
        Transaction transaction(store, lclWorkstation);
        if (lclDocument.DocId() > 0)
            store.Write("Delete from tblTreeItem where ItemId = " + Number(lclDocument.DocId()) +
                        " and Type = " + data::SqlValue(lclDocument.DocType()));
        lclDocument.RemoveNewRow();
        transaction.Commit();
    }

    // A copy is as read-only as its source.
    void RemoveFile(const std::string& path) {
        platform::Files& files = lclWorkstation.files;
        if (files.Attributes(path) & platform::attributes::readOnly)
            files.SetAttributes(path, platform::attributes::normal);
        files.Remove(path);
    }

    const platform::Workstation& lclWorkstation;
    clsTree& lclTree;
    const FilingRequest lclRequest;
    FilingResult lclResult;
    clsDocument lclDocument;
    clsItemPtr lclFolder;
    std::string lclCopy; // under its temporary name
    bool lclInserted = false;
    bool lclOpen = true; // neither finished nor taken back
};

Filings::Filings(const platform::Workstation& workstation, clsTree& tree)
    : lclWorkstation(workstation), lclTree(tree) {}

Filings::~Filings() = default;

std::optional<FilingResult> Filings::Prepare(const FilingRequest& request) {
    auto filing = std::make_unique<Filing>(lclWorkstation, lclTree, request);
    try {
        filing->Prepare();
        lclWaiting.push_back(std::move(filing));
        return std::nullopt;
    } catch (const std::exception& error) {
        filing->TakeBack();
        filing->Failed(error);
        return std::move(filing->Result());
    }
}

std::vector<FilingResult> Filings::Write() {
    const auto writing = std::exchange(lclWaiting, {});
    std::vector<FilingResult> results;
    if (writing.empty()) return results;
    try {
        // All of it becomes true with one commit: the rows, and the files' names just before.
        const Store store(lclTree.DbConnection());
        Transaction transaction(store, lclWorkstation);
        std::set<NodeId> held;
        for (const auto& filing : writing) {
            if (const auto folder = filing->Request().folderId; held.insert(folder).second)
                HoldNode(store, folder); // before a document's row is read
            if (!filing->Write()) {
                if (writing.size() == 1) transaction.Commit();
                throw platform::Error(
                    platform::errors::alreadyExists,
                    "The store already holds files under the new documents' numbers.");
            }
        }
        transaction.Commit();
    } catch (const std::exception& error) {
        bool gone = true;
        for (const auto& filing : writing) gone = filing->TakeBack() && gone;
        // What may be there still must not come in twice.
        if (writing.size() > 1 && gone) return OneByOne(writing);
        for (const auto& filing : writing) filing->Failed(error);
    }
    for (const auto& filing : writing) {
        try {
            if (filing->Result().number == 0) filing->Finish();
        } catch (const std::exception& error) { // filed, whatever becomes of its source
            filing->Failed(error);
        }
        results.push_back(std::move(filing->Result()));
    }
    return results;
}

std::vector<FilingResult> Filings::OneByOne(const std::vector<std::unique_ptr<Filing>>& refused) {
    std::vector<FilingResult> results;
    for (const auto& filing : refused)
        results.push_back(FileDocument(lclWorkstation, lclTree, filing->Request()));
    return results;
}

FilingResult FileDocument(const platform::Workstation& workstation, clsTree& tree,
                          const FilingRequest& request) {
    Filings one(workstation, tree);
    if (auto refused = one.Prepare(request)) return std::move(*refused);
    return std::move(one.Write().front());
}

std::string DocumentTypeOf(std::string_view fileName) {
    const std::string type = platform::LowerCase(platform::Extension(platform::FileName(fileName)));
    return CanBeType(type) ? type : std::string(unnamedType);
}

std::string ColumnText(std::string_view text, std::size_t others) {
    std::size_t units = 0; // of UTF-16, as columns are measured
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) == 0x80) continue;
        units += byte >= 0xF0 ? 2 : 1;
        if (units + others > longestText) return std::string(text.substr(0, i));
    }
    return std::string(text);
}

} // namespace kavidex::model
