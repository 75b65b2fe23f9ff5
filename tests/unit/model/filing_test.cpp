#include "model/filing.h"

#include <array>

#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::FileDocument;
using model::FilingRequest;

class Filing : public ModelDatabase {
protected:
    Filing() : tree(NewTree()), folder(tree->AddChildTab("Map", tree->Item()->Id())) {}

    FilingRequest Request(const std::string& name, const std::string& bytes = "scan") {
        machine.files.WriteAll(machine.Path(name), bytes);
        FilingRequest request;
        request.source = machine.Path(name);
        request.folderId = folder->Id();
        return request;
    }
    std::size_t Documents() { return Rows("select Id from tblDocument where DocId <> 0").size(); }

    std::shared_ptr<model::clsTree> tree;
    model::clsItemPtr folder;
};

TEST_F(Filing, MakesRowFileAndItemAndDeletesTheSourceLast) {
    FilingRequest request = Request("Brief van Jan.TIF");
    request.externalId = "K1";
    request.mail = model::MailInfo{"piet", "mie", "20261115", "x", 2};
    request.deleteSource = true;
    const auto result = FileDocument(machine, *tree, request);
    ASSERT_TRUE(result) << result.error;
    EXPECT_EQ(One("select ExternalId, InsertedBy, InsertDate, InsertTime, Description, Type, DocId "
                  "from tblDocument"),
              "K1|jansen|20261115|1405|Brief van Jan|tif|" + std::to_string(result.docId));
    EXPECT_EQ(One("select SendTo, NrOfAttatchements from tblDocExtraInfo"), "piet|2");
    EXPECT_EQ(result.path, Store() + "\\20261115\\tif\\" + std::to_string(result.docId) + ".tif");
    EXPECT_EQ(machine.files.ReadAll(result.path), "scan");
    EXPECT_FALSE(machine.files.FileExists(request.source));
    EXPECT_EQ(Outline(*Load(tree->TreeId())->Item()), "Dossier\n Map\n  Brief van Jan\n");
    EXPECT_EQ(tree->GetItem(result.item->Id(), ""), result.item);
    EXPECT_EQ(result.item->ItemId(), result.docId);
    EXPECT_TRUE(Faults().empty());
}

TEST_F(Filing, TakesFilesWhateverTheirNames) {
    const std::string longName(180, 'x');
    // name, type, description
    const std::vector<std::array<std::string, 3>> names = {
        {"O'Brien 100%.Doc", "doc", "O'Brien 100%"},
        {"zonder extensie", "bin", "zonder extensie"},
        {".profile", "bin", ".profile"},
        {"Договор №5 \xF0\x9F\x93\x84.pdf", "pdf", "Договор №5 \xF0\x9F\x93\x84"},
        {"a;b, 'c' [d] -- e.txt", "txt", "a;b, 'c' [d] -- e"},
        {"folder.tab", "bin", "folder.tab"},
        {"gek.a%b'c", "bin", "gek.a%b'c"},
        {"taal.документ", "bin", "taal.документ"},
        {"laatste.con", "bin", "laatste.con"},
        {longName + ".tif", "tif", longName},
        {"dot.eind.", "bin", "dot.eind."}};
    for (const auto& [name, type, description] : names) {
        const auto result = FileDocument(machine, *tree, Request(name, name));
        ASSERT_TRUE(result) << name << ": " << result.error;
        EXPECT_EQ(One("select Type, Description from tblDocument where DocId = " +
                      std::to_string(result.docId)),
                  type + "|" + description);
        EXPECT_EQ(machine.files.ReadAll(result.path), name);
        EXPECT_FALSE(result.item->AllowChildren());
    }
    FilingRequest request = Request("lang.tif");
    request.description = std::string(254, 'a') + "\xF0\x9F\x93\x84\xF0\x9F\x93\x84";
    ASSERT_TRUE(FileDocument(machine, *tree, request));
    EXPECT_EQ(One("select Description from tblDocument where Description like 'aaa%'"),
              std::string(254, 'a'));
    EXPECT_TRUE(Faults().empty());
}

