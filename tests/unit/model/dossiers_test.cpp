// Dossiers and the host's keys to them.
#include "model/clsDossier.h"
#include "model/clsDossierDbRelations.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::clsDossier;
using model::clsDossierDbRelations;

class Dossiers : public ModelDatabase {};

TEST_F(Dossiers, AreFoundFromTheHostsKey) {
    machine.guids.real = false;
    On<clsDossierDbRelations> key(machine, connection);
    key.SetDbKey("K'1");
    ASSERT_TRUE(key.SaveNewRow());
    On<clsDossier> dossier(machine, connection);
    dossier.SetDossierId(key.DossierId());
    dossier.SetDossierType("Zaak");
    dossier.SetTreeId(7);
    ASSERT_TRUE(dossier.SaveNewRow());
    const std::string number = std::to_string(key.DossierId());
    const std::vector<std::string> inserted = {
        "Insert into tblDossierDbRelation (DbKey, dbRelGuid) Values ('K''1','" +
            FakeGuids::TextOf(1) + "')",
        "Select * from tblDossierDbRelation where DbRelGuid = '" + FakeGuids::TextOf(1) + "'",
        "Insert into tblDossierRelations (DossierId, Type, ChilddossierId, ChildType, TreeId, "
        "RelGuid) Values (" +
            number + ", 'Zaak', 0, null, 7,'" + FakeGuids::TextOf(2) + "')",
        "Select * from tblDossierRelations where RelGuid = '" + FakeGuids::TextOf(2) + "'"};
    EXPECT_EQ(connection->statements, inserted);

    On<clsDossierDbRelations> found(machine, connection);
    found.SetDbKey("K'1");
    ASSERT_TRUE(found.OpenDataSource());
    EXPECT_EQ(found.DossierId(), key.DossierId());
    EXPECT_EQ(found.DbKey_Size(), 255);
    On<clsDossier> rows(machine, connection);
    rows.SetDossierId(found.DossierId());
    rows.SetDossierType("Za%");
    rows.SetOrdering("Id");
    connection->statements.clear();
    ASSERT_TRUE(rows.OpenDataSource());
    EXPECT_EQ(rows.TreeId(), 7);
    rows.ReQuery(); // what was loaded does not become a filter
    const std::string open = "select * from tblDossierRelations where DossierId = " + number +
                             " And Type like 'Za%' order by Id";
    EXPECT_EQ(connection->statements, (std::vector<std::string>{open, open}));

    connection->statements.clear();
    ASSERT_TRUE(key.UpdateCurrentRow());
    ASSERT_TRUE(key.DeleteCurrentRow());
    EXPECT_EQ(
        connection->statements,
        (std::vector<std::string>{
            "Update tblDossierDbRelation set dbKey = 'K''1' where dbRelId = " + number,
            "update tblDossierDbRelation set DbRelId = -" + number + " where DBrelid= " + number}));
    ASSERT_TRUE(found.OpenDataSource());
    EXPECT_TRUE(found.Eof());
    EXPECT_EQ(One("select dbKey from tblDossierDbRelation"), "K'1");
}

TEST_F(Dossiers, AnUpdateRewritesEveryRelationOfTheTree) {
    for (int i = 0; i < 2; ++i) {
        On<clsDossier> dossier(machine, connection);
        dossier.SetTreeId(7);
        ASSERT_TRUE(dossier.SaveNewRow());
    }
    On<clsDossier> dossier(machine, connection);
    dossier.SetTreeId(7);
    ASSERT_TRUE(dossier.OpenDataSource());
    EXPECT_EQ(dossier.RecordCount(), 2);
    const std::int32_t first = dossier.Id();
    dossier.MoveNext();
    EXPECT_GT(dossier.Id(), first);
    dossier.SetDossierType("A*");
    dossier.SetChildId(4);
    ASSERT_TRUE(dossier.UpdateCurrentRow());
    EXPECT_EQ(Rows("select Type, ChildDossierId from tblDossierRelations"),
              (std::vector<std::string>{"A*|4", "A*|4"}));
    EXPECT_TRUE(connection->Issued(
        "update tblDossierRelations set DossierId = 0, Type= 'A*', ChildDossierId= 4, "
        "ChildType = null where TreeId= 7"));
    // The column of this filter does not exist.
    EXPECT_FALSE(dossier.OpenDataSource());
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_EQ(machine.messages.shown[0].caption, "Application Runtime Error clsDossier");
    dossier.SetChildId(0);
    ASSERT_TRUE(dossier.OpenDataSource());
    // At the end there is no row to change, though the properties still show the last one.
    const auto before = Rows("select * from tblDossierRelations");
    dossier.MoveLast();
    dossier.MoveNext();
    EXPECT_FALSE(dossier.UpdateCurrentRow());
    EXPECT_FALSE(dossier.DeleteCurrentRow());
    EXPECT_EQ(Rows("select * from tblDossierRelations"), before);
    EXPECT_EQ(machine.messages.shown.size(), 1u);
    dossier.MoveFirst();
    ASSERT_TRUE(dossier.DeleteCurrentRow());
    EXPECT_EQ(connection->statements.back(), "update tblDossierRelations set Relid= -" +
                                                 std::to_string(dossier.Id()) +
                                                 " where relid= " + std::to_string(dossier.Id()));
}

} // namespace
} // namespace kavidex::tests
