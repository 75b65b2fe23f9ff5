#include "model/IntegrityCheck.h"

#include <cstdlib>
#include <functional>
#include <unordered_map>
#include <unordered_set>

#include "model/Store.h"
#include "model/clsItemCol.h"
#include "model/storePath.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

using Id = std::int64_t;

constexpr std::string_view faultNames[] = {
    "document without file", "document out of the store", "file without document",
    "item without document", "document without item",     "extra information without document",
    "item without parent",   "item out of reach",         "tree without root",
    "tree without dossier",  "relation without tree",     "relation without key",
    "ids out of pair",       "row without working id",    "working id used twice",
};

struct Document {
    Id key;
    std::string path; // below the store's root
    bool live, note, inTree = false;
};

struct Node {
    Id key, parent;
    enum class Reach { Unknown, Asked, Top, Lost } reach = Reach::Unknown;
};

struct Tree {
    Id key, topItem;
};

class Check {
public:
    Check(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
          std::string_view storeRoot)
        : lclWorkstation(workstation), lclStore(connection),
          lclRoot(storeRoot.empty() ? FindStore(workstation, connection).value_or("")
                                    : WithBackslash(storeRoot)) {}

    std::vector<Finding> Run() {
        if (!lclRoot.empty()) NeedStore();
        ReadDocuments();
        ReadTrees();
        ReadItems();
        ReadRelations();
        ReadExtraInfo();
        CheckDocuments();
        CheckItems();
        CheckTrees();
        CheckFiles();
        return std::move(lclFindings);
    }

private:
    void Found(Fault fault, Id id, std::string detail) {
        lclFindings.push_back({fault, id, std::move(detail)});
    }

    void EachRow(std::string_view statement, const std::function<void(data::Recordset&)>& visit) {
        const data::RecordsetPtr rows = lclStore.Read(statement);
        for (; !rows->Eof(); rows->MoveNext()) visit(*rows);
        rows->Close();
    }

    static Id Field(const data::Recordset& row, std::size_t field) {
        return data::ToInt64(row.Get(field));
    }

    // Whether the working id is one: its row's key, or that negated. `taken`: the live ones so far.
    bool WorkingId(Id key, Id id, std::string_view table, std::unordered_set<Id>& taken) {
        const std::string row = std::string(table) + " row " + Number(key);
        if (id == 0) {
            Found(Fault::RowWithoutWorkingId, key, row);
            return false;
        }
        if (std::abs(id) != std::abs(key))
            Found(Fault::IdsOutOfPair, key, row + " has the working id " + Number(id));
        if (!taken.insert(id).second) {
            Found(Fault::DuplicateWorkingId, key, row + ": " + Number(id) + " is another row's");
            return false;
        }
        return true;
    }

    void ReadDocuments() {
        std::unordered_set<Id> taken;
        EachRow("Select Id, DocId, InsertDate, Type, Description from tblDocument",
                [&](data::Recordset& row) {
                    const Id key = Field(row, 0), docId = Field(row, 1);
                    const std::string type = TrimmedText(row.Get(3));
                    // Marked by the insert because its file was there: not a document.
                    const bool marked =
                        docId == 0 && TrimmedText(row.Get(4)) == "Document allready exists";
                    if (marked) lclMarked.insert(key);
                    if (marked || !WorkingId(key, docId, "tblDocument", taken)) return;
                    const auto number = static_cast<std::int32_t>(std::abs(docId));
                    Document document{key, PathOf(key, TrimmedText(row.Get(2)), type, number),
                                      key > 0 && docId > 0,
                                      platform::EqualAsciiNoCase(type, itemTypes::note)};
                    lclFiles.insert(platform::LowerCase(document.path));
                    lclDocuments.emplace(std::abs(docId), std::move(document));
                });
    }

    // Below the store's root; empty for one that would lie elsewhere.
    std::string PathOf(Id key, const std::string& date, const std::string& type,
                       std::int32_t number) {
        try {
            return DocumentPath("", date, type, number);
        } catch (const platform::Error& error) {
            Found(Fault::DocumentOutOfStore, key,
                  "document " + Number(number) + ": " + error.what());
            return {};
        }
    }

    void ReadTrees() {
        std::unordered_set<Id> taken;
        EachRow("Select Id, TreeId, TopItemId from tblTree", [&](data::Recordset& row) {
            const Id key = Field(row, 0), id = Field(row, 1), top = Field(row, 2);
            if (!WorkingId(key, id, "tblTree", taken) || id < 0) return;
            lclTrees.emplace(id, Tree{key, top});
            lclTops.insert(top);
        });
    }

