// The document viewer over real scans made by other people's programs: pages shown, turned, marked,
// moved and deleted, and nothing lost on the way to the file.
#include "model/clsUserAuth.h"
#include "tests/unit/controls/posix/ScanViewer.h"

namespace kavidex::tests {
namespace {

using Viewer = ScanViewer;

TEST_F(Viewer, PagesThroughAScanAndOnToTheNextDocument) {
    Show(2);
    EXPECT_EQ(viewer.Status().page, "Pagina 1 van 2 pagina's");
    EXPECT_FALSE(window.Button("BackPage").enabled);
    EXPECT_FALSE(window.Button("NextDoc").visible);
    EXPECT_TRUE(viewer.SetNextPage());
    EXPECT_EQ(viewer.Status().page, "Pagina 2 van 2 pagina's");
    EXPECT_FALSE(viewer.SetNextPage());
    EXPECT_EQ(asked, "");
    viewer.SetAllowMultipleDocScroll(true);
    EXPECT_TRUE(window.Button("NextDoc").visible);
    EXPECT_FALSE(viewer.SetNextPage());
    viewer.ButtonClicked("backpage");
    EXPECT_FALSE(viewer.SetPreviousPage());
    EXPECT_EQ(asked, "next previous ");

    const auto single = File(Scan("single", 1));
    machine.files.SetAttributes(path, platform::attributes::readOnly);
    ASSERT_TRUE(viewer.ShowItem(single));
    EXPECT_EQ(viewer.Status().page, "Pagina 1 van  1 pagina (Alleen lezen)");
    for (const char* button : {"Rotate90L", "Rotate180", "Toolbox", "Move up"})
        EXPECT_FALSE(window.Button(button).enabled) << button;
    machine.files.SetAttributes(path, platform::attributes::normal);

    const auto scan = machine.files.ReadAll(path);
    machine.files.Remove(path);
    EXPECT_FALSE(viewer.Refresh());
    EXPECT_EQ(machine.messages.shown.back().caption, "Melding viewer");
    EXPECT_EQ(Told(), "Document kan niet gevonden worden.|");
    EXPECT_TRUE(viewer.Parts().Empty());
    EXPECT_FALSE(window.Button("Fit").enabled);
    // It is not the last word: others come after it, and its file may come back.
    asked.clear();
    viewer.ButtonClicked("NextDoc");
    viewer.SetPreviousPage();
    EXPECT_EQ(asked, "next previous ");
    EXPECT_FALSE(viewer.Refresh());
    EXPECT_EQ(Told(), "Document kan niet gevonden worden.|");
    machine.files.WriteAll(path, scan);
    EXPECT_TRUE(viewer.Refresh()) << Told();
    EXPECT_EQ(viewer.Item(), single);
    for (const char* bytes : {"", "no scan at all"}) {
        machine.files.WriteAll(path, bytes);
        EXPECT_FALSE(viewer.ShowItem(single));
        EXPECT_NE(Told().find(platform::FileName(path)), std::string::npos)
            << "a file that is no image is named";
    }
}

TEST_F(Viewer, FitsAPageInItsTrueFormAndZoomsInEvenSteps) {
    Show(1);
    auto& canvas = Pages().Canvas();
    const auto& room = canvas.Geometry();
    EXPECT_EQ(room.ShownHeight(), 600); // 1100 rows at 98 are higher than 1728 columns at 204 wide
    EXPECT_NEAR(room.ShownWidth(), 600.0 * (1728 / 204.0) / (1100 / 98.0), 1);
    window.choose = "fittowidth";
    viewer.ButtonDropped("fit");
    EXPECT_EQ(room.ShownWidth(), 800 - 16) << "its scroll bar takes room";
    EXPECT_EQ(viewer.LastFit(), "width");
    ASSERT_TRUE(viewer.ShowItem(File(Scan("other", 1))));
    EXPECT_EQ(room.ShownWidth(), 800 - 16) << "kept for every image";
    canvas.Wheel(1, 100, 200, true, false);
    const auto place = room.ToPage(100, 200);
    for (int i = 0; i < 6; ++i) canvas.Wheel(1, 100, 200, true, false);
    EXPECT_NEAR(room.ToPage(100, 200).x, place.x, 2) << "what is under the pointer stays there";
    EXPECT_NEAR(room.ToPage(100, 200).y, place.y, 2);
    const double before = room.ZoomX();
    viewer.ButtonClicked("ZoomIn");
    EXPECT_NEAR(room.ZoomX() / before, 1.25, 0.01);
    viewer.ButtonClicked("ZoomOut");
    EXPECT_NEAR(room.ZoomX(), before, 1e-9);
    // What is seen of a large page is that part of it.
    window.Settle();
    canvas.ScrollTo(0, 0);
    const auto seen = canvas.See(nullptr);
    ASSERT_NE(seen.picture, nullptr);
    EXPECT_EQ(static_cast<int>(seen.picture->width), room.Width());
    const int top = room.Top();
    canvas.Key(controls::Key(controls::keys::pageDown));
    EXPECT_GT(room.Top(), top);
    const int down = room.Top();
    viewer.ButtonClicked("Rotate180");
    canvas.ScrollTo(0, down);
    EXPECT_TRUE(viewer.SaveImage());
    EXPECT_EQ(room.Top(), down) << "saving moves nothing";
}

TEST_F(Viewer, KeepsTurnsAndMarksOfAPageAndAsksOnceAboutTheToolbox) {
    Show(3);
    viewer.SetNextPage();
    viewer.ButtonClicked("Rotate90R");
    viewer.ButtonClicked("Toolbox");
    window.Settle();
    auto& toolbox = Pages().Toolbox();
    machine.messages.answers = {Answer::No};
    toolbox.ButtonClicked("HollowRectangle");
    const auto& room = Pages().Canvas().Geometry();
    const int x = room.OriginX() + 20, y = room.OriginY() + 30;
    Drag(x, y, x + 100, y + 50);
    toolbox.ButtonClicked("Note");
    window.forms.users = {[](FormUser& user) {
        user.Type("txtText", "Gebeld\nmet klant");
        user.Click("btnOk");
    }};
    Drag(x, y + 100, x + 120, y + 160);
    EXPECT_EQ(Told(),
              "Wilt u de toolbox automatisch verbergen na het toevoegen van een annotatie?|");
    EXPECT_TRUE(viewer.AnnotationsPopupShown());
    EXPECT_TRUE(window.Button("Toolbox").pressed);
    viewer.SetAnnotationsPopupShown(false); // as a host that kept nothing starts again
    // Selected, moved, coloured, and another one deleted.
    toolbox.ButtonClicked("Select");
    Drag(x, y + 20, x + 40, y + 20);
    EXPECT_TRUE(Pages().Editor().HasSelection());
    toolbox.ButtonClicked("Freehand");
    Drag(x, y, x + 60, y + 60);
    EXPECT_EQ(Told(), "") << "the answer is kept";
    toolbox.ButtonClicked("Select");
    Pages().Canvas().PointerDown(x + 30, y + 30);
    Pages().Canvas().PointerUp(x + 30, y + 30);
    toolbox.ButtonClicked("DeleteMark");
    const auto untouched = Stored().Fingerprint(1);
    EXPECT_EQ(Stored().Facts(2).width, 1728U) << "nothing is written yet";
    const double zoomX = room.ZoomX(), zoomY = room.ZoomY();
    const auto saved = path;
    ASSERT_TRUE(viewer.ShowItem(File(Scan("other", 1)))) << "leaving it saves";
    path = saved;
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(Stored().Fingerprint(1), untouched);
    EXPECT_EQ(Stored().Facts(2).width, 1100U);
    EXPECT_EQ(Stored().Facts(2).xDpi, 98);
    imaging::annotations::Annotations marks(Stored().Marks(2).value());
    ASSERT_EQ(marks.Count(), 2U);
    EXPECT_EQ(marks.At(1).text, "Gebeld\r\nmet klant");
    const auto box = marks.At(0).bounds;
    EXPECT_NEAR(box.left, 60 / zoomX, 2) << "it was moved";
    EXPECT_NEAR(box.right - box.left, 100 / zoomX, 2);
    EXPECT_NEAR(box.bottom - box.top, 50 / zoomY, 2);
}

TEST_F(Viewer, DeletesMovesAndExportsPagesByTheirThumbnails) {
    Show(4);
    auto& thumbs = Pages().Thumbs();
    thumbs.SetRoom(160, 500, 96);
    EXPECT_FALSE(viewer.DeleteSelectedThumbs()) << "what is not seen is not selected";
    viewer.ButtonClicked("thumbnails");
    EXPECT_TRUE(viewer.ThumbsShown());
    window.Settle();
    ASSERT_NE(thumbs.Picture(4), nullptr);
    EXPECT_EQ(thumbs.Picture(4)->width, 91U) << "in its true form";
    const auto ids = Pages().Ids().GetIds();

    thumbs.Clicked(3, false, false);
    thumbs.Clicked(4, true, false);
    viewer.ButtonClicked("Move up");
    EXPECT_EQ(Numbers(), "1342");
    EXPECT_EQ(thumbs.Selected(), (std::set<int>{2, 3}));
    EXPECT_EQ(Pages().Ids().PageNumberOf(ids[1]), 4);
    EXPECT_EQ(Pages().Page(), 3) << "the same page is shown, at its new place";
    viewer.MenuChosen({"mnuMoveUp", 0, {}});
    EXPECT_EQ(Numbers(), "3412");
    EXPECT_FALSE(window.Button("Move up").enabled);
    EXPECT_EQ(asked, "up up ");

    viewer.MenuChosen({"mnuExportPages", 0, {}});
    EXPECT_EQ(exported, (std::vector<int>{1, 2}));
    EXPECT_TRUE(viewer.ThumbsExported());
    EXPECT_EQ(Told(), "Wilt u de geexporteerde pagina's verwijderen uit het originele document?|");
    EXPECT_EQ(Numbers(), "12");
    EXPECT_EQ(imaging::CountPages(machine.files, machine.Path("exported.tif")), 2);

    thumbs.Key(controls::Ctrl('A'));
    viewer.MenuChosen({"mnuExportPages", 0, {}});
    EXPECT_EQ(Told(), "U kunt niet alle pagina's exporteren|");
    EXPECT_FALSE(viewer.DeleteSelectedThumbs());
    EXPECT_NE(Told().find("minstens"), std::string::npos);
    thumbs.Clicked(1, false, false);
    machine.messages.answers = {Answer::No};
    thumbs.Key(controls::Key(controls::keys::del));
    EXPECT_EQ(Numbers(), "12");
    thumbs.Key(controls::Key(controls::keys::del));
    EXPECT_EQ(Numbers(), "2");
    EXPECT_EQ(Pages().Ids().GetIds(), std::vector<std::int32_t>{ids[1]});
    EXPECT_EQ(viewer.Status().page, "Pagina 1 van  1 pagina");
}

TEST_F(Viewer, OverwritesNothingThatAnotherWroteMeanwhile) {
    Show(2);
    viewer.ButtonClicked("Rotate180");
    const auto other = Scan("other", 1);
    imaging::AppendPages(machine.files, path, {other});
    EXPECT_TRUE(viewer.SaveImage());
    EXPECT_EQ(viewer.Status().page, "Pagina 1 van 3 pagina's");
    EXPECT_EQ(Stored().Count(), 3);
    EXPECT_GT(FirstBlackRow(1), 700U) << "turned";

    viewer.ButtonClicked("Rotate180");
    imaging::WritePages(machine.files, {{other, 1, imaging::Turn::None, {}}}, path);
    EXPECT_TRUE(viewer.SaveImage());
    EXPECT_NE(Told().find("niet opgeslagen: 1"), std::string::npos) << "told, and not forced";
    EXPECT_EQ(Numbers(), "1");

    ASSERT_TRUE(viewer.ShowItem(File(Scan("scan", 2))));
    Pages().SetThumbsShown(true);
    window.Settle();
    imaging::MovePage(machine.files, path, 2, 1);
    EXPECT_FALSE(viewer.DeleteSelectedThumbs()) << "the page at that place is another";
    EXPECT_EQ(Numbers(), "21");
    window.Settle();
    Told();
    EXPECT_TRUE(viewer.DeleteSelectedThumbs());
    EXPECT_EQ(Numbers(), "1");
}

TEST_F(Viewer, LosesNoChangeToAFailingDisk) {
    Show(2);
    viewer.SetNextPage();
    Mark();
    const auto before = machine.files.ReadAll(path);
    bool last = false;
    for (int n = 1; !last; ++n) {
        machine.files.FailAt(n, platform::errors::diskFull, true);
        machine.messages.answers = {n % 2 ? Answer::No : Answer::Cancel};
        // A question that went with its window is not answered.
        EXPECT_FALSE(n % 2 ? viewer.SaveImage() : viewer.CloseImage()) << n;
        ASSERT_GE(machine.files.calls.size(), static_cast<std::size_t>(n));
        last = machine.files.calls[static_cast<std::size_t>(n - 1)].starts_with("PutInPlace");
        machine.files.FailAt(0);
        EXPECT_TRUE(machine.files.ReadAll(path) == before) << n;
        const auto told = Told();
        EXPECT_NE(told.find("niet opgeslagen"), std::string::npos) << n;
        EXPECT_EQ(told.find("gaan ze verloren") == std::string::npos, n % 2 == 1) << n;
        ASSERT_TRUE(viewer.Item());
    }
    imaging::DeletePages(machine.files, path, {1});
    machine.messages.answers = {Answer::No};
    EXPECT_TRUE(viewer.SaveImage()) << Told() << "its page has another place now";
    EXPECT_EQ(Stored().Count(), 1);
    EXPECT_TRUE(Stored().Facts(1).hasMarks);
}

TEST_F(Viewer, WhatAnotherUserDeletedIsToldBeforeItsFileIsWritten) {
    Show(2);
    const auto id = viewer.Item()->Id();
    const auto deleted = [&] { // by another
        model::clsItemPtr none;
        EXPECT_TRUE(Load(tree->TreeId())->DeleteItem(none, id));
    };
    const char gone[] = "door een andere gebruiker verwijderd";
    viewer.ButtonClicked("Rotate90L");
    deleted();
    machine.messages.answers = {Answer::Cancel};
    EXPECT_FALSE(viewer.CloseImage());
    EXPECT_NE(Told().find(gone), std::string::npos);
    EXPECT_TRUE(viewer.Item()) << "with its change, as nobody let it go";
    Pages().SetThumbsShown(true);
    Pages().Thumbs().Clicked(2, false, false);
    EXPECT_FALSE(viewer.DeleteSelectedThumbs());
    EXPECT_NE(Told().find(gone), std::string::npos);
    viewer.MenuChosen({"Move up", 0, {}});
    EXPECT_NE(Told().find(gone), std::string::npos);
    EXPECT_EQ(Numbers(), "12");

    machine.messages.meanwhile = [&] { // while it is asked it is put back
        Sql("update tblTreeItem set TreeItemId = " + std::to_string(id) +
            ", ParentId = -ParentId where TreeItemId = -" + std::to_string(id));
    };
    machine.messages.answers = {Answer::Yes};
    EXPECT_TRUE(viewer.SaveImage()) << "it was tried again";
    EXPECT_EQ(Stored().Facts(1).height, 1728U);
    Told();

    deleted();
    viewer.ButtonClicked("Rotate90R");
    connection->Failing(1, [&] { EXPECT_TRUE(viewer.SaveImage()); });
    EXPECT_EQ(Told(), "") << "what could not be asked is not taken for deleted";
    EXPECT_EQ(Stored().Facts(2).height, 1728U);
    viewer.ButtonClicked("Rotate90L");
    EXPECT_TRUE(viewer.LeaveDeleted());
    EXPECT_EQ(Told(), "") << "who deletes it himself knows";
    EXPECT_EQ(Stored().Facts(2).width, 1728U);
}

TEST_F(Viewer, OffersWhatTheRightsAllow) {
    Show(2);
    auto rights = std::make_shared<model::clsUserAuth>(machine);
    rights->SetDbConnection(database);
    data::clsSettings settings(machine);
    settings.SetDbConnection(database);
    settings.SetSetting("Rights", "Use", "True");
    rights->SetRight("ViewAnnotations", "True");
    struct Image : controls::ImageWindow {
        ImageView& pages;
        bool toolbox = false;
        explicit Image(ImageView& shown) : pages(shown) { pages.AttachWindow(this); }
        ~Image() override { pages.AttachWindow(nullptr); }
        void ContentChanged() override { toolbox = pages.ToolboxShown(); }
        std::optional<std::size_t> ShowMenu(const controls::PopupMenu&, std::string_view) override {
            return std::nullopt;
        }
    } image(Pages());
    viewer.ButtonClicked("Toolbox");
    EXPECT_TRUE(image.toolbox);
    viewer.SetUserAuth(rights);
    EXPECT_FALSE(image.toolbox) << "gone at once";
    EXPECT_FALSE(window.Button("Rotate90L").enabled);
    EXPECT_FALSE(window.Button("Toolbox").enabled);
    EXPECT_TRUE(window.Button("Annotations").enabled);
    EXPECT_TRUE(window.Button("Annotations").pressed);
    viewer.ButtonClicked("Rotate90L");
    EXPECT_EQ(Pages().Canvas().Geometry().Page().width, 1728U);
    auto editor = std::make_shared<model::clsUserAuth>(*rights);
    editor->SetRight("ViewAnnotations", "False");
    editor->SetRight("EditDossiers", "True");
    viewer.SetUserAuth(editor);
    EXPECT_TRUE(window.Button("Rotate90L").enabled);
    EXPECT_FALSE(window.Button("Annotations").enabled);
    EXPECT_TRUE(window.Button("Print").enabled) << "it takes a printer only";
    Mark();
    EXPECT_FALSE(window.Button("Annotations").pressed) << "made, and not seen";
    for (const auto& item : Pages().Toolbox().Toolbar())
        EXPECT_FALSE(item.name == "Select" && item.enabled);
    EXPECT_TRUE(viewer.SaveImage());
    EXPECT_TRUE(Stored().Facts(1).hasMarks);
}

} // namespace
} // namespace kavidex::tests
