// The list of a folder's documents and notes on the viewer's stage, over the embedded engine.
#include <gtest/gtest.h>

#include "controls/viewer/NoteFile.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/list/DocumentList.h"
#include "tests/fakes/FakeViewerWindow.h"
#include "tests/fakes/RecordingConnection.h"
#include "tests/unit/controls/ViewerFixture.h"

namespace kavidex::controls {

using Lists = tests::ViewerTest;

TEST(DocumentList, HasOneStatementThatOtherProgramsKnow) {
    const auto access = std::make_shared<tests::RecordingConnection>("ACCESS");
    EXPECT_EQ(DocumentListStatement(access, 4711),
              "SELECT tblTreeItem.Id, tblTreeItem.Description as Omschrijving, tblTreeItem.Type, tb"
              "lDocument.InsertedBy as [Toegevoegd door], tblDocument.InsertDate & tblDocument.Inse"
              "rtTime as InsertSort, right(tblDocument.InsertDate,2) & '-' & mid(tblDocument.Insert"
              "Date,5,2) & '-' & left(tblDocument.InsertDate,4)   & ' ' & left(tblDocument.InsertTi"
              "me,2) & ':' & right(tblDocument.InsertTime,2) as [Toegevoegd op], tblDocExtraInfo.Se"
              "ndTo as [Verzonden aan], tblDocExtraInfo.SendFrom as [Ontvangen van],  tblDocExtraIn"
              "fo.SendOn as [Sort Verzonden op], iif(tblDocExtraInfo.SendOn is null,'',mid(tblDocEx"
              "traInfo.SendOn,7,2) & '-' & mid(tblDocExtraInfo.SendOn,5,2) & '-' & left(tblDocExtra"
              "Info.SendOn,4)   & ' ' & mid(tblDocExtraInfo.SendOn,9,2) & ':' & mid(tblDocExtraInfo"
              ".SendOn,11,2) & ':' & mid(tblDocExtraInfo.SendOn,13,2)) as [Verzonden op],  tblDocEx"
              "traInfo.RecievedOn as [Sort Ontvangen op], iif(tblDocExtraInfo.RecievedOn is null,''"
              ",mid(tblDocExtraInfo.RecievedOn,7,2) & '-' & mid(tblDocExtraInfo.RecievedOn,5,2) & '"
              "-' & left(tblDocExtraInfo.RecievedOn,4)   & ' ' & mid(tblDocExtraInfo.RecievedOn,9,2"
              ") & ':' & mid(tblDocExtraInfo.RecievedOn,11,2) & ':' & mid(tblDocExtraInfo.RecievedO"
              "n,13,2)) as [Ontvangen op],  tblDocExtraInfo.NrOfAttatchements as [Aantal bijlagen] "
              "FROM (tblTreeItem LEFT JOIN tblDocument ON tblTreeItem.ItemId = tblDocument.DocId) L"
              "EFT JOIN tblDocExtraInfo ON tblDocument.Id = tblDocExtraInfo.DocId Where Not ((ItemI"
              "d Is Null) Or ItemId = 0) And ParentId = "
              "4711");
}

TEST_F(Lists, SortsByWhatIsStoredAndOpensByEnter) {
    Document("tif", "Scan", "0905");
    const auto mail = Document("msg", "Brief", "1405", "jan@example.org", 9);
    Document("msg", "Antwoord", "1405", "jan@example.org", 12);
    ASSERT_TRUE(viewer.ShowList(folder));
    auto& view = viewer.Views().list;
    auto& list = view.List();
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::Grid}));
    EXPECT_EQ(view.Caption(), "Inhoud van map 'Post'");
    ASSERT_EQ(list.Columns(), 9U) << "four of thirteen are hidden";
    EXPECT_EQ(list.Widths(1800, 96), std::vector<int>(9, 200));
    EXPECT_EQ(list.Widths(600, 96), (std::vector<int>{180, 52, 52, 105, 42, 42, 120, 120, 40}))
        << "what is read of most";
    const auto order = [&] {
        std::string names;
        for (std::size_t row = 0; row < list.Count(); ++row) names += list.Text(row, 0)[0];
        return names;
    };
    list.HeadingClicked(3);
    EXPECT_EQ(list.Title(3), "Toegevoegd op (oplopend)");
    EXPECT_EQ(order().front(), 'S') << "five past nine";
    list.HeadingClicked(8);
    EXPECT_EQ(order(), "SBA") << "numbers, nothing first";
    EXPECT_EQ(list.Sort(), "[Aantal bijlagen] ASC");
    std::int32_t chosen = 0;
    const auto token = viewer.DocumentChosen.Subscribe([&](std::int32_t id) { chosen = id; });
    list.RowActivated(1);
    EXPECT_EQ(chosen, mail->Id());

    ASSERT_TRUE(viewer.Refresh());
    EXPECT_EQ(order(), "SBA");
    ASSERT_TRUE(viewer.ShowList(root));
    EXPECT_EQ(list.Sort(), "");
    EXPECT_EQ(list.Count(), 0U) << "a folder is no document";
    database->Execute("drop table tblDocExtraInfo");
    machine.messages.shown.clear();
    EXPECT_TRUE(viewer.ShowList(folder));
    EXPECT_EQ(list.Count(), 0U);
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].caption, "Error in ShowList");
}

TEST_F(Lists, ANoteIsSavedWhenItIsLeft) {
    const auto note = Document("nnt", "Notitie");
    const auto path = FileOf(note);
    ASSERT_TRUE(viewer.ShowItem(note));
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::Note}));
    auto& shown = viewer.Views().note.Note();
    EXPECT_EQ(shown.Key(), path);
    shown.SetText("terugbellen");
    machine.files.FailAt(1, platform::errors::diskFull, true);
    EXPECT_FALSE(viewer.ShowList(folder)) << "it could not be saved, and stays";
    EXPECT_EQ(viewer.Item(), note);
    machine.files.FailAt(0);
    EXPECT_EQ(LastMessage(), "-2147024784 " + platform::FileName(path) + ": de schijf is vol");
    EXPECT_TRUE(viewer.ShowList(folder));
    EXPECT_EQ(ReadNote(machine.files.ReadAll(path)).memo, "terugbellen");
    EXPECT_TRUE(viewer.ShowItem(DocumentOf("nnt", "Kop", "\"kop\"\r\n")));
    EXPECT_EQ(shown.Heading() + shown.Text(), "kop") << "nothing of the note before";

    database->Execute("update tblSettings set [Value] = 'X:\\weg\\' where SKey = 'DocumentPath'");
    machine.messages.shown.clear();
    EXPECT_FALSE(viewer.ShowItem(note)) << "an absent store holds no new notes";
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].text, "Document kan niet gevonden worden.");
}

} // namespace kavidex::controls