TEST_F(Filing, RefusesClearlyAndWritesNothing) {
    const auto leaf = tree->AddChildItem(0, "tif", nullptr, 0, "leaf", folder->Id());
    const auto gone = tree->AddChildTab("weg", tree->Item()->Id());
    Sql("update tblTreeItem set TreeItemId = -TreeItemId, ParentId = -ParentId where TreeItemId "
        "= " +
        std::to_string(gone->Id())); // by someone else
    const auto attempt = [&](auto change) {
        FilingRequest request = Request("a.tif");
        request.deleteSource = true;
        change(request);
        const auto result = FileDocument(machine, *tree, request);
        EXPECT_FALSE(result);
        EXPECT_TRUE(result.error.starts_with(request.source + ": ")) << result.error;
        EXPECT_TRUE(machine.files.FileExists(machine.Path("a.tif")));
        EXPECT_EQ(Documents(), 0u);
        EXPECT_TRUE(machine.files.List(Store(), "*", true).empty());
        return result.number;
    };
    using namespace platform;
    EXPECT_EQ(attempt([&](auto& r) { r.source = machine.Path("gone.tif"); }), errors::notFound);
    EXPECT_EQ(attempt([&](auto& r) { r.source = machine.Folder(); }), errors::invalidArgument);
    EXPECT_EQ(attempt([&](auto& r) { r.source.clear(); }), errors::notFound);
    EXPECT_EQ(attempt([&](auto& r) { r.folderId = 999999; }), errors::notFound);
    EXPECT_EQ(attempt([&](auto& r) { r.folderId = 0; }), errors::notFound);
    EXPECT_EQ(attempt([&](auto& r) { r.folderId = leaf->Id(); }), errors::invalidArgument);
    EXPECT_EQ(attempt([&](auto& r) { r.folderId = gone->Id(); }), errors::notFound);
    EXPECT_EQ(attempt([&](auto& r) { r.baseSaveDirectory = machine.Path("unmounted"); }),
              errors::pathNotFound);
    EXPECT_FALSE(machine.files.DirectoryExists(machine.Path("unmounted")));
    Sql("Delete from tblSettings where Section = 'Storage'");
    EXPECT_EQ(attempt([&](auto&) {}), errors::pathNotFound);
}

// Not even where more stray files stand than one attempt tries.
TEST_F(Filing, NeverOverwritesAFileOfTheStore) {
    const auto first = FileDocument(machine, *tree, Request("a.tif"));
    const auto stray = [&](int i) {
        return platform::FolderOf(first.path) + "\\" + std::to_string(first.docId + i) + ".tif";
    };
    for (int i = 1; i <= 25; ++i) machine.files.WriteAll(stray(i), "from another time");
    const auto refused = FileDocument(machine, *tree, Request("b.tif", "new"));
    EXPECT_FALSE(refused);
    EXPECT_EQ(refused.number, platform::errors::alreadyExists);
    const auto second = FileDocument(machine, *tree, Request("b.tif", "new"));
    ASSERT_TRUE(second) << second.error;
    EXPECT_EQ(second.docId, first.docId + 26);
    EXPECT_EQ(machine.files.ReadAll(second.path), "new");
    for (int i = 1; i <= 25; ++i) EXPECT_EQ(machine.files.ReadAll(stray(i)), "from another time");
    EXPECT_EQ(Rows("select Id from tblDocument where DocId = 0").size(), 25u);
    EXPECT_EQ(Faults(), std::vector<std::string>(25, "file without document"));
}

TEST_F(Filing, CopiesBeforeTheDatabaseIsLocked) {
    FilingRequest request = Request("a.tif");
    request.deleteSource = true;
    bool copied = false, named = false;
    machine.files.FailAt(0);
    connection->statements.clear();
    connection->onStep = [&](int) {
        const bool wrote = !connection->statements.empty() &&
                           connection->statements.back().starts_with("Insert into");
        if (wrote) copied = machine.files.calls.size() >= 4; // the folders and the copy
        for (const std::string& call : machine.files.calls) named = call.starts_with("Rename");
    };
    ASSERT_TRUE(FileDocument(machine, *tree, request));
    connection->onStep = nullptr;
    EXPECT_TRUE(copied);
    EXPECT_TRUE(named) << "the name comes before the commit";
    std::string calls;
    for (const std::string& call : machine.files.calls)
        calls += call.substr(0, call.find(' ')) + " ";
    EXPECT_EQ(calls,
              "Attributes CreateDirectories CreateDirectories CopyAside Attributes Rename SameFile "
              "SameBytes Attributes Remove ");
}

