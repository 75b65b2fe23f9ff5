// The binder model over every engine: trees, documents, dossiers, rights and checklists, and two
// connections at one dossier.
#include <thread>

#include "controls/viewer/list/DocumentList.h"
#include "model/IntegrityCheck.h"
#include "model/clsCheckListType.h"
#include "model/clsDocument.h"
#include "model/clsDossier.h"
#include "model/clsDossierDbRelations.h"
#include "model/clsTree.h"
#include "model/clsUserAuth.h"
#include "model/uniqueNumber.h"
#include "platform/Error.h"
#include "platform/General.h"
#include "tests/engines/ModelOverEngines.h"
#include "tests/fakes/Failures.h"
#include "tests/fakes/FaultyConnection.h"

namespace kavidex::tests {

namespace {

constexpr const char* hostile[] = {"O'Brien ''x'' \"y\" `z`", "\\\\server\\share\\a\\'b\\",
                                   "50% _x_ *?# [x] {y} ?", "-- x /* y */ # z ; drop table tblTree",
                                   "één ŁÓDŹ жук 文件 📁"};

} // namespace

TEST_P(ModelOverEngines, AFoldersDocumentsAreListedWithThirteenColumns) {
    const auto tree = NewTree();
    const auto folder = tree->Item()->Id();
    ASSERT_TRUE(tree->AddChildTab("Post", folder));
    const auto file = [&](const char* name, const char* time, const char* sender) {
        On<clsDocument> made(machine, connection);
        made.SetInsertedBy("jansen");
        made.SetInsertDate("20261115");
        made.SetInsertTime(time);
        made.SetRecievedFrom(sender);
        made.SetRecievedOn("20261114093005");
        made.SetNumberOfAttatchements(12);
        EXPECT_TRUE(made.SaveNewRow());
        tree->AddChildItem(0, "msg", nullptr, made.DocId(), name, folder);
    };
    file("Mail", "0905", "O'Brien");
    file("Scan", "1405", "");
    const auto rows = Open(controls::DocumentListStatement(connection, folder));
    std::vector<std::string> names, columns;
    for (const auto& field : rows->Fields()) names.push_back(field.name);
    for (const auto& column : controls::DocumentListColumns()) columns.emplace_back(column.field);
    EXPECT_EQ(names, columns);

    const auto list = controls::OpenDocumentList(connection, folder);
    ASSERT_EQ(list->Count(), 2U) << "the folder is no document";
    const auto line = [&](std::size_t row) {
        std::string text;
        for (std::size_t i = 1; i < columns.size(); ++i) text += list->Text(row, columns[i]) + "|";
        return text;
    };
    const std::size_t mail = list->Text(0, "Omschrijving") == "Mail" ? 0 : 1;
    EXPECT_EQ(line(mail), "Mail|msg|jansen|202611150905|15-11-2026 09:05||O'Brien|||"
                          "20261114093005|14-11-2026 09:30:05|12|");
    EXPECT_EQ(line(1 - mail), "Scan|msg|jansen|202611151405|15-11-2026 14:05||||||||");
    std::string none, some;
    list->SortKey(1 - mail, "Aantal bijlagen", none);
    list->SortKey(mail, "Aantal bijlagen", some);
    EXPECT_LT(none, some);
}

TEST_P(ModelOverEngines, TreesKeepTheirShapeNamesAndDeletedNodes) {
    const auto tree = NewTree();
    // Servers store the flags of a new tree as 0, and right with its first change.
    EXPECT_EQ(Tree(tree->TreeId())->NewEnabled(), engine.ComesWithSchema());
    tree->SetDeleteEnabled(true);
    EXPECT_TRUE(Tree(tree->TreeId())->NewEnabled() && Tree(tree->TreeId())->DeleteEnabled());

    const std::int32_t root = tree->Item()->Id();
    const auto post = tree->AddChildTab("Post", root), archive = tree->AddChildTab("Archief", root);
    ASSERT_TRUE(post && archive);
    const auto letter = tree->AddChildItem(0, "tif", nullptr, 4711, "Brief", post->Id());
    EXPECT_EQ(tree->AddChildItem(0, "tif", nullptr, 1, "x", letter->Id()), nullptr);
    ASSERT_EQ(tree->MoveItem(letter->Id(), archive->Id(), post->Id()), letter);
    EXPECT_EQ(Names(Tree(tree->TreeId())->Item()), "Post()Archief(Brief())");
    for (const char* const text : hostile) {
        letter->SetDescription(text);
        tree->SetDescription(text);
        const auto again = Tree(tree->TreeId());
        EXPECT_EQ(again->Description(), Kept(text));
        ASSERT_NE(again->GetItem(letter->Id(), ""), nullptr);
        EXPECT_EQ(again->GetItem(letter->Id(), "")->Description(), Kept(text));
        EXPECT_NE(again->GetItem(0, Kept(text)), nullptr);
    }
    letter->SetDescription("Brief");

    connection->Execute("Insert into tbltreeitemuplink (serverrefId) Values (" +
                        std::to_string(archive->Id()) + ")");
    clsItemPtr doomed = archive;
    std::vector<NodeId> taken;
    ASSERT_TRUE(tree->DeleteItem(doomed, 0, &taken));
    EXPECT_EQ(taken, (std::vector<NodeId>{letter->Id(), archive->Id()}));
    EXPECT_EQ(Number("select count(*) from tbltreeitemuplink"), 0);
    EXPECT_EQ(Number("select ParentId from tblTreeItem where TreeItemId = " +
                     std::to_string(-letter->Id())),
              -archive->Id());
    EXPECT_EQ(Names(Tree(tree->TreeId())->Item()), "Post()");
    platform::SaveRegFlag(machine, "TreeSettings", "ShowDeleted", true);
    EXPECT_EQ(Tree(tree->TreeId())->Item()->ChildCollection()->Count(), 2);
    const auto shown = Tree(tree->TreeId())->GetItem(-archive->Id(), "");
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->Description() + ":" + Names(shown), "Archief VERWIJDERD:Brief VERWIJDERD()");

