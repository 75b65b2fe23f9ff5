// The relations of dossiers.
#include "model/clsDossier.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::clsDossier;

class Dossiers : public ModelDatabase {};

TEST_F(Dossiers, WhatWasLoadedIsNoFilter) {
    On<clsDossier> dossier(machine, connection);
    dossier.SetDossierId(4);
    dossier.SetDossierType("Zaak");
    dossier.SetTreeId(7);
    ASSERT_TRUE(dossier.SaveNewRow());
    On<clsDossier> rows(machine, connection);
    rows.SetDossierId(4);
    rows.SetDossierType("Za%");
    rows.SetOrdering("Id");
    connection->statements.clear();
    ASSERT_TRUE(rows.OpenDataSource());
    EXPECT_EQ(rows.TreeId(), 7);
    rows.ReQuery();
    EXPECT_EQ(connection->statements,
              std::vector<std::string>(2, "select * from tblDossierRelations where DossierId = 4 "
                                          "And Type like 'Za%' order by Id"));
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