    void ReadItems() {
        std::unordered_set<Id> taken;
        EachRow("Select Id, TreeItemId, ParentId, ItemId, Type from tblTreeItem",
                [&](data::Recordset& row) {
                    const Id key = Field(row, 0), id = Field(row, 1), parent = Field(row, 2);
                    if (!WorkingId(key, id, "tblTreeItem", taken)) return;
                    // The sweep of dangling trees negates the top's own id and leaves its parent.
                    const bool swept = id < 0 && parent > 0 && lclTops.count(-id) != 0;
                    if (!swept && parent != 0 && (id < 0) != (parent < 0))
                        Found(Fault::IdsOutOfPair, key,
                              "tblTreeItem row " + Number(key) + ": id " + Number(id) +
                                  ", parent " + Number(parent));
                    if (id > 0)
                        lclNodes.emplace(id, Node{key, parent});
                    else
                        lclDeletedNodes.insert(-id);
                    if (swept) lclSwept.insert(-id);
                    ReadReference(key, id, Field(row, 3), TrimmedText(row.Get(4)));
                });
    }

    void ReadReference(Id key, Id id, Id docId, const std::string& type) {
        const bool folder = fncCanHaveChildren(type);
        if (folder ? !platform::EqualAsciiNoCase(type, itemTypes::tab)
                   : platform::EqualAsciiNoCase(type, itemTypes::user))
            lclUserNodes.push_back(id);
        else if (!folder)
            ReadDocumentNode(key, id, docId, type);
    }

    void ReadDocumentNode(Id key, Id id, Id docId, const std::string& type) {
        const auto document = lclDocuments.find(docId);
        if (document != lclDocuments.end()) document->second.inTree = true;
        if (id > 0 && (document == lclDocuments.end() || !document->second.live))
            Found(Fault::ItemWithoutDocument, key,
                  "tblTreeItem row " + Number(key) + " (" + type + ") stands for document " +
                      Number(docId) + (document == lclDocuments.end() ? "" : ", which is deleted"));
    }

    void ReadRelations() {
        std::unordered_set<Id> keys, relations;
        EachRow("Select DossierId, DbRelId from tblDossierDbRelation", [&](data::Recordset& row) {
            WorkingId(Field(row, 0), Field(row, 1), "tblDossierDbRelation", keys);
        });
        EachRow("Select Id, RelId, DossierId, TreeId, ChildDossierId from tblDossierRelations",
                [&](data::Recordset& row) {
                    const Id key = Field(row, 0), id = Field(row, 1), dossier = Field(row, 2),
                             tree = Field(row, 3);
                    if (!WorkingId(key, id, "tblDossierRelations", relations)) return;
                    lclRelated.insert(tree);
                    if (id < 0) return;
                    const std::string name = "tblDossierRelations row " + Number(key);
                    if (lclTrees.count(tree) == 0 && (tree != 0 || Field(row, 4) == 0))
                        Found(Fault::RelationWithoutTree, key, name + ": tree " + Number(tree));
                    if (keys.count(dossier) == 0 && keys.count(-dossier) == 0)
                        Found(Fault::RelationWithoutKey, key,
                              name + ": dossier " + Number(dossier));
                });
    }

    void ReadExtraInfo() {
        EachRow("Select Id, DocId from tblDocExtraInfo", [&](data::Recordset& row) {
            const Id document = std::abs(Field(row, 1));
            if (lclDocuments.count(document) == 0 && lclMarked.count(document) == 0)
                Found(Fault::ExtraInfoWithoutDocument, Field(row, 0),
                      "tblDocExtraInfo row " + Number(Field(row, 0)) + ": document " +
                          Number(Field(row, 1)));
        });
    }

    void CheckDocuments() {
        for (const auto& [id, document] : lclDocuments) {
            if (!document.live) continue;
            if (!document.inTree)
                Found(Fault::DocumentWithoutItem, document.key, "document " + Number(id));
            // A note's file is made when the note is first saved.
            if (!document.note && !document.path.empty() && !HasFile(document.path))
                Found(Fault::DocumentWithoutFile, document.key,
                      "document " + Number(id) + ": " + lclRoot + document.path);
        }
    }

    bool HasFile(const std::string& path) const {
        if (lclRoot.empty())
            throw platform::Error(platform::errors::pathNotFound,
                                  "DocumentPath in section Storage not found", "IntegrityCheck");
        const auto attributes = AttributesOf(lclWorkstation, lclRoot + path);
        if (!attributes) NeedStore(); // it may have gone meanwhile
        return attributes && (*attributes & platform::attributes::directory) == 0;
    }

    void NeedStore() const {
        if (!lclWorkstation.files.DirectoryExists(lclRoot))
            throw platform::Error(platform::errors::pathNotFound,
                                  "The document store \"" + lclRoot + "\" is not there.",
                                  "IntegrityCheck");
    }