    // What was deleted before its folder comes back with it only where it is asked for.
    const auto put = [&](NodeId id, std::span<const NodeId> those = {}) {
        const auto back = tree->RestoreItem(id, those);
        return (back.wasThere ? "there " : "") + std::to_string(back.folders.size()) +
               (back.atRoot ? " root: " : ": ") + Names(Tree(tree->TreeId())->Item());
    };
    const std::string first = put(archive->Id(), std::vector{archive->Id()});
    EXPECT_EQ(first, "0: Post()Archief(Brief VERWIJDERD())");
    EXPECT_EQ(put(archive->Id()), "there 0: Post()Archief(Brief())");
    doomed = archive;
    ASSERT_TRUE(tree->DeleteItem(doomed, 0));
    EXPECT_EQ(put(letter->Id()), "1: Post()Archief(Brief())") << "its folder comes with it";
    doomed = letter;
    ASSERT_TRUE(tree->DeleteItem(doomed, 0));
    connection->Execute("delete from tblTreeItem where TreeItemId = " +
                        std::to_string(archive->Id()));
    EXPECT_EQ(put(letter->Id()), "0 root: Post()Brief()");
    EXPECT_THROW(tree->RestoreItem(archive->Id()), platform::Error);
    EXPECT_EQ(Number("select count(*) from tblTreeItem where TreeItemId < 0 or ParentId < 0"), 0);
}

