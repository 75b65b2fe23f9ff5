// Documents: their rows, their files and the store.
#include "model/clsDocument.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

using model::clsDocument;

class Documents : public ModelDatabase {
protected:
    struct Letter : On<clsDocument> {
        explicit Letter(const Documents& test) : On(test.machine, test.connection) {
            SetExternalId("O'B");
            SetInsertedBy("jan");
            SetInsertDate("20060315");
            SetInsertTime("0905");
            SetDescription("Brief");
            SetDocType("tif");
        }
    };
    struct SavedLetter : Letter {
        explicit SavedLetter(const Documents& test) : Letter(test) { EXPECT_TRUE(SaveNewRow()); }
    };
    std::string InStore(const std::string& id) {
        return Store() + "\\20060315\\tif\\" + id + ".tif";
    }
    std::string MakeFile(const std::string& name, const std::string& bytes = "scan") {
        machine.files.WriteAll(machine.Path(name), bytes);
        return machine.Path(name);
    }
};

// As SQL Server and Access answer: their automatic numbers cannot be written.
TEST_F(Documents, AreTakenOutByTheirWorkingIdWhereTheKeyCannotBeWritten) {
    SavedLetter document(*this);
    const std::string id = std::to_string(document.DocId());
    connection->refuse = [](const std::string& s) { return s.find("set Id = -") != s.npos; };
    EXPECT_TRUE(document.DeleteCurrentRow());
    EXPECT_EQ(One("select Id, DocId from tblDocument"), id + "|-" + id);
    EXPECT_TRUE(machine.log.Has("clsDocument.DeleteCurrentRow"));
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_FALSE(document.Load(std::stoi(id)));

    Sql("update tblDocument set DocId = -DocId");
    connection->refuse = [](const std::string& s) { return s.starts_with("update tblDocument"); };
    EXPECT_FALSE(document.DeleteCurrentRow());
    EXPECT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_EQ(One("select Id, DocId from tblDocument"), id + "|" + id);
}

TEST_F(Documents, WithoutMailInformationGetNoExtraRowAndKeepOneTheyWrote) {
    Letter plain(*this), mail(*this);
    plain.SetSendOn("20060315");
    ASSERT_TRUE(plain.SaveNewRow());
    EXPECT_TRUE(Rows("select Id from tblDocExtraInfo").empty());
    mail.SetRecievedFrom("mie");
    ASSERT_TRUE(mail.SaveNewRow());
    mail.SetSendTo("piet");
    ASSERT_TRUE(mail.UpdateCurrentRow()); // without a LoadData between
    EXPECT_EQ(One("select SendTo from tblDocExtraInfo"), "piet");
    mail.SetDocId(plain.DocId()); // another document now: its extra information is not touched
    mail.SetSendTo("x");
    ASSERT_TRUE(mail.UpdateCurrentRow());
    EXPECT_EQ(One("select SendTo from tblDocExtraInfo"), "piet");
}

TEST_F(Documents, ExtraInformationBelongsToItsOwnRow) {
    Letter document(*this);
    document.SetSendTo("piet");
    ASSERT_TRUE(document.SaveNewRow());
    const std::string first = std::to_string(document.DocId());
    document.SetSendTo("klaas");
    ASSERT_TRUE(document.SaveNewRow()); // the object keeps its DocId, the row is another one
    EXPECT_EQ(std::to_string(document.DocId()), first);
    const std::string second = std::to_string(document.Id());
    EXPECT_EQ(Rows("select DocId, SendTo from tblDocExtraInfo order by Id"),
              (std::vector<std::string>{first + "|piet", second + "|klaas"}));

    On<clsDocument> doomed(machine, connection); // never read
    doomed.SetId(document.Id());
    ASSERT_TRUE(doomed.DeleteCurrentRow());
    EXPECT_EQ(One("select SendTo from tblDocExtraInfo"), "piet");
    EXPECT_FALSE(doomed.UpdateCurrentRow()) << "it has no number";
    EXPECT_EQ(One("select SendTo from tblDocExtraInfo"), "piet");
}