    void CheckItems() {
        for (auto& [id, node] : lclNodes) {
            const std::string row = "tblTreeItem row " + Number(node.key);
            if (node.parent > 0 && !Present(node.parent))
                Found(Fault::ItemWithoutParent, node.key,
                      row + ": parent " + Number(node.parent) +
                          (lclDeletedNodes.count(node.parent) ? " is deleted" : " is missing"));
            else if (node.parent == 0 && lclTops.count(id) == 0)
                Found(Fault::ItemOutOfReach, node.key, row + " is no tree's root");
            else if (OnLoop(id))
                Found(Fault::ItemOutOfReach, node.key, row + " hangs from itself");
        }
    }

    bool Present(Id id) const { return lclNodes.count(id) != 0 || lclSwept.count(id) != 0; }

    // Climbs until it meets a top, something known, or itself; each node is climbed from once.
    bool OnLoop(Id id) {
        std::vector<Id> path;
        Node::Reach reach = Node::Reach::Top;
        for (auto at = lclNodes.find(id); at != lclNodes.end();
             at = lclNodes.find(at->second.parent)) {
            if (at->second.reach == Node::Reach::Asked)
                reach = Node::Reach::Lost;
            else if (at->second.reach != Node::Reach::Unknown)
                reach = at->second.reach;
            if (at->second.reach != Node::Reach::Unknown) break;
            at->second.reach = Node::Reach::Asked;
            path.push_back(at->first);
        }
        for (const Id climbed : path) lclNodes.at(climbed).reach = reach;
        return lclNodes.at(id).reach == Node::Reach::Lost;
    }

    // The trees of the installation's users belong to no dossier.
    std::unordered_set<Id> RootsOfUsers() const {
        std::unordered_set<Id> roots;
        for (const Id user : lclUserNodes) {
            Id top = user;
            for (std::size_t steps = 0; steps <= lclNodes.size(); ++steps) {
                roots.insert(top);
                const auto node = lclNodes.find(top);
                if (node == lclNodes.end() || node->second.parent == 0) break;
                top = node->second.parent;
            }
        }
        return roots;
    }

    void CheckTrees() {
        const std::unordered_set<Id> users = RootsOfUsers();
        for (const auto& [id, tree] : lclTrees) {
            const std::string name = "tree " + Number(id);
            const bool rootLives = lclNodes.count(tree.topItem) != 0;
            if (!rootLives && lclDeletedNodes.count(tree.topItem) == 0)
                Found(Fault::TreeWithoutRoot, tree.key, name + ": item " + Number(tree.topItem));
            if (rootLives && lclRelated.count(id) == 0 && users.count(tree.topItem) == 0)
                Found(Fault::TreeWithoutDossier, tree.key, name);
        }
    }

    // Only the folders that documents make (eight digits); what else lies in the store is not ours.
    void CheckFiles() {
        platform::Files& files = lclWorkstation.files;
        if (lclRoot.empty()) return;
        for (const std::string& day : files.List(lclRoot, "*", true)) {
            const bool ours =
                day.size() == 8 && day.find_first_not_of("0123456789") == std::string::npos;
            if (!ours || !files.DirectoryExists(lclRoot + day)) continue;
            for (const std::string& type : files.List(lclRoot + day, "*", true)) {
                const std::string path = day + "\\" + type;
                if (!files.DirectoryExists(lclRoot + path))
                    CheckFile(path);
                else
                    for (const std::string& file : files.List(lclRoot + path, "*"))
                        CheckFile(path + "\\" + file);
            }
        }
    }

    void CheckFile(const std::string& path) {
        if (lclFiles.count(platform::LowerCase(path)) == 0)
            Found(Fault::FileWithoutDocument, 0, lclRoot + path);
    }

    const platform::Workstation& lclWorkstation;
    const Store lclStore;
    const std::string lclRoot;
    std::vector<Finding> lclFindings;
    std::unordered_map<Id, Document> lclDocuments; // by DocId without sign
    std::unordered_set<std::string> lclFiles;      // paths that belong to a document, lower case
    std::unordered_map<Id, Tree> lclTrees;         // live ones
    std::unordered_set<Id> lclMarked;              // keys of documents that were there already
    std::unordered_set<Id> lclTops, lclDeletedNodes, lclSwept, lclRelated;
    std::unordered_map<Id, Node> lclNodes; // live ones
    std::vector<Id> lclUserNodes;          // groups and users
};

} // namespace

std::string_view FaultName(Fault fault) { return faultNames[static_cast<std::size_t>(fault)]; }

std::vector<Finding> CheckIntegrity(const platform::Workstation& workstation,
                                    const data::ConnectionPtr& connection,
                                    std::string_view storeRoot) {
    return Check(workstation, connection, storeRoot).Run();
}

} // namespace kavidex::model
