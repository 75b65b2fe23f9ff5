// Rights and checklists.
#include "model/rights.h"

#include "model/clsCheckListType.h"
#include "model/clsUserAuth.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::clsCheckListType;
using model::clsUserAuth;

class Rights : public ModelDatabase {
protected:
    std::shared_ptr<clsUserAuth> Of(std::string_view user) {
        auto auth = std::make_shared<clsUserAuth>(machine);
        auth->SetDbConnection(connection);
        auth->SetUserId(user);
        return auth;
    }
    void Use(std::string_view value) {
        On<data::clsSettings> settings(machine, database);
        settings.SetSetting("Rights", "Use", value);
    }
};

TEST_F(Rights, KeepOneTrimmedPairAKeyInTheirOrder) {
    const auto auth = Of("jan");
    auth->SetRight(" Mail ", " True ");
    auth->SetRight("Print", "False");
    auth->SetRight("Mail", "x");
    std::string key, value, all;
    for (bool more = auth->GetFirstRight(key, value); more; more = auth->GetNextRight(key, value))
        all += key + "=" + value + ";";
    EXPECT_EQ(all, "Mail=x;Print=False;");
    EXPECT_EQ(auth->GetRight("Delete"), "");
}

TEST_F(Rights, CountOnlyWhenInUse) {
    EXPECT_TRUE(model::UseRights(machine, nullptr));
    EXPECT_FALSE(model::UseRights(machine, database)); // no such setting
    const auto auth = Of("jan");
    EXPECT_TRUE(auth->HasRight("Mail"));
    Use("1");
    EXPECT_FALSE(model::UseRights(machine, database));
    Use("TRUE");
    EXPECT_TRUE(model::UseRights(machine, database));
    EXPECT_FALSE(auth->HasRight("Mail"));
    auth->SetRight("Mail", model::rightGranted);
    EXPECT_TRUE(auth->HasRight("Mail"));
}

TEST_F(Rights, AreRefusedAndToldOnceWhileTheirSwitchCannotBeRead) {
    const auto auth = Of("jan");
    auth->SetDbConnection(connection);
    connection->FailStep(1, true);
    EXPECT_TRUE(model::UseRights(machine, connection));
    EXPECT_FALSE(auth->HasRight("Mail"));
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_EQ(machine.messages.shown[0].caption, "Error in UseRights");
    connection->onStep = nullptr;
    EXPECT_FALSE(model::UseRights(machine, connection));
    connection->onStep = [](int) { throw data::Error(data::errors::badEof, "No row", "ADO"); };
    EXPECT_TRUE(model::UseRights(machine, connection));
    EXPECT_EQ(machine.messages.shown.back().text, "No row 3021");
    machine.messages.shown.pop_back();
    connection->onStep = nullptr;
    EXPECT_FALSE(model::UseRights(machine, connection)); // not kept
    connection->FailStep(1, true);
    EXPECT_TRUE(model::UseRights(machine, connection));
    EXPECT_EQ(machine.messages.shown.size(), 2u);
}

TEST_F(Rights, AreKeptPerUserWhateverTheName) {
    const std::vector<std::string> users = {"jan",     "j_n",         "j%n",
                                            "O'Brien", "jan.",        "a*[b]#?",
                                            "Жанна",   "back\\slash", std::string(30, 'x')};
    for (const auto& user : users) {
        const auto auth = Of(user);
        for (const auto& right : model::Rights()) auth->SetRight(right.key, "v " + user);
        auth->SetRight("Eigen 'recht'", "100%");
        ASSERT_TRUE(auth->SaveRights()) << user;
    }
    for (const auto& user : users) {
        const auto auth = Of(user);
        connection->steps = 0;
        connection->countsAll = true;
        ASSERT_TRUE(auth->LoadRights());
        EXPECT_EQ(connection->steps, 1) << "reading begins no transaction: others go on writing";
        connection->countsAll = false;
        EXPECT_EQ(auth->GetRight("Mail"), "v " + user);
        EXPECT_EQ(auth->GetRight("Eigen 'recht'"), "100%");
    }
    ASSERT_TRUE(Of("")->RenameUser("j_n", "j%n"));
    ASSERT_TRUE(Of("O'Brien")->DeleteRights());
    const auto auth = Of("j%n");
    auth->LoadRights();
    EXPECT_EQ(auth->GetRight("Mail"), "v j_n");
    for (const char* gone : {"j_n", "O'Brien"}) {
        const auto none = Of(gone);
        EXPECT_TRUE(none->LoadRights());
        EXPECT_EQ(none->GetRight("Mail"), "") << gone;
    }
    // Only the case changes: to the database both are one name.
    ASSERT_TRUE(Of("")->RenameUser("jan", "JAN"));
    const auto renamed = Of("JAN");
    EXPECT_TRUE(renamed->LoadRights());
    EXPECT_EQ(renamed->GetRight("Mail"), "v jan");
    Use("true"); // a user without a name has no rights, and does not reach the switch
    EXPECT_FALSE(Of(" ")->DeleteRights());
    EXPECT_TRUE(model::UseRights(machine, database));
}

