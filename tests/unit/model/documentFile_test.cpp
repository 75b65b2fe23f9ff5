// The look-up of a document's facts and file: every answer that it can give, each its own.
#include "model/documentFile.h"

#include "model/clsDocument.h"
#include "model/filing.h"
#include "model/storePath.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::DocumentLook;

class DocumentFileTest : public ModelDatabase {
protected:
    DocumentFileTest() {
        machine.files.WriteAll(machine.Path("brief.tif"), "scan");
        model::FilingRequest request;
        request.source = machine.Path("brief.tif");
        request.folderId = tree->Item()->Id();
        request.externalId = "K";
        request.insertedBy = "jan";
        request.readOnly = true;
        request.mail = model::MailInfo{"piet", "mie", "1", "2", 3};
        const auto filed = model::FileDocument(machine, *tree, request);
        item = filed.item;
        path = filed.path;
    }
    model::DocumentFile Look() { return model::FindDocumentFile(machine, connection, *item); }
    void SetRow(const std::string& assignment) {
        Sql("update tblDocument set " + assignment +
            " where DocId = " + std::to_string(item->ItemId()));
    }

    std::shared_ptr<model::clsTree> tree = NewTree();
    model::clsItemPtr item;
    std::string path;
};

TEST_F(DocumentFileTest, TellsTheFactsAndTheFileThatIsThere) {
    const auto file = Look();
    ASSERT_EQ(file.outcome, DocumentLook::Ok) << file.error;
    EXPECT_EQ(file.path, path);
    EXPECT_EQ(file.docId, item->ItemId());
    EXPECT_EQ(file.type + file.description + file.externalId + file.insertedBy + file.insertDate +
                  file.insertTime,
              "tifbriefKjan202611151405");
    EXPECT_TRUE(file.readOnly);
    ASSERT_TRUE(file.extraInfo);
    EXPECT_EQ(file.extraInfo->sendTo + file.extraInfo->recievedFrom, "pietmie");
    EXPECT_EQ(file.extraInfo->numberOfAttatchements, 3);
    Sql("delete from tblDocExtraInfo");
    EXPECT_FALSE(Look().extraInfo);
    EXPECT_EQ(model::FindDocumentFile(machine, connection, *tree->Item()).outcome,
              DocumentLook::NoDocument);
}

TEST_F(DocumentFileTest, TellsAnAbsentFileFromAnAbsentStoreAndFromOneThatCannotBeSeen) {
    machine.files.FailAt(1, platform::errors::accessDenied);
    EXPECT_EQ(Look().outcome, DocumentLook::LookFailed);
    EXPECT_TRUE(machine.log.Has("DocumentFiles", "Injected failure"));
    machine.files.FailAt(0);
    machine.files.Remove(path);
    EXPECT_EQ(Look().outcome, DocumentLook::FileMissing);
    EXPECT_EQ(Look().path, path);
    Sql("update tblSettings set [Value] = '" + machine.Path("unmounted") +
        "' where sKey = 'DocumentPath'");
    EXPECT_EQ(Look().outcome, DocumentLook::NoStore);
    EXPECT_TRUE(Look().HasRow());
    Sql("update tblSettings set [Value] = '' where sKey = 'DocumentPath'");
    EXPECT_EQ(Look().outcome, DocumentLook::NoStore);
    EXPECT_TRUE(machine.messages.shown.empty());
}

TEST_F(DocumentFileTest, ADeletedRowIsNoneAndAFailedReadIsNotADeletedRow) {
    for (int step = 1;; ++step) {
        connection->FailStep(step);
        const auto file = Look();
        const bool failed = connection->steps >= step;
        connection->onStep = nullptr;
        if (!failed) {
            ASSERT_GT(step, 2);
            break;
        }
        // The settings are asked a second time when their first answer failed.
        if (file.outcome != DocumentLook::Ok) {
            EXPECT_EQ(file.outcome, DocumentLook::ReadFailed) << step;
            EXPECT_NE(file.number, 0);
        }
    }
    On<model::clsDocument> document(machine, connection);
    document.SetId(item->ItemId());
    ASSERT_TRUE(document.DeleteCurrentRow());
    EXPECT_EQ(Look().outcome, DocumentLook::NoRow);
}

TEST_F(DocumentFileTest, ARowThatLeadsOutOfTheStoreIsRefusedWithABaseAndWithout) {
    for (const char* const type : {"..\\..\\x", "../x", "c:", "nul"}) {
        SetRow(std::string("Type = '") + type + "'");
        const auto file = Look();
        EXPECT_EQ(file.outcome, DocumentLook::BadPath) << type;
        EXPECT_EQ(file.path, "");
    }
    EXPECT_EQ(Faults(),
              (std::vector<std::string>{"document out of the store", "file without document"}));
    Sql("delete from tblSettings where sKey = 'DocumentPath'");
    On<model::clsDocument> document(machine, connection);
    ASSERT_TRUE(document.Load(item->ItemId()));
    std::string out;
    EXPECT_FALSE(document.CreateEmptyDoc(out));
    EXPECT_EQ(out, "");
}

} // namespace
} // namespace kavidex::tests