TEST_F(Documents, ARowWhoseFileIsThereAlreadyIsMarked) {
    const SavedLetter first(*this);
    const std::string next = std::to_string(first.DocId() + 1);
    machine.files.WriteAll(InStore(next), "older");
    SavedLetter second(*this);
    EXPECT_TRUE(second.AllreadyExists());
    EXPECT_EQ(One("select DocId, Description from tblDocument where Id = " + next),
              "0|Document allready exists");
    // Neither under the number that the object took nor under the row's own 0.
    const std::string source = MakeFile("a.tif", "newer");
    EXPECT_FALSE(second.AddDocument(source, false, true));
    EXPECT_EQ(machine.files.ReadAll(InStore(next)), "older");
    Letter marked(*this);
    marked.SetCriteria("Id = " + next);
    ASSERT_TRUE(marked.OpenDataSource() && marked.LoadData());
    EXPECT_FALSE(marked.AddDocument(source, false, true));
    clsDocument none(machine);
    std::string path = "x";
    EXPECT_FALSE(none.AddDocument(source, false, true) || none.CreateEmptyDoc(path));
    EXPECT_EQ(path, "") << "two documents would share it";
    EXPECT_TRUE(machine.files.FileExists(source));
    EXPECT_EQ(machine.files.List(Store(), "*", true), std::vector<std::string>{"20060315"});
}

// A file that could not be looked for may be there.
TEST_F(Documents, GetNoNumberWhileTheStoreCannotBeLookedInto) {
    SavedLetter document(*this);
    const std::string id = std::to_string(document.DocId());
    ASSERT_TRUE(document.SaveNewRow()); // a second row, the first one's number
    std::string path;
    EXPECT_TRUE(document.CreateEmptyDoc(path)); // makes the day's folder
    for (const auto error : {platform::errors::accessDenied, platform::errors::sharingViolation}) {
        machine.files.FailAt(1, error);
        EXPECT_FALSE(document.SaveNewRow());
        machine.files.FailAt(1, error);
        EXPECT_FALSE(document.CreateEmptyDoc(path));
    }
    machine.files.FailAt(0);
    EXPECT_EQ(Rows("select Id from tblDocument").size(), 2u);
    EXPECT_EQ(machine.messages.shown.size(), 4u);
    document.SetDescription(std::string(300, 'x'));
    EXPECT_FALSE(document.SaveNewRow());
    EXPECT_EQ(machine.messages.shown.back().text.find("Insert into"), std::string::npos)
        << machine.messages.shown.back().text;
    EXPECT_TRUE(machine.log.Has("clsDocument.SaveNewRow", "Insert into tblDocument"));
}

TEST_F(Documents, FilesAreCopiedWholeAndSourcesDeletedOnlyAfterwards) {
    SavedLetter document(*this);
    const std::string source = MakeFile("a.tif"), id = std::to_string(document.DocId());
    const std::string stored = InStore(id);
    EXPECT_TRUE(document.AddDocument(source, true, false));
    EXPECT_EQ(machine.files.ReadAll(stored), "scan");
    EXPECT_TRUE(machine.files.DirectoryExists(Store() + "\\20261115")); // today's
    EXPECT_FALSE(document.AddDocument(source, true, true));             // it is there already
    EXPECT_TRUE(machine.files.FileExists(source));
    EXPECT_TRUE(machine.messages.shown.empty()); // an answer, not an error
    EXPECT_TRUE(machine.log.Has("clsDocument.AddDocument"));
    EXPECT_TRUE(document.AddDocument(source, false, true));
    EXPECT_FALSE(machine.files.FileExists(source));
    std::string path;
    EXPECT_TRUE(document.CreateEmptyDoc(path));
    EXPECT_EQ(path, stored);
    EXPECT_EQ(document.StorePath(), stored);
    // A second row leaves the object with the DocId of the first, whose file stays what it is.
    ASSERT_TRUE(document.SaveNewRow());
    const std::string second = MakeFile("b.tif", "second");
    EXPECT_FALSE(document.AddDocument(second, false, true));
    EXPECT_FALSE(document.CreateEmptyDoc(path));
    EXPECT_EQ(path, "");
    EXPECT_EQ(machine.files.ReadAll(stored), "scan");
    document.SetDocId(document.Id());
    EXPECT_TRUE(document.AddDocument(second, false, true));
    EXPECT_EQ(machine.files.ReadAll(document.StorePath()), "second");
    document.SetDocId(std::stoi(id));
    document.SetDocType("pdf");
    EXPECT_TRUE(document.StorePath().ends_with(".pdf"));
    EXPECT_FALSE(machine.files.DirectoryExists(platform::FolderOf(document.StorePath())))
        << "a path that is only looked at makes no folder";
    document.SetDocType("tif");
    EXPECT_FALSE(document.AddDocument(machine.Path("gone.tif"), false, true));
}