TEST_P(ModelOverEngines, DocumentsKeepEveryTextAndAreFiledWhole) {
    for (const char* const text : hostile) {
        On<clsDocument> made(machine, connection);
        made.SetDescription(text);
        made.SetExternalId(text);
        made.SetDocType("tif");
        made.SetInsertDate("20261115");
        made.SetInsertTime("0905");
        made.SetSendTo(text);
        ASSERT_TRUE(made.SaveNewRow()) << text;
        On<clsDocument> read(machine, connection);
        read.SetId(made.DocId());
        ASSERT_TRUE(read.OpenDataSource() && read.LoadData()) << text;
        EXPECT_EQ(read.Description() + read.ExternalId() + read.SendTo(),
                  Kept(text) + Kept(text) + Kept(text));
        EXPECT_EQ(read.InsertDate() + " " + read.InsertTime(), "20261115 905");
        read.SetSendTo("niemand");
        read.SetReadOnly(true);
        ASSERT_TRUE(read.UpdateCurrentRow()) << text;
        read.ReQuery();
        ASSERT_TRUE(read.LoadData());
        EXPECT_EQ(read.SendTo() + (read.ReadOnly() ? " r" : " w"), "niemand r");
        EXPECT_TRUE(read.UpdateCurrentRow()) << "with nothing changed";
        ASSERT_TRUE(read.DeleteCurrentRow()) << text;
        EXPECT_TRUE(read.OpenDataSource() && read.Eof()) << "a deleted row";
    }
    EXPECT_EQ(Number("select count(*) from tblDocExtraInfo"), 0);
    EXPECT_EQ(Number("select count(*) from tblDocument where Id > 0"), 0);

    const auto tree = NewTree();
    const auto filed = FileText(*tree, "O'Brien 100%.txt", tree->Item()->Id());
    ASSERT_TRUE(filed) << filed.error;
    EXPECT_EQ(machine.files.ReadAll(filed.path), "inhoud");
    EXPECT_FALSE(machine.files.FileExists(machine.Path("O'Brien 100%.txt")));
    EXPECT_EQ(Names(Tree(tree->TreeId())->Item()), "O'Brien 100%()");
    std::string found;
    for (const Finding& finding : CheckIntegrity(machine, connection))
        found += std::string(FaultName(finding.fault)) + ";";
    EXPECT_EQ(found, "tree without dossier;");
}

TEST_P(ModelOverEngines, DossiersAreFoundByTheHostsKeyUntilTheyAreDeleted) {
    std::int32_t treeId = 900;
    for (const char* const text : hostile) {
        On<clsDossierDbRelations> key(machine, connection);
        key.SetDbKey(text);
        ASSERT_TRUE(key.SaveNewRow()) << text;
        On<clsDossier> made(machine, connection);
        made.SetDossierId(key.DossierId());
        made.SetDossierType(std::string("A ") + text);
        made.SetTreeId(++treeId);
        ASSERT_TRUE(made.SaveNewRow()) << text;

        On<clsDossierDbRelations> sought(machine, connection);
        sought.SetDbKey(text);
        ASSERT_TRUE(sought.OpenDataSource()) << text;
        ASSERT_FALSE(sought.Eof()) << text; // also where it is kept otherwise than asked for
        EXPECT_EQ(sought.DossierId(), key.DossierId());
        EXPECT_EQ(sought.DbKey(), text);
        On<clsDocument> document(machine, connection);
        document.SetExternalId(text);
        ASSERT_TRUE(document.SaveNewRow());
        const std::string other = std::string("2 ") + text;
        EXPECT_TRUE(sought.UpdateCurrentRow()) << "with nothing changed";
        EXPECT_TRUE(sought.Rekey(other));
        EXPECT_EQ(Text(One("select ExternalId from tblDocument where DocId = " +
                           std::to_string(document.DocId()))),
                  Kept(other));
        sought.SetDossierId(0);
        ASSERT_TRUE(sought.OpenDataSource());
        EXPECT_EQ(sought.DossierId(), key.DossierId());
        On<clsDossier> dossier(machine, connection);
        dossier.SetDossierId(sought.DossierId());
        ASSERT_TRUE(dossier.OpenDataSource() && dossier.LoadData()) << text;
        EXPECT_EQ(dossier.TreeId(), treeId);
        EXPECT_EQ(dossier.DossierType(), Kept(std::string("A ") + text));
        ASSERT_TRUE(sought.DeleteCurrentRow()) << text;
        EXPECT_FALSE(sought.DeleteCurrentRow()) << "somebody has";
        On<clsDossierDbRelations> gone(machine, connection);
        gone.SetDbKey(other);
        ASSERT_TRUE(gone.OpenDataSource()) << text;
        EXPECT_TRUE(gone.Eof()) << text;
    }
}