TEST_F(Filing, KeepsASourceThatChangedMeanwhile) {
    FilingRequest request = Request("a.tif");
    request.deleteSource = true;
    const std::string filed = machine.files.ReadAll(request.source);
    const std::string changed(filed.size(), '~');
    connection->onStep = [&](int) {
        const auto& calls = machine.files.calls;
        if (!calls.empty() && calls.back().starts_with("CopyAside"))
            machine.files.WriteAll(request.source, changed);
    };
    machine.files.FailAt(0);
    const auto result = FileDocument(machine, *tree, request);
    connection->onStep = nullptr;
    EXPECT_TRUE(result) << "the document is filed all the same";
    EXPECT_NE(result.number, 0);
    EXPECT_EQ(machine.files.ReadAll(request.source), changed);
    EXPECT_EQ(machine.files.ReadAll(result.path), filed);
}

TEST_F(Filing, BelongsToTheHostsOwnTransaction) {
    connection->BeginTrans();
    const auto lost = FileDocument(machine, *tree, Request("a.tif"));
    ASSERT_TRUE(lost) << lost.error;
    connection->RollbackTrans();
    EXPECT_EQ(Documents(), 0u);
    EXPECT_EQ(Faults(), std::vector<std::string>{"file without document"});
    machine.files.Remove(lost.path);

    const auto loaded = Load(tree->TreeId());
    connection->BeginTrans();
    FilingRequest gone = Request("b.tif");
    machine.files.FailAt(1); // a copy that fails leaves the host's transaction alone
    EXPECT_FALSE(FileDocument(machine, *loaded, gone));
    machine.files.FailAt(0);
    const auto kept = FileDocument(machine, *loaded, Request("c.tif"));
    ASSERT_TRUE(kept) << kept.error;
    connection->CommitTrans();
    EXPECT_EQ(Documents(), 1u);
    EXPECT_TRUE(Faults().empty());
}

TEST_F(Filing, ARefusedReadOnlySourceLeavesNoCopy) {
    const FilingRequest request = Request("a.tif");
    machine.files.SetAttributes(request.source, platform::attributes::readOnly);
    connection->Failing(4, [&] { EXPECT_FALSE(FileDocument(machine, *tree, request)); });
    EXPECT_TRUE(Faults().empty());
    EXPECT_TRUE(FileDocument(machine, *tree, request));
    EXPECT_TRUE(Faults().empty());
    machine.files.SetAttributes(request.source, platform::attributes::normal);
}

TEST_F(Filing, SharesACommitAndAFailingOneTakesNoOtherWithIt) {
    // False: that step was not reached.
    const auto attempt = [&](std::size_t count, bool ofFiles, int step) {
        const auto where = (ofFiles ? "file step " : "database step ") + std::to_string(step) +
                           " of " + std::to_string(count);
        const auto before = Documents();
        const auto loaded = Load(tree->TreeId());
        std::vector<FilingRequest> requests;
        for (const char* name : {"a.tif", "b.tif", "c.tif"}) {
            if (requests.size() == count) break;
            requests.push_back(Request(name, name));
            requests.back().deleteSource = true;
            requests.back().mail = model::MailInfo{"piet", "", "", "", 0};
        }
        model::Filings filings(machine, *loaded);
        machine.files.FailAt(ofFiles ? step : 0);
        connection->FailStep(ofFiles ? 0 : step);
        std::vector<std::string> waiting;
        for (const auto& request : requests)
            if (const auto refused = filings.Prepare(request))
                EXPECT_TRUE(machine.files.FileExists(request.source)) << where;
            else
                waiting.push_back(request.source);
        EXPECT_GE(waiting.size(), count - 1) << where;
        const auto results = filings.Write();
        const bool reached = (ofFiles ? machine.files.operations : connection->steps) >= step;
        machine.files.FailAt(0);
        connection->onStep = nullptr;
        EXPECT_EQ(results.size(), waiting.size()) << where;
        std::size_t filed = 0;
        for (std::size_t i = 0; i < results.size(); ++i) {
            filed += results[i].filed;
            const auto there = results[i].filed ? results[i].path : waiting[i];
            EXPECT_EQ(machine.files.ReadAll(there), platform::FileName(waiting[i])) << where;
            EXPECT_EQ(machine.files.FileExists(waiting[i]), !results[i].error.empty())
                << where << " is told";
        }
        EXPECT_GE(filed, count - 1) << where;
        EXPECT_EQ(Documents(), before + filed) << where;
        EXPECT_TRUE(Faults().empty()) << where;
        return reached;
    };
    for (const std::size_t count : {1, 3})
        for (const bool ofFiles : {true, false})
            for (int step = 1; attempt(count, ofFiles, step) && !HasFailure(); ++step)
                ASSERT_LT(step, 200);
}

} // namespace
} // namespace kavidex::tests
