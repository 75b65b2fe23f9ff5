// The rights editor: what is written for whom, what is refused, and who cannot be locked out
// unasked.
#include <gtest/gtest.h>

#include "controls/admin/ctlRights.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsUserAuth.h"
#include "tests/fakes/FakeForms.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/On.h"
#include "tests/fakes/RecordingConnection.h"

namespace kavidex::controls {

namespace {

constexpr std::int32_t group = 1, right = 101; // in the tree of rights
constexpr std::int32_t createEditRights = right, readEditRights = right + 1,
                       updateEditRights = right + 2, print = right + 18;

struct RightsEditor : testing::Test {
    tests::FakeWorkstation machine;
    data::ConnectionPtr database = data::EmbeddedDatabase::CreateInMemory();
    std::shared_ptr<tests::RecordingConnection> connection =
        std::make_shared<tests::RecordingConnection>("ACCESS", database);
    tests::FakeForms forms;
    std::unique_ptr<ctlRights> editor;

    void SetUp() override {
        tests::On<data::clsUpdateDb>(machine, database).fncUpdateDb();
        editor = Make();
    }
    std::unique_ptr<ctlRights> Make(const std::shared_ptr<model::clsUserAuth>& rights = {}) {
        auto made = forms.EditorOn<ctlRights>(machine, connection);
        if (rights) made->SetUserAuth(rights);
        return made;
    }
    std::shared_ptr<model::clsUserAuth> As(const char* name) {
        const auto rights = std::make_shared<tests::On<model::clsUserAuth>>(machine, connection);
        rights->SetUserId(name);
        EXPECT_TRUE(rights->LoadRights());
        return rights;
    }
    static std::int32_t IdOf(ctlRights& of, const char* name) {
        for (const auto& item : of.Form()["treUsers"].Items())
            if (item.Cell() == name) return item.id;
        return 0;
    }
    // A new one, named at once; in the group chosen.
    std::int32_t Add(tests::FormUser& user, const char* button, const char* name) {
        user.Click(button);
        const auto id = editor->Form()["treUsers"].Selected();
        EXPECT_EQ(user.edited, id);
        if (!user.EditItem("treUsers", id, name)) return 0;
        return id;
    }
    std::string Right(std::string_view who, std::string_view key) {
        tests::On<model::clsUserAuth> rights(machine, database);
        rights.SetUserId(who);
        EXPECT_TRUE(rights.LoadRights());
        return rights.GetRight(key);
    }
    std::string LastTold() {
        return machine.messages.shown.empty() ? "" : machine.messages.shown.back().text;
    }
    // Sales with O'Brien, and Jansen outside, who may change rights.
    void Fill() {
        tests::FormUser user(editor->Form());
        Add(user, "btnGroup", "Sales");
        Add(user, "btnUser", "O'Brien 100%_*");
        user.TickItem("treRights", print);
        user.ChooseAll("treUsers", {});
        Add(user, "btnUser", "Jansen");
        user.TickItem("treRights", group);
        user.Click("btnSave");
        ASSERT_FALSE(editor->IsChanged()) << LastTold();
    }
};

} // namespace

TEST_F(RightsEditor, WritesUsersGroupsAndRightsAndReadsThemBack) {
    Fill();
    EXPECT_EQ(Right("O'Brien 100%_*", "Print"), "True");
    EXPECT_EQ(Right("O'Brien 100%_*", "Mail"), "");
    EXPECT_EQ(Right("Jansen", "EditSettings"), "True");
    const auto again = Make();
    const auto& users = again->Form()["treUsers"];
    ASSERT_EQ(users.Items().size(), 3U);
    EXPECT_EQ(users.Items()[1].Cell(), "O'Brien 100%_*");
    EXPECT_EQ(users.Items()[1].parent, users.Items()[0].id);
    EXPECT_EQ(users.Items()[2].parent, 0);

    // Found by typing; all of its group are ticked, so the group is.
    tests::FormUser user(again->Form());
    user.Type("txtFind", "jan");
    EXPECT_EQ(user.Text("lblName"), "Jansen");
    EXPECT_TRUE(again->Form()["treRights"].Find(group)->checked);
    user.TickItem("treRights", group, false);
    user.TickItem("treRights", print);
    forms.users = {[&](tests::FormUser& copy) {
        copy.TickItem("lstTargets", IdOf(*again, "O'Brien 100%_*"));
        copy.Click("btnOk");
    }};
    user.TickItem("treRights", right + 17);
    user.Click("btnCopy");
    EXPECT_TRUE(again->Save());
    EXPECT_EQ(Right("Jansen", "EditSettings"), "False");
    EXPECT_EQ(Right("O'Brien 100%_*", "Mail"), "True");

    // Renamed, one under the other's old name; moved out of the group; the group goes.
    const auto brien = IdOf(*again, "O'Brien 100%_*"), jansen = IdOf(*again, "Jansen");
    user.EditItem("treUsers", jansen, "x");
    EXPECT_TRUE(user.EditItem("treUsers", brien, "Jansen"));
    EXPECT_FALSE(user.EditItem("treUsers", jansen, "sALES")) << "the group has that name";
    EXPECT_FALSE(user.EditItem("treUsers", jansen, std::string(255, 'a').c_str()));
    EXPECT_FALSE(user.EditItem("treUsers", jansen, "  "));
    EXPECT_TRUE(user.Drag("treUsers", {brien}, "treUsers", 0));
    user.Choose("treUsers", IdOf(*again, "Sales"));
    user.PressKey("treUsers", 0x2E);
    EXPECT_TRUE(again->Save()) << LastTold();
    EXPECT_EQ(Right("Jansen", "Mail"), "True");
    EXPECT_EQ(Right("x", "EditSettings"), "False");
    EXPECT_EQ(Right("O'Brien 100%_*", "Mail"), "");
    EXPECT_EQ(Make()->Form()["treUsers"].Items().size(), 2U);
}

TEST_F(RightsEditor, AGroupsRightsReplaceThoseOfItsUsersAfterTheQuestion) {
    Fill();
    tests::FormUser user(editor->Form());
    user.Choose("treUsers", IdOf(*editor, "Sales"));
    user.TickItem("treRights", right + 17); // Mail
    machine.messages.answers = {platform::Answer::No};
    user.Click("btnSave");
    EXPECT_TRUE(editor->IsChanged());
    EXPECT_EQ(LastTold(),
              "Hiermee vervangt u alle instellingen voor gebruikers van deze groep. Weet "
              "u zeker dat u dit wilt?");
    EXPECT_EQ(Right("O'Brien 100%_*", "Print"), "True");
    // Agreed to, and refused by the database: what is shown then is what holds.
    connection->refuse = [](const std::string& statement) {
        return statement.starts_with("Insert");
    };
    user.Click("btnSave");
    connection->refuse = nullptr;
    EXPECT_TRUE(LastTold().starts_with("Opslaan is niet gelukt")) << LastTold();
    user.Choose("treUsers", IdOf(*editor, "O'Brien 100%_*"));
    EXPECT_TRUE(editor->Form()["treRights"].Find(print)->checked);
    user.Click("btnSave");
    EXPECT_EQ(Right("O'Brien 100%_*", "Print"), "False");
    EXPECT_EQ(Right("O'Brien 100%_*", "Mail"), "True");
    EXPECT_EQ(Right("Sales", "Mail"), "True");
    // A new group's rights hold for those who are in it; refused, nobody has them.
    user.ChooseAll("treUsers", {});
    const auto made = Add(user, "btnGroup", "Nieuw");
    user.TickItem("treRights", right + 19);
    EXPECT_TRUE(user.Drag("treUsers", {IdOf(*editor, "O'Brien 100%_*")}, "treUsers", made));
    machine.messages.answers = {platform::Answer::No};
    user.Click("btnSave");
    user.Choose("treUsers", made);
    user.TickItem("treRights", right + 19, false);
    user.Click("btnSave");
    EXPECT_FALSE(editor->IsChanged());
    EXPECT_EQ(Right("O'Brien 100%_*", "Mail"), "True");
}

TEST_F(RightsEditor, GroupsHoldGroupsAndNobodyIsLostInThem) {
    Fill();
    tests::FormUser user(editor->Form());
    user.ChooseAll("treUsers", {});
    const auto drag = [](ctlRights& in, const char* who, const char* into) {
        return tests::FormUser(in.Form()).Drag("treUsers", {IdOf(in, who)}, "treUsers",
                                               IdOf(in, into));
    };
    Add(user, "btnGroup", "Binnendienst");
    EXPECT_TRUE(drag(*editor, "Sales", "Binnendienst"));
    EXPECT_FALSE(drag(*editor, "Binnendienst", "Sales")) << "into what it holds";
    user.Choose("treUsers", IdOf(*editor, "Binnendienst"));
    user.TickItem("treRights", right + 17); // Mail
    user.Click("btnSave");
    EXPECT_EQ(Right("Sales", "Mail"), "True");
    EXPECT_EQ(Right("O'Brien 100%_*", "Mail"), "True");
    const auto& users = editor->Form()["treUsers"];
    ASSERT_EQ(users.Items().size(), 4U);
    EXPECT_EQ(users.Find(IdOf(*editor, "Sales"))->parent, IdOf(*editor, "Binnendienst"));
    EXPECT_EQ(users.Find(IdOf(*editor, "O'Brien 100%_*"))->parent, IdOf(*editor, "Sales"));

    // Two put the groups into each other.
    EXPECT_TRUE(drag(*editor, "Sales", ""));
    user.Click("btnSave");
    const auto other = Make();
    EXPECT_TRUE(drag(*other, "Sales", "Binnendienst"));
    EXPECT_TRUE(drag(*editor, "Binnendienst", "Sales"));
    EXPECT_TRUE(other->Save());
    EXPECT_FALSE(editor->Save());
    EXPECT_TRUE(LastTold().starts_with("'Binnendienst' is intussen")) << LastTold();
    // One deletes the group into which the other puts a user.
    editor->Undo();
    user.Choose("treUsers", IdOf(*editor, "Binnendienst"));
    user.Click("btnDelete");
    EXPECT_TRUE(drag(*other, "Jansen", "Sales"));
    EXPECT_TRUE(other->Save());
    EXPECT_FALSE(editor->Save());
    EXPECT_EQ(Make()->Form()["treUsers"].Items().size(), 4U);
}

TEST_F(RightsEditor, TheLastWhoMayChangeRightsIsNotLockedOutUnasked) {
    Fill();
    tests::FormUser user(editor->Form());
    user.Tick("chkUseRights"); // Jansen may undo it: one question
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    user.Choose("treUsers", IdOf(*editor, "Jansen"));
    EXPECT_EQ(user.Text("lblEffective"), "Geldig nu: 9 van 26 rechten");
    user.Click("btnSave");
    editor->SetUserAuth(As("Jansen"));
    user.Choose("treUsers", IdOf(*editor, "Jansen"));
    user.TickItem("treRights", updateEditRights, false);
    machine.messages.answers = {platform::Answer::No};
    user.Click("btnSave");
    EXPECT_NE(LastTold().find("Geen enkele gebruiker mag rechten wijzigen"), std::string::npos);
    EXPECT_EQ(Right("Jansen", "UpdateEditRights"), "True");
    // He may not be able to log on under another name.
    editor->Undo();
    user.EditItem("treUsers", IdOf(*editor, "Jansen"), "Jansen-2");
    machine.messages.answers = {platform::Answer::No};
    user.Click("btnSave");
    EXPECT_TRUE(LastTold().starts_with("Alleen wie een andere naam krijgt")) << LastTold();
    EXPECT_EQ(Right("Jansen", "UpdateEditRights"), "True");
    // What he cannot see he cannot change back either.
    editor->Undo();
    user.TickItem("treRights", readEditRights, false);
    machine.messages.answers = {platform::Answer::No};
    user.Click("btnSave");
    EXPECT_EQ(Right("Jansen", "ReadEditRights"), "True");
    // Asked again for what came after the switch was turned on.
    editor->Undo();
    user.Tick("chkUseRights", false);
    user.Click("btnSave");
    user.Tick("chkUseRights");
    const auto asked = machine.messages.shown.size();
    user.Choose("treUsers", IdOf(*editor, "Jansen"));
    user.PressKey("treUsers", 0x2E);
    machine.messages.answers = {platform::Answer::No};
    user.Click("btnSave");
    EXPECT_EQ(machine.messages.shown.size(), asked + 2);
    EXPECT_EQ(Right("Jansen", "UpdateEditRights"), "True");
    // Without the right nothing is seen or changed at all, from the moment that rights are used.
    editor->Undo();
    user.Tick("chkUseRights");
    const auto nobody = Make();
    EXPECT_FALSE(nobody->Form()["treUsers"].Items().empty());
    user.Click("btnSave");
    nobody->Refresh();
    EXPECT_TRUE(nobody->Form()["treUsers"].Items().empty());
    user.EditItem("treUsers", IdOf(*editor, "Jansen"), "Piet");
    const auto half = std::make_shared<model::clsUserAuth>(machine);
    for (const char* key : {"UpdateEditRights", "CreateEditRights"}) half->SetRight(key, "True");
    editor->SetUserAuth(half);
    for (const char* field : {"treRights", "btnUser", "chkUseRights", "btnSave"})
        EXPECT_FALSE(user.CanUse(field)) << field;
    EXPECT_TRUE(editor->Form()["treUsers"].Items().empty());
}

TEST_F(RightsEditor, RightsThatANameHasAlreadyAreShownAndStay) {
    const auto give = [&](const char* name, const char* key) {
        tests::On<model::clsUserAuth> rights(machine, database);
        rights.SetUserId(name);
        rights.SetRight(key, "True");
        EXPECT_TRUE(rights.SaveRights());
    };
    Fill();
    give("Oud", "Print");
    tests::FormUser user(editor->Form());
    EXPECT_FALSE(user.EditItem("treUsers", IdOf(*editor, "Jansen"), "Oud"));
    EXPECT_EQ(LastTold(), "'Oud' heeft al rechten in deze database");
    user.ChooseAll("treUsers", {});
    Add(user, "btnUser", "oud");
    EXPECT_TRUE(editor->Form()["treRights"].Find(print)->checked);
    user.TickItem("treRights", right + 17);
    EXPECT_TRUE(editor->Save()) << LastTold();
    EXPECT_EQ(Right("Oud", "Print") + Right("Oud", "Mail"), "TrueTrue");

    // Given, or the user made, after the name was typed here.
    const auto made = Add(user, "btnUser", "Later");
    give("Later", "Print");
    EXPECT_FALSE(editor->Save());
    EXPECT_TRUE(LastTold().starts_with("'Later' is intussen")) << LastTold();
    EXPECT_TRUE(user.EditItem("treUsers", made, "Piet"));
    const auto other = Make();
    tests::FormUser theirs(other->Form());
    theirs.Click("btnUser");
    theirs.EditItem("treUsers", theirs.edited, "Piet");
    theirs.TickItem("treRights", print);
    EXPECT_TRUE(other->Save()) << LastTold();
    EXPECT_FALSE(editor->Save());
    EXPECT_EQ(Right("Later", "Print") + Right("Piet", "Print"), "TrueTrue");
}

TEST_F(RightsEditor, TwoAdministratorsDoNotTakeTheRightFromEachOther) {
    Fill();
    tests::FormUser user(editor->Form());
    user.ChooseAll("treUsers", {});
    Add(user, "btnUser", "Piet");
    user.TickItem("treRights", group);
    user.Tick("chkUseRights");
    user.Click("btnSave");
    const auto other = Make(As("Jansen"));
    editor->SetUserAuth(As("Piet"));
    tests::FormUser jansen(other->Form());
    jansen.Choose("treUsers", IdOf(*other, "Piet"));
    jansen.TickItem("treRights", group, false);
    user.Choose("treUsers", IdOf(*editor, "Jansen"));
    user.TickItem("treRights", group, false);
    EXPECT_TRUE(other->Save());
    EXPECT_FALSE(editor->Save());
    EXPECT_EQ(LastTold(),
              "'Rechten wijzigen' is intussen door iemand anders gewijzigd. Er is niets "
              "opgeslagen.");
    EXPECT_EQ(Right("Jansen", "UpdateEditRights"), "True");
}

TEST_F(RightsEditor, WhoMayOnlyMakeOrDeleteUsersCanDoThat) {
    Fill();
    tests::FormUser user(editor->Form());
    user.ChooseAll("treUsers", {});
    Add(user, "btnUser", "Klerk");
    for (const auto right : {createEditRights, readEditRights}) user.TickItem("treRights", right);
    user.Tick("chkUseRights");
    user.Click("btnSave");
    // The host may tell the user before the database or after it.
    editor->SetUserAuth(As("Klerk"));
    user.ChooseAll("treUsers", {});
    EXPECT_NE(Add(user, "btnUser", "Nieuw"), 0);
    EXPECT_FALSE(user.EditItem("treUsers", IdOf(*editor, "Jansen"), "x"));
    EXPECT_FALSE(user.CanUse("treRights"));
    EXPECT_FALSE(user.CanUse("btnDelete"));
    EXPECT_TRUE(editor->Save()) << LastTold();
    EXPECT_NE(IdOf(*Make(As("Jansen")), "Nieuw"), 0);
    // Switched off it shows the same, and takes nothing.
    editor->SetEnabled(false);
    editor->Refresh();
    EXPECT_NE(IdOf(*editor, "Nieuw"), 0);
    EXPECT_FALSE(user.CanUse("btnUser"));
}

TEST_F(RightsEditor, RefusesWhatAnotherChangedMeanwhileAndWritesAllOrNothing) {
    Fill();
    const auto other = Make();
    tests::FormUser mine(editor->Form()), theirs(other->Form());
    theirs.Choose("treUsers", IdOf(*other, "Jansen"));
    theirs.TickItem("treRights", print);
    EXPECT_TRUE(other->Save());
    mine.Choose("treUsers", IdOf(*editor, "O'Brien 100%_*"));
    mine.TickItem("treRights", right + 17);
    mine.Choose("treUsers", IdOf(*editor, "Jansen"));
    mine.TickItem("treRights", right + 17);
    EXPECT_FALSE(editor->Save());
    EXPECT_EQ(LastTold(),
              "'Jansen' is intussen door iemand anders gewijzigd. Er is niets opgeslagen.");
    EXPECT_EQ(Right("O'Brien 100%_*", "Mail"), "");
    editor->Undo();

    // Deleted by the other while it was changed here; then every write fails in turn.
    theirs.Choose("treUsers", IdOf(*other, "Jansen"));
    theirs.Click("btnDelete");
    EXPECT_TRUE(other->Save());
    mine.Choose("treUsers", IdOf(*editor, "Jansen"));
    mine.TickItem("treRights", right + 17);
    EXPECT_FALSE(editor->Save());
    editor->Undo();
    mine.Choose("treUsers", IdOf(*editor, "O'Brien 100%_*"));
    mine.TickItem("treRights", group);
    mine.EditItem("treUsers", IdOf(*editor, "O'Brien 100%_*"), "Piet");
    std::size_t failed = 0;
    for (std::size_t n = 1; n < 500; ++n) {
        std::size_t writes = 0;
        connection->refuse = [&](const std::string& statement) {
            const bool read = statement.starts_with("Select") || statement.starts_with("select");
            return !read && ++writes == n;
        };
        const bool saved = editor->Save();
        connection->refuse = nullptr;
        if (saved) break;
        ++failed;
        ASSERT_EQ(Right("O'Brien 100%_*", "Print"), "True") << n;
        ASSERT_EQ(Right("Piet", "Print"), "") << n;
    }
    EXPECT_GT(failed, 10U);
    EXPECT_EQ(Right("Piet", "EditSettings"), "True");
}

} // namespace kavidex::controls