// Also where the server's collation takes a letter with a mark for the plain one.
TEST_P(ModelOverEngines, KeysThatDifferInAMarkAreTwoDossiers) {
    std::int32_t numbers[2]{}, documents[2]{};
    const char* const keys[] = {"Müller", "Muller"};
    using Relation = On<clsDossierDbRelations>;
    const auto open = [&](Relation&& relation, std::string_view key) {
        EXPECT_TRUE(relation.OpenKey(key));
        return relation.Eof() ? 0 : relation.DossierId();
    };
    for (const int i : {0, 1}) {
        EXPECT_EQ(open({machine, connection}, keys[i]), 0) << keys[i];
        Relation key(machine, connection);
        key.SetDbKey(keys[i]);
        bool anothers = true;
        ASSERT_TRUE(key.SaveNewKey(anothers));
        EXPECT_FALSE(anothers) << keys[i];
        numbers[i] = key.DossierId();
        On<clsDocument> document(machine, connection);
        document.SetExternalId(keys[i]);
        ASSERT_TRUE(document.SaveNewRow());
        documents[i] = document.DocId();
    }
    EXPECT_EQ(open({machine, connection}, keys[0]), numbers[0]);
    Relation plain(machine, connection);
    ASSERT_TRUE(plain.OpenKey(keys[1]));
    ASSERT_EQ(plain.DossierId(), numbers[1]);
    ASSERT_TRUE(plain.Rekey("Nieuw"));
    EXPECT_EQ(open({machine, connection}, keys[1]), 0);
    for (const int i : {0, 1})
        EXPECT_EQ(Text(One("select ExternalId from tblDocument where DocId = " +
                           std::to_string(documents[i]))),
                  i == 0 ? keys[0] : "Nieuw");
}

TEST_P(ModelOverEngines, RightsAndChecklistsComeBackAsTheyWereSaved) {
    for (const char* const text : hostile) {
        On<clsUserAuth> saved(machine, connection), loaded(machine, connection);
        for (clsUserAuth* const auth : {&saved, &loaded}) auth->SetUserId(text);
        saved.SetRight("EditDossiers", "True");
        saved.SetRight("Print", text);
        ASSERT_TRUE(saved.SaveRights()) << text;
        ASSERT_TRUE(loaded.LoadRights()) << text;
        EXPECT_EQ(loaded.GetRight("EditDossiers") + loaded.GetRight("Print"),
                  std::string("True") + text);
    }
    On<clsUserAuth> auth(machine, connection);
    EXPECT_TRUE(auth.RenameUser(hostile[1], "piet"));
    EXPECT_TRUE(auth.RenameUser("piet", "Piet") && auth.RenameUser("Piet", "piet"));
    auth.SetUserId("piet");
    EXPECT_TRUE(auth.LoadRights() && auth.GetRight("Print") == hostile[1]);
    EXPECT_TRUE(auth.DeleteRights() && auth.LoadRights() && auth.GetRight("Print").empty());

    On<clsCheckListType> list(machine, connection);
    EXPECT_EQ(list.GetType("A", "B"), 0);
    std::int16_t order = 9;
    for (const char* const text : hostile) list.CreateField(--order, text, 2, text, "tif");
    list.UpdateCurrentType();
    list.UpdateCurrentType(); // rewritten whole, not doubled
    On<clsCheckListType> read(machine, connection);
    EXPECT_EQ(read.GetType("A", "B"), 0);
    ASSERT_EQ(read.CheckListFields().size(), std::size(hostile));
    for (std::size_t i = 0; i < std::size(hostile); ++i) {
        const clsField& field = *read.CheckListFields()[i];
        EXPECT_EQ(field.FieldDescription(), Kept(hostile[std::size(hostile) - 1 - i]));
        EXPECT_EQ(field.DescriptionsToCheck(), field.FieldDescription());
        EXPECT_EQ(field.NumberToRecieve(), 2);
    }
}

TEST_P(ModelOverEngines, TwoWhoAskForOneNewKeyShareItsDossier) {
    const data::ConnectionPtr others = database->Connect();
    for (const char* const text : hostile) {
        const auto ask = [&](const data::ConnectionPtr& on) {
            auto key = std::make_unique<clsDossierDbRelations>(machine);
            key->SetDbConnection(on);
            key->SetDbKey(text);
            EXPECT_TRUE(key->OpenDataSource() && key->Eof()) << text;
            return key;
        };
        const auto first = ask(others), late = ask(connection); // both have looked
        bool taken = true;
        EXPECT_TRUE(first->SaveNewKey(taken) && !taken);
        EXPECT_TRUE(late->SaveNewKey(taken) && taken);
        EXPECT_EQ(late->DossierId(), first->DossierId());
        const std::int32_t tree = first->DossierId() + 1;
        for (const auto& [on, id] : {std::pair{others, tree}, {connection, tree + 1}}) {
            On<clsDossier> dossier(machine, on);
            dossier.SetDossierId(first->DossierId());
            dossier.SetTreeId(id);
            EXPECT_TRUE(dossier.SaveFirstRow()) << text;
            EXPECT_EQ(dossier.TreeId(), tree) << text;
        }
    }
    const auto living = static_cast<std::int32_t>(std::size(hostile));
    EXPECT_EQ(Number("select count(*) from tblDossierDbRelation where DbRelId > 0"), living);
    EXPECT_EQ(Number("select count(*) from tblDossierRelations where RelId > 0"), living);
}