// Whatever names it: deleting "the source" would delete the only copy.
TEST_F(Documents, AStoredFileIsNeverTakenForItsOwnSource) {
    SavedLetter document(*this);
    ASSERT_TRUE(document.AddDocument(MakeFile("a.tif"), true, false));
    const std::string stored = document.StorePath();
#ifdef _WIN32
    const std::string link = "\\\\?\\" + Store();
#else
    const std::string link = machine.Path("link");
    std::filesystem::create_directory_symlink(FakeWorkstation::Native(Store()),
                                              FakeWorkstation::Native(link));
#endif
    const std::string below = stored.substr(Store().size());
    for (const std::string& alias :
         {stored, Store() + "\\" + below, Store() + "\\..\\store" + below, link + below}) {
        machine.messages.shown.clear();
        EXPECT_TRUE(document.AddDocument(alias, false, true)) << alias;
        ASSERT_TRUE(machine.files.FileExists(stored)) << alias;
        ASSERT_EQ(machine.messages.shown.size(), 1u);
        EXPECT_EQ(machine.messages.shown[0].caption, "Section Runtime Error clsDocument");
        EXPECT_TRUE(machine.messages.shown[0].text.starts_with("Error #-"));
    }
    EXPECT_EQ(machine.files.ReadAll(stored), "scan");
}

TEST_F(Documents, AreNotFiledInAStoreThatIsNotThere) {
    Sql("update tblSettings set [Value] = '" + machine.Path("x\\y") +
        "' where sKey = 'DocumentPath'");
    Letter document(*this);
    document.SetDocId(7);
    EXPECT_FALSE(document.AddDocument(MakeFile("a.tif"), false, true));
    std::string path;
    EXPECT_FALSE(document.CreateEmptyDoc(path));
    EXPECT_FALSE(machine.files.DirectoryExists(machine.Path("x")));
    EXPECT_EQ(machine.messages.shown.size(), 2u);
    Sql("update tblSettings set [Value] = '' where sKey = 'DocumentPath'");
    document.SetBaseSaveDirectory("");
    EXPECT_FALSE(document.AddDocument(machine.Path("a.tif"), false, true));
    EXPECT_EQ(machine.messages.shown.back().text, "DocumentPath in section Storage not found");
    EXPECT_TRUE(machine.files.FileExists(machine.Path("a.tif")));
}

TEST_F(Documents, NeverLeaveTheStore) {
    Letter document(*this);
    const std::string source = MakeFile("a.tif");
    document.SetDocId(7);
    for (const char* const name : {"..", "..\\..\\x", "../x", "c:", "nul", "tif ", "a\tb"}) {
        document.SetDocType(name);
        EXPECT_FALSE(document.SaveNewRow()) << name;
        EXPECT_FALSE(document.AddDocument(source, true, true)) << name;
    }
    document.SetDocType("tif");
    document.SetInsertDate("..");
    EXPECT_FALSE(document.AddDocument(source, true, true));
    EXPECT_TRUE(machine.files.FileExists(source));
    EXPECT_EQ(Rows("select Id from tblDocument").size(), 0u);
    EXPECT_NE(machine.messages.shown.back().text.find("\"..\" cannot be a folder"),
              std::string::npos)
        << machine.messages.shown.back().text;
}

TEST_F(Documents, WithoutAStoreSayWhatIsMissingAndBuildAPathFromNothing) {
    Sql("Delete from tblSettings where Section = 'Storage'");
    SavedLetter document(*this);
    ASSERT_EQ(machine.messages.shown.size(), 1u);
    EXPECT_EQ(machine.messages.shown[0].text, "DocumentPath in section Storage not found");
    std::string path;
    EXPECT_TRUE(document.CreateEmptyDoc(path));
    EXPECT_EQ(machine.messages.shown.size(), 2u);
    EXPECT_EQ(path, "20060315\\tif\\" + std::to_string(document.DocId()) + ".tif");
    const std::string source = MakeFile("a.tif");
    EXPECT_FALSE(document.AddDocument(source, true, true)); // not into the host's folder
    EXPECT_TRUE(machine.files.FileExists(source));
    EXPECT_EQ(machine.messages.shown.size(), 3u) << "told once";
}

TEST_F(Documents, ErrorsOfEveryKindAreReportedInOneForm) {
    clsDocument document(machine); // without a connection
    EXPECT_FALSE(document.OpenDataSource() || document.SaveNewRow());
    document.CloseDataSource();
    EXPECT_FALSE(document.DeleteCurrentRow());
    EXPECT_EQ(machine.messages.shown.size(), 3u);
    EXPECT_TRUE(document.Eof() && document.Bof());
    EXPECT_EQ(document.RecordCount() + document.AbsolutePosition(), 0);
    document.Move(3);
    EXPECT_FALSE(document.LoadData());
}

} // namespace
} // namespace kavidex::tests