TEST_F(Rights, AFailedSaveOrRenameChangesNothing) {
    const auto auth = Of("jan");
    auth->SetRight("Mail", "a");
    auth->SetRight("Print", "a");
    ASSERT_TRUE(auth->SaveRights());
    const auto before = Rows("select Section, SKey, [Value] from tblSettings order by Id");
    int failures = 0;
    for (int step = 1; step < 60; ++step) {
        connection->FailStep(step);
        bool done = false;
        try {
            done = auth->RenameUser("jan", "piet");
        } catch (const data::Error&) {
        }
        connection->onStep = nullptr;
        if (done) break;
        ++failures;
        EXPECT_EQ(Rows("select Section, SKey, [Value] from tblSettings order by Id"), before)
            << step;
    }
    EXPECT_GT(failures, 3);
    const auto renamed = Of("piet");
    ASSERT_TRUE(renamed->LoadRights());
    EXPECT_EQ(renamed->GetRight("Print"), "a");
}

class CheckLists : public ModelDatabase {};

TEST_F(CheckLists, AreRewrittenWholeAndReadInOrder) {
    On<clsCheckListType> list(machine, connection);
    EXPECT_EQ(list.GetType("", "B"), 2);
    EXPECT_EQ(list.GetType("A", "B"), 0);
    EXPECT_EQ(list.CheckListTabType(), "A^B");
    EXPECT_TRUE(list.CheckListFields().empty());
    list.CreateField(2, "Pas'poort", 1, "", "doc");
    list.CreateField(1, "Loonstrook", 3, "loon;salaris", "tif");
    list.UpdateCurrentType();
    EXPECT_EQ(list.GetType("A", ""), 0); // the current key is kept
    ASSERT_EQ(list.CheckListFields().size(), 2u);
    const auto& first = *list.CheckListFields()[0];
    EXPECT_EQ(first.FieldDescription(), "Loonstrook");
    const std::int32_t id = first.FieldId();
    connection->Failing(3, [&] { EXPECT_THROW(list.UpdateCurrentType(), data::Error); });
    EXPECT_EQ(Rows("select Id from tblCheckListFields").size(), 2u);
    list.UpdateCurrentType();
    list.GetType("A", "B");
    EXPECT_NE(list.CheckListFields()[0]->FieldId(), id);
    list.NewType();
    EXPECT_TRUE(list.CheckListFields().empty());
    list.DeleteCurrentType();
    EXPECT_TRUE(Rows("select Id from tblCheckListFields").empty());
    EXPECT_EQ(list.GetType("A", "it's"), -1); // the key stands in the statement as it is
    EXPECT_TRUE(machine.log.Has("clsCheckListType.GetType"));
}

TEST_F(CheckLists, AreNotReplacedByWhatCouldNotBeRead) {
    for (const char* tab : {"B", "it''s"})
        Sql("Insert into tblChecklistFields (TabType, intOrder) Values('A^" + std::string(tab) +
            "', 1)");
    const auto stored = Rows("select Id, TabType from tblCheckListFields");
    On<clsCheckListType> list(machine, connection);
    connection->Failing(1, [&] { EXPECT_EQ(list.GetType("A", "B"), -1); });
    list.CreateField(2, "Nieuw", 1, "", "tif");
    EXPECT_THROW(list.UpdateCurrentType(), data::Error);
    EXPECT_EQ(list.GetType("A", "it's"), -1);
    EXPECT_THROW(list.UpdateCurrentType(), data::Error);
    EXPECT_EQ(Rows("select Id, TabType from tblCheckListFields"), stored);
    EXPECT_EQ(list.GetType("A", "B"), 0);
    list.CreateField(2, "Nieuw", 1, "", "tif");
    list.UpdateCurrentType();
    EXPECT_EQ(Rows("select Id from tblCheckListFields where TabType = 'A^B'").size(), 2u);
    EXPECT_EQ(list.GetType("A", "it's"), -1);
    list.NewType(); // meant to take the other's place
    list.UpdateCurrentType();
    EXPECT_EQ(Rows("select Id from tblCheckListFields").size(), 2u);
}

} // namespace
} // namespace kavidex::tests
