// Rows that another has taken out, or that could not be read: what a record class still shows of
// them is not written.
#include "model/clsDocument.h"
#include "model/clsDossier.h"
#include "model/clsDossierDbRelations.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

class RowsGone : public ModelDatabase {
protected:
    // Neither is done, and each says why.
    void ExpectRefused(model::RecordClass& row, std::string_view words) {
        machine.messages.shown.clear();
        EXPECT_FALSE(row.UpdateCurrentRow());
        EXPECT_FALSE(row.DeleteCurrentRow());
        ASSERT_EQ(machine.messages.shown.size(), 2u);
        for (const auto& message : machine.messages.shown)
            EXPECT_NE(message.text.find(words), std::string::npos) << message.text;
    }
};

TEST_F(RowsGone, ADocumentsUpdateAndDeletionAreRefused) {
    On<model::clsDocument> document(machine, connection);
    document.SetDocType("tif");
    ASSERT_TRUE(document.SaveNewRow());
    Sql("Insert into tblDocument (DocId, Description) Values (0, 'Document allready exists')");
    document.SetDescription("mine");
    for (const char* taken : {"Id = -Id", "DocId = -DocId"}) {
        Sql("update tblDocument set " + std::string(taken) + " where DocId <> 0");
        const auto before = Rows("select * from tblDocument");
        const bool keysWritten = taken[0] == 'I'; // by servers whose keys can be written
        connection->refuse = [&](const std::string& s) {
            return !keysWritten && s.find("set Id = -") != s.npos;
        };
        ExpectRefused(document, "does not exist any more");
        connection->refuse = nullptr;
        EXPECT_EQ(Rows("select * from tblDocument"), before);
        document.SetCriteria("");
        EXPECT_TRUE(document.OpenDataSource() && document.Eof()) << taken;
        document.CloseDataSource();
        Sql("update tblDocument set " + std::string(taken) + " where DocId <> 0");
    }
    EXPECT_TRUE(document.UpdateCurrentRow());
    document.SetDocId(0); // the number of all that were marked
    EXPECT_FALSE(document.UpdateCurrentRow());
    EXPECT_EQ(One("select Description from tblDocument where DocId = 0"),
              "Document allready exists");
}

TEST_F(RowsGone, ADossiersUpdateDeletionAndRekeyingAreRefused) {
    Sql("Insert into tblDocument (DocId, ExternalId) Values (1, 'K')");
    On<model::clsDossierDbRelations> key(machine, connection);
    key.SetDbKey("K");
    ASSERT_TRUE(key.SaveNewRow());
    On<model::clsDossier> dossier(machine, connection);
    dossier.SetDossierId(key.DossierId());
    dossier.SetTreeId(7);
    ASSERT_TRUE(dossier.SaveNewRow());
    EXPECT_TRUE(key.UpdateCurrentRow() && dossier.UpdateCurrentRow()) << "with nothing changed";
    Sql("update tblDossierDbRelation set DbRelId = -DbRelId");
    Sql("update tblDossierRelations set RelId = -RelId");
    const auto keys = Rows("select * from tblDossierDbRelation"),
               relations = Rows("select * from tblDossierRelations");
    ExpectRefused(key, "does not exist any more");
    dossier.SetDossierType("x");
    ExpectRefused(dossier, "does not exist any more");
    EXPECT_FALSE(key.Rekey("Nieuw"));
    EXPECT_EQ(key.DbKey(), "K");
    EXPECT_EQ(One("select ExternalId from tblDocument"), "K") << "no row has the new key";
    EXPECT_EQ(Rows("select * from tblDossierDbRelation"), keys);
    EXPECT_EQ(Rows("select * from tblDossierRelations"), relations);
    // A negative number would bring a deleted row back.
    dossier.SetId(-dossier.Id());
    EXPECT_FALSE(dossier.DeleteCurrentRow());
    key.SetDossierId(-key.DossierId());
    EXPECT_FALSE(key.DeleteCurrentRow());
    EXPECT_EQ(Rows("select * from tblDossierRelations"), relations);
    EXPECT_EQ(Rows("select * from tblDossierDbRelation"), keys);
}

TEST_F(RowsGone, AfterAnOpenThatFailedTheRowBeforeIsLeftAlone) {
    On<model::clsDossierDbRelations> key(machine, connection);
    key.SetDbKey("Jansen");
    ASSERT_TRUE(key.SaveNewRow());
    ASSERT_TRUE(key.OpenDataSource());
    key.SetDbKey("Pietersen");
    const auto fail = [&] { connection->Failing(1, [&] { EXPECT_FALSE(key.OpenDataSource()); }); };
    fail();
    const auto before = Rows("select * from tblDossierDbRelation");
    EXPECT_FALSE(key.UpdateCurrentRow() || key.DeleteCurrentRow() || key.Rekey("x"));
    EXPECT_EQ(Rows("select * from tblDossierDbRelation"), before);
    ASSERT_TRUE(key.SaveNewRow()); // a row of its own
    EXPECT_TRUE(key.UpdateCurrentRow());
    fail();
    EXPECT_FALSE(key.UpdateCurrentRow());
    key.CloseDataSource(); // from here on the properties alone count
    key.SetDbKey("De Vries");
    EXPECT_TRUE(key.UpdateCurrentRow());
    EXPECT_EQ(Rows("select dbKey from tblDossierDbRelation order by DossierId"),
              (std::vector<std::string>{"Jansen", "De Vries"}));
}

} // namespace
} // namespace kavidex::tests
