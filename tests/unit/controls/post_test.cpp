// Post distribution: a document is in one folder at a time, whoever hands it out or takes it back.
#include <gtest/gtest.h>

#include "controls/admin/ctlPost.h"
#include "controls/admin/ctlRights.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsUserAuth.h"
#include "model/treeRows.h"
#include "tests/fakes/FakeForms.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/On.h"
#include "tests/fakes/RecordingConnection.h"

namespace kavidex::controls {

namespace {

struct Post : testing::Test {
    tests::FakeWorkstation machine;
    data::ConnectionPtr database = data::EmbeddedDatabase::CreateInMemory();
    std::shared_ptr<tests::RecordingConnection> connection =
        std::make_shared<tests::RecordingConnection>("ACCESS", database);
    tests::FakeForms forms;
    std::int32_t piet = 0, jan = 0;
    std::unique_ptr<ctlPost> post;

    void SetUp() override {
        tests::On<data::clsUpdateDb>(machine, database).fncUpdateDb();
        machine.files.CreateDirectories(machine.Path("store"));
        tests::On<data::clsSettings>(machine, database)
            .SetSetting("Storage", "DocumentPath", machine.Path("store"));
        const model::Store store(database);
        const auto place = model::MakeUserTree(machine, store, "Gebruikers");
        piet = model::AddHolder(machine, store, place, {0, 0, false, "Piet", {}});
        jan = model::AddHolder(machine, store, place, {0, 0, false, "jansen", {}});
        for (const char* name : {"a.txt", "b.txt", "c.txt"})
            machine.files.WriteAll(machine.Path(name), name);
        post = Make();
        forms.chosen = {machine.Path("a.txt") + ";" + machine.Path("b.txt") + ";" +
                        machine.Path("c.txt")};
        tests::FormUser(post->Form()).Click("btnAdd");
        ASSERT_EQ(Waiting(*post).size(), 3U) << Told();
    }
    std::unique_ptr<ctlPost> Make() { return forms.EditorOn<ctlPost>(machine, connection); }
    static std::vector<std::int32_t> Ids(ctlPost& of, const char* field) {
        std::vector<std::int32_t> ids;
        for (const auto& item : of.Form()[field].Items()) ids.push_back(item.id);
        return ids;
    }
    static std::vector<std::int32_t> Waiting(ctlPost& of) { return Ids(of, "lstWaiting"); }
    std::vector<std::int32_t> Given(ctlPost& of, std::int32_t user) {
        tests::FormUser sees(of.Form());
        of.Form()["treUsers"].Select(0);
        sees.Choose("treUsers", user);
        return Ids(of, "lstGiven");
    }
    std::string Row(const std::string& statement) {
        return data::ToText(database->Open({statement})->Get(std::size_t{0}));
    }
    std::string Told() {
        return machine.messages.shown.empty() ? "" : machine.messages.shown.back().text;
    }
};

} // namespace

TEST_F(Post, IsHandedOutWithARemarkAndTakenBackWhileItWasNotOpened) {
    const auto ids = Waiting(*post);
    {
        tests::FormUser user(post->Form());
        user.Choose("treUsers", piet);
        user.ChooseAll("lstWaiting", {ids[0], ids[1]});
        user.Type("txtRemark", "Lees 's avonds 100%_*");
        user.Click("btnGive");
        EXPECT_EQ(post->Form()["treUsers"].Find(piet)->Cell(), "Piet (2)");
        EXPECT_TRUE(user.Drag("lstWaiting", {ids[2]}, "treUsers", jan));
        EXPECT_TRUE(Waiting(*post).empty());
    }
    EXPECT_EQ(Given(*post, piet), (std::vector{ids[0], ids[1]}));
    EXPECT_EQ(post->Form()["lstGiven"].Find(ids[0])->texts[3], "Lees 's avonds 100%_*");

    // Looked at by another: still not opened. By its own user: opened.
    tests::FormUser user(post->Form());
    user.Choose("lstGiven", ids[0]);
    EXPECT_EQ(Given(*post, jan), std::vector{ids[2]});
    user.Choose("lstGiven", ids[2]);
    user.PressKey("lstGiven", 0x2E);
    EXPECT_NE(Told().find("verplaatst, geopend of verwijderd"), std::string::npos);
    EXPECT_EQ(Given(*post, jan), std::vector{ids[2]});
    EXPECT_EQ(post->Form()["lstGiven"].Find(ids[2])->texts[2], "Ja");
    Given(*post, piet);
    user.Choose("lstGiven", ids[0]);
    user.Click("btnTakeBack");
    EXPECT_EQ(Waiting(*post), std::vector{ids[0]});
    EXPECT_EQ(Given(*post, piet), std::vector{ids[1]});
}

TEST_F(Post, IsNeitherCopiedNorLostBetweenTwo) {
    const auto other = Make();
    const auto ids = Waiting(*post);
    tests::FormUser mine(post->Form()), theirs(other->Form());
    theirs.Choose("treUsers", piet);
    theirs.Choose("lstWaiting", ids[1]);
    theirs.Click("btnGive");
    mine.Choose("treUsers", jan);
    mine.ChooseAll("lstWaiting", ids);
    mine.Click("btnGive");
    EXPECT_NE(Told().find("Er is niets gewijzigd"), std::string::npos);
    EXPECT_EQ(Waiting(*post), (std::vector{ids[0], ids[2]}));
    EXPECT_TRUE(Given(*post, jan).empty());
    EXPECT_EQ(Given(*post, piet), std::vector{ids[1]});

    // Every write fails in turn: all of the documents are still there, each once.
    bool given = false;
    std::size_t failed = 0;
    for (std::size_t n = 1; n < 200 && !given; ++n) {
        std::size_t writes = 0;
        connection->refuse = [&](const std::string& statement) {
            return !statement.starts_with("Select") && ++writes == n;
        };
        mine.Choose("treUsers", jan);
        mine.ChooseAll("lstWaiting", {ids[0], ids[2]});
        mine.Click("btnGive");
        connection->refuse = nullptr;
        post->Refresh();
        given = Waiting(*post).empty();
        failed += given ? 0 : 1;
        ASSERT_EQ(Waiting(*post).size() + Given(*post, jan).size(), 2U) << n;
    }
    EXPECT_TRUE(given);
    EXPECT_GT(failed, 5U);
    // A user that somebody deletes leaves his post to be handed out again, and takes none.
    other->Refresh();
    {
        tests::On<ctlRights> editor(machine, connection);
        tests::FormUser administrator(editor.Form());
        administrator.EditItem("treUsers", jan, "Jansens");
        administrator.Choose("treUsers", piet);
        administrator.Click("btnDelete");
        ASSERT_TRUE(editor.Save()) << Told();
    }
    post->Refresh();
    EXPECT_EQ(Waiting(*post), std::vector{ids[1]});
    EXPECT_EQ(Given(*post, jan), (std::vector{ids[0], ids[2]}));
    EXPECT_EQ(Row("select Description from tblTreeItem where Type = 'userpost' and ItemId = " +
                  std::to_string(jan)),
              "Jansens");
    other->Refresh();
    theirs.Choose("lstWaiting", ids[1]);
    theirs.Choose("treUsers", jan);
    model::RemoveHolder(model::Store(database), jan);
    theirs.Click("btnGive");
    EXPECT_NE(Told().find("ontvanger is intussen verwijderd"), std::string::npos);
    EXPECT_EQ(Waiting(*other), std::vector{ids[1]});
}

TEST_F(Post, OfAGroupIsOpenedByAnyOfItsUsers) {
    const model::Store store(database);
    const auto place = model::FindUserTree(machine, store);
    const auto sales = model::AddHolder(machine, store, place, {0, 0, true, "Verkoop", {}});
    model::AddHolder(machine, store, place, {0, sales, false, "DOMEIN\\kees", {}});
    post->Refresh();
    const auto ids = Waiting(*post);
    tests::FormUser user(post->Form());
    user.Type("txtRemark", std::string(256, 'a').c_str());
    EXPECT_TRUE(user.Drag("lstWaiting", {ids[0]}, "treUsers", sales));
    EXPECT_EQ(Told(), "De opmerking is te lang");
    EXPECT_EQ(Waiting(*post).size(), 3U);
    user.Type("txtRemark", "");
    EXPECT_TRUE(user.Drag("lstWaiting", {ids[0], ids[1]}, "treUsers", sales));
    EXPECT_EQ(post->Form()["treUsers"].Find(sales)->Cell(), "Verkoop (2)");
    EXPECT_EQ(Given(*post, sales), (std::vector{ids[0], ids[1]}));

    const auto rights = std::make_shared<model::clsUserAuth>(machine);
    rights->SetUserId("domein\\Kees");
    post->SetUserAuth(rights);
    Given(*post, sales);
    user.Choose("lstGiven", ids[0]);
    EXPECT_EQ(post->Form()["lstGiven"].Find(ids[0])->texts[2], "Ja");
    // Taken back by another just before it is opened.
    const auto other = Make();
    Given(*other, sales);
    {
        tests::FormUser theirs(other->Form());
        theirs.Choose("lstGiven", ids[1]);
        theirs.Click("btnTakeBack");
    }
    tests::FormUser again(post->Form());
    again.Choose("lstGiven", ids[1]);
    EXPECT_NE(Told().find("verplaatst, geopend of verwijderd"), std::string::npos);
    EXPECT_EQ(Given(*post, sales), std::vector{ids[0]});

    // Where rights are used, nothing is seen without them.
    tests::On<data::clsSettings>(machine, database).SetSetting("Rights", "Use", "True");
    EXPECT_TRUE(Waiting(*Make()).empty());
    rights->SetRight("ReadDossiers", "True");
    const auto his = Make();
    his->SetUserAuth(rights);
    EXPECT_EQ(Waiting(*his).size(), 2U);
}

} // namespace kavidex::controls