// Work that waits for another's transaction goes on with what that has left, also where an engine
// shows a transaction the rows of its first read.
TEST_P(ModelOverEngines, WhatAnotherDidWhileWeWaitedCounts) {
    if (!engine.ServesSeveralThreads()) GTEST_SKIP() << "this way to the engine knows one thread";
    const data::ConnectionPtr others = database->Connect();
    for (const bool strictReads : {false, true}) {
        if (strictReads) { // newer servers refuse a row that changed since the first read
            if (engine.dialect != data::schema::Dialect::MySql) break;
            if (!WordsOf([&] {
                     connection->Execute("set innodb_snapshot_isolation = on");
                 }).empty())
                break;
        }
        const auto mine = NewTree();
        const std::int32_t root = mine->Item()->Id();
        const auto folder = mine->AddChildTab("Map", root), gone = mine->AddChildTab("Weg", root),
                   inner = mine->AddChildTab("Binnen", folder->Id());
        const auto theirs = Tree(mine->TreeId(), others);
        const auto meanwhile = [&](const std::function<void()>& first,
                                   const std::function<void()>& waits) {
            others->BeginTrans();
            first();
            std::thread waiting(waits);
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            others->CommitTrans();
            waiting.join();
        };
        const auto filing = [&] {
            EXPECT_FALSE(FileText(*mine, "a.txt", gone->Id()));
            EXPECT_TRUE(machine.files.FileExists(machine.Path("a.txt")));
        };
        const auto adding = [&] {
            connection->BeginTrans(); // the host's own, which has read before
            Number("select count(*) from tblTreeItem");
            EXPECT_NE(NumberOf([&] { mine->AddChildTab("Nieuw", gone->Id()); }), 0);
            connection->RollbackTrans();
        };
        const auto deleting = [&] {
            clsItemPtr doomed = folder;
            EXPECT_EQ(WordsOf([&] { mine->DeleteItem(doomed, 0); }), "");
        };
        clsItemPtr none;
        meanwhile([&] { theirs->DeleteItem(none, gone->Id()); }, filing);
        connection->Execute("update tblTreeItem set TreeItemId = " + std::to_string(gone->Id()) +
                            ", ParentId = " + std::to_string(root) +
                            " where TreeItemId = " + std::to_string(-gone->Id()));
        meanwhile([&] { theirs->DeleteItem(none, gone->Id()); }, adding);
        meanwhile([&] { theirs->AddChildTab("Laat", inner->Id()); }, deleting);
        EXPECT_EQ(Names(Tree(mine->TreeId())->Item()), "");
        EXPECT_EQ(Number("select count(*) from tblTreeItem where TreeItemId > 0"),
                  strictReads ? 2 : 1)
            << "nothing hangs from what is gone";
        EXPECT_EQ(Number("select count(*) from tblDocument where DocId > 0"), 0);
    }
}

TEST_P(ModelOverEngines, TwoUsersFirstLettersNeverShareANumber) {
    const auto other = database->Connect();
    std::int64_t theirs = 0;
    for (int step = 1; step == 1 || theirs != 0; ++step) {
        connection->Execute("Delete from tblSettings where Section = 'Unique'");
        const auto mine = std::make_shared<FaultyConnection>(connection);
        theirs = 0;
        mine->onStep = [&](int at) {
            if (at == step) theirs = RaiseUniqueNumber(other);
        };
        const auto own = RaiseUniqueNumber(mine);
        EXPECT_NE(own, theirs) << "the other came before step " << step;
        EXPECT_EQ(std::max(own, theirs), theirs == 0 ? 1 : 2);
    }
    EXPECT_EQ(RaiseUniqueNumber(other), 2);
}

KAVIDEX_OVER_ENGINES(ModelOverEngines);

} // namespace kavidex::tests
