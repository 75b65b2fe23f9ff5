// Pages that leave the viewer, on paper or for another document, and pages that somebody else
// changed meanwhile.
#include "tests/fakes/SmallTiff.h"
#include "tests/unit/controls/posix/ScanViewer.h"

namespace kavidex::tests {
namespace {

using imaging::Turn;
class ViewerPages : public ScanViewer {
protected:
    bool MayDraw() {
        const auto bar = Pages().Toolbox().Toolbar();
        return std::any_of(bar.begin(), bar.end(), [](const auto& item) {
            return item.enabled && item.kind != controls::CommandKind::Separator;
        });
    }
    // Told when the toolbox opens, and no pointer on the page draws or throws.
    bool TellsThatNothingCanBeMarked() {
        viewer.ButtonClicked("Toolbox");
        const bool told = Told().find("geen annotaties") != std::string::npos;
        Pages().Editor().SetTool(controls::MarkTool::Line);
        const auto& room = Pages().Canvas().Geometry();
        const int x = room.OriginX() + 2, y = room.OriginY() + 2;
        EXPECT_EQ(Pages().Canvas().PointerAt(x, y), controls::MarkEditor::Pointer::Page);
        Drag(x, y, x + 40, y + 40);
        EXPECT_EQ(Told(), "");
        return told && !MayDraw();
    }
};

TEST_F(ViewerPages, NoPageGoesThatNobodyLookedAt) {
    // Read, and saved once: neither way the fourth page was ever on the screen.
    for (const bool saved : {false, true}) {
        Show(4);
        if (saved) {
            viewer.ButtonClicked("Rotate180");
            ASSERT_TRUE(viewer.SaveImage());
        }
        const auto before = Numbers();
        imaging::MovePage(machine.files, path, 4, 2);
        const auto changed = Numbers();
        ASSERT_NE(changed, before);
        Pages().SetThumbsShown(true);
        Pages().Thumbs().Clicked(4, false, false);
        Told();
        EXPECT_FALSE(viewer.DeleteSelectedThumbs());
        EXPECT_NE(Told().find("Er is niets veranderd"), std::string::npos) << saved;
        EXPECT_EQ(Numbers(), changed) << "it is another page now";

        imaging::MovePage(machine.files, path, 4, 3);
        Pages().Thumbs().Clicked(4, false, false);
        viewer.MenuChosen({"mnuExportPages", 0, {}});
        EXPECT_TRUE(exported.empty()) << "the numbers count in the file as it was shown";
        Told();
        Pages().Thumbs().Clicked(4, false, false);
        EXPECT_TRUE(viewer.DeleteSelectedThumbs()) << Told() << "as it is shown now";
        EXPECT_EQ(Stored().Count(), 3);
        Told();
        Pages().SetThumbsShown(false);
    }
}

TEST_F(ViewerPages, PagesThatDifferInTheirElementsOnlyAreToldApart) {
    const auto source = machine.Path("plain.tif");
    machine.files.WriteAll(source, SmallTiff("ab", 256, 64));
    ASSERT_TRUE(viewer.ShowItem(File(source)));
    Pages().SetThumbsShown(true);
    imaging::MovePage(machine.files, path, 2, 1);
    Pages().Thumbs().Clicked(2, false, false);
    EXPECT_FALSE(viewer.DeleteSelectedThumbs());
    EXPECT_EQ(Stored().Count(), 2);
}

TEST_F(ViewerPages, EachOfTwoEqualPagesKeepsItsOwnChange) {
    const auto source = machine.Path("blank.tif"), other = machine.Path("other.tif");
    machine.files.WriteAll(source, SmallTiff("aa", 16, 8));
    machine.files.WriteAll(other, SmallTiff("b", 16, 8));
    ASSERT_TRUE(viewer.ShowItem(File(source)));
    viewer.ButtonClicked("Rotate90L");
    viewer.SetNextPage();
    viewer.ButtonClicked("Rotate90L");
    imaging::WritePages(
        machine.files,
        {{other, 1, Turn::None, {}}, {path, 1, Turn::None, {}}, {path, 2, Turn::None, {}}}, path);
    EXPECT_TRUE(viewer.SaveImage());
    EXPECT_EQ(Told(), "");
    std::string widths;
    for (int page = 1; page <= Stored().Count(); ++page)
        widths += std::to_string(Stored().Facts(page).width) + " ";
    EXPECT_EQ(widths, "16 8 8 ");
}

TEST_F(ViewerPages, ExportedPagesLeaveTheirOwnDocumentAlone) {
    const auto other = File(Scan("other", 4));
    const auto otherPath = path;
    Show(4);
    Pages().SetThumbsShown(true);
    Pages().Thumbs().Clicked(2, false, false);
    const auto token = viewer.ExportPages.Subscribe([&](const std::string&, const auto&, bool&) {
        EXPECT_FALSE(viewer.ShowItem(other)) << "the new document of the pages has to wait";
    });
    viewer.MenuChosen({"mnuExportPages", 0, {}});
    EXPECT_EQ(Numbers(), "134");
    EXPECT_EQ(viewer.Item(), other) << "shown when it was settled";
    EXPECT_EQ(imaging::CountPages(machine.files, otherPath), 4);
}

TEST_F(ViewerPages, WhatAHostShowsOnHearingOfAPageIsNotTakenForTheDocumentBefore) {
    const auto source = Scan("scan", 3);
    const auto other = File(source);
    const auto otherPath = path, untouched = machine.files.ReadAll(path);
    for (const char* command : {"mnuMoveUp", "mnuExportPages", "mnuDeletePages"}) {
        ASSERT_TRUE(viewer.ShowItem(File(source)));
        Pages().SetThumbsShown(true);
        viewer.ButtonClicked("Rotate180");
        Pages().Thumbs().Clicked(3, false, false);
        bool heard = false;
        auto token = viewer.EvImageSelected.Subscribe([&](std::int32_t) {
            if (!std::exchange(heard, true)) viewer.ShowItem(other);
        });
        viewer.MenuChosen({command, 0, {}});
        token.reset();
        EXPECT_EQ(viewer.Item(), other);
        EXPECT_EQ(Pages().Thumbs().Selected(), std::set<int>{1}) << command;
        EXPECT_TRUE(machine.files.ReadAll(otherPath) == untouched) << command;
        EXPECT_EQ(Stored().Count(), command == std::string("mnuMoveUp") ? 3 : 2) << command;
    }
    EXPECT_EQ(exported, std::vector<int>{3});
}

TEST_F(ViewerPages, NothingBeginsOnPagesThatAreBeingExported) {
    Show(4);
    Pages().SetThumbsShown(true);
    Pages().Thumbs().Clicked(2, false, false);
    const auto token = viewer.ExportPages.Subscribe([&](const std::string&, const auto&, bool&) {
        Pages().Thumbs().Key(controls::Key(controls::keys::del)); // a host that lets keys through
    });
    viewer.MenuChosen({"mnuExportPages", 0, {}});
    EXPECT_EQ(Told(), "Wilt u de geexporteerde pagina's verwijderen uit het originele document?|");
    EXPECT_EQ(Numbers(), "134") << "that page, and no other";
}

TEST_F(ViewerPages, WhatIsChosenInAMenuIsDoneToTheDocumentItWasOpenedOn) {
    const auto source = machine.Path("letters.tif"), text = machine.Path("letter.htm");
    machine.shell.engine = false; // what cannot be shown can be printed by its program
    machine.files.WriteAll(text, "Geachte heer");
    const auto other = File(text);
    machine.files.WriteAll(source, SmallTiff("abc", 16, 8));
    ASSERT_TRUE(viewer.ShowItem(File(source)));
    Pages().SetThumbsShown(true);
    Pages().Thumbs().Clicked(2, false, false);
    window.choose = "mnuDeletePages";
    window.meanwhile = [&] { EXPECT_FALSE(viewer.ShowItem(other)) << "it waits"; };
    Pages().Thumbs().ContextMenu.Raise(0, 0);
    EXPECT_EQ(Stored().Count(), 2) << Told();
    EXPECT_EQ(viewer.Item(), other);
    ASSERT_TRUE(window.Button("Print").enabled);
    EXPECT_FALSE(window.Shows("mnuPrintThumbs"));

    // The toolbox has menus of its own.
    struct : controls::ImageWindow {
        std::function<void()> meanwhile;
        void ContentChanged() override {}
        std::optional<std::size_t> ShowMenu(const controls::PopupMenu&, std::string_view) override {
            meanwhile();
            return 1;
        }
    } image;
    ASSERT_TRUE(viewer.ShowItem(File(source)));
    viewer.ButtonClicked("Toolbox");
    image.meanwhile = [&] { EXPECT_FALSE(viewer.ShowItem(other)); };
    Pages().AttachWindow(&image);
    Pages().Toolbox().ButtonClicked("Stamp");
    Pages().AttachWindow(nullptr);
    EXPECT_EQ(Pages().Editor().Tool(), controls::MarkTool::Stamp);
    window.Settle();
    EXPECT_EQ(viewer.Item(), other);
}

TEST_F(ViewerPages, PagesThatWereDraggedAwayStaySomewhere) {
    struct Thumbs final : controls::ThumbsWindow {
        controls::DropData dragged;
        void Repaint() override {}
        void Repaint(int) override {}
        void CurrentChanged() override {}
        std::int32_t Drag(const controls::DropData& data) override {
            dragged = data;
            return controls::drop::copy;
        }
    } thumbs;
    viewer.SetDragPossible(true);
    for (const auto answer : {Answer::No, Answer::Yes}) {
        Show(2);
        Pages().SetThumbsShown(true);
        Pages().Thumbs().AttachWindow(&thumbs);
        machine.messages.answers = {answer};
        Pages().Thumbs().Clicked(2, false, false);
        Pages().Thumbs().DragStarted.Raise();
        Pages().Thumbs().AttachWindow(nullptr);
        ASSERT_EQ(thumbs.dragged.files.size(), 1U);
        EXPECT_TRUE(machine.files.FileExists(thumbs.dragged.files[0]));
        viewer.CloseImage();
        const bool left = answer == Answer::Yes;
        EXPECT_EQ(Numbers(), left ? "1" : "12");
        EXPECT_EQ(machine.files.FileExists(thumbs.dragged.files[0]), left);
    }
}

TEST_F(ViewerPages, APageOfWhichATagIsLostIsShownAndCanGo) {
    const auto source = Scan("cut", 3);
    // Written last by another program, and then the file was cut short.
    const auto native = FakeWorkstation::Native(source).string();
    ASSERT_EQ(std::system(("tiffset -d 1 -s 33432 'of somebody, all rights reserved' '" + native +
                           "' 2>/dev/null")
                              .c_str()),
              0);
    auto bytes = machine.files.ReadAll(source);
    const auto tag = bytes.find(std::string("\x98\x82\2\0", 4));
    ASSERT_NE(tag, std::string::npos);
    bytes.replace(tag, 2, "\xA4\x80"); // the annotations
    machine.files.WriteAll(source, bytes.substr(0, bytes.size() - 9));
    ASSERT_TRUE(viewer.ShowItem(File(source))) << Told();
    Pages().Canvas().SetRoom(800, 600, 16, 0);
    Pages().Thumbs().SetRoom(160, 900, 96);
    Pages().SetThumbsShown(true);
    viewer.SetNextPage();
    window.Settle();
    EXPECT_EQ(Pages().Canvas().Message() + viewer.Status().hint, "");
    EXPECT_TRUE(Pages().Canvas().HasPicture());
    EXPECT_NE(Pages().Thumbs().Picture(2), nullptr);
    EXPECT_TRUE(TellsThatNothingCanBeMarked());
    viewer.SetNextPage();
    EXPECT_TRUE(MayDraw()) << "on another page";
    viewer.ButtonClicked("Toolbox");

    // What the tag held is in no file: no other is made that would seem to have it.
    const auto before = machine.files.ReadAll(path);
    Pages().Thumbs().Clicked(3, false, false);
    Told();
    EXPECT_FALSE(viewer.DeleteSelectedThumbs());
    EXPECT_NE(Told().find("points past its end"), std::string::npos);
    EXPECT_TRUE(machine.files.ReadAll(path) == before);
    Pages().Thumbs().Clicked(2, false, false);
    EXPECT_TRUE(viewer.DeleteSelectedThumbs()) << Told();
    EXPECT_EQ(Numbers(), "13");

    // Of marks in numbers of another size the rest can be read, and kept.
    const std::string old = std::string(8, '\0') + "whatever 16-bit numbers say";
    machine.files.WriteAll(source, SmallTiff("a", 16, 8));
    imaging::WritePages(machine.files, {{source, 1, Turn::None, old}}, source);
    ASSERT_TRUE(viewer.ShowItem(File(source)));
    Told();
    EXPECT_TRUE(TellsThatNothingCanBeMarked());
    viewer.ButtonClicked("Rotate180");
    EXPECT_TRUE(viewer.SaveImage());
    EXPECT_EQ(Stored().Marks(1).value(), old);
}

TEST_F(ViewerPages, MarksThatCannotBeKeptAreTold) {
    Show(1);
    viewer.SetAnnotationsPopupShown(true);
    viewer.ButtonClicked("Toolbox");
    window.Settle();
    Pages().Toolbox().ButtonClicked("Text");
    const char* const mixed = "\xE6\xBC\xA2 \xD0\xB6 \xD7\xA9";
    std::string again;
    window.forms.users = {[&](FormUser& user) {
                              user.Type("txtText", mixed);
                              user.Click("btnOk");
                          },
                          [&](FormUser& user) { again = user.Text("txtText"); }};
    const auto& room = Pages().Canvas().Geometry();
    Drag(room.OriginX() + 20, room.OriginY() + 20, room.OriginX() + 90, room.OriginY() + 60);
    EXPECT_NE(Told().find("mixes scripts"), std::string::npos);
    EXPECT_EQ(again, mixed) << "nothing that was typed is lost";
    EXPECT_TRUE(viewer.SaveImage());
    EXPECT_FALSE(Stored().Facts(1).hasMarks);

    // Another document has the page's place: its marks are gone while that is told.
    Pages().Toolbox().ButtonClicked("HollowRectangle");
    Drag(room.OriginX() + 20, room.OriginY() + 20, room.OriginX() + 90, room.OriginY() + 60);
    machine.files.WriteAll(path, SmallTiff("a", 16, 8));
    machine.messages.meanwhile = [&] {
        Pages().Canvas().SetRoom(700, 500, 16, 0);
        Pages().Canvas().See(nullptr);
    };
    EXPECT_TRUE(viewer.SaveImage());
    EXPECT_NE(Told().find("niet opgeslagen: 1"), std::string::npos);
}

TEST_F(ViewerPages, PrintsThemAsTheyAreShown) {
    Show(3);
    viewer.ButtonClicked("Rotate90R"); // nothing of it is saved
    auto& printers = machine.shell.printers;
    EXPECT_TRUE(window.Button("Print").enabled);
    machine.busy.onProgress = [this](int done) {
        if (done != 1) return;
        EXPECT_FALSE(viewer.SaveImage()) << "nothing else begins meanwhile";
        imaging::DeletePages(machine.files, path, {3});
    };
    viewer.ButtonClicked("Print");
    machine.busy.onProgress = nullptr;
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(printers.asked, 3);
    ASSERT_EQ(printers.jobs.size(), 1U);
    EXPECT_TRUE(printers.jobs[0].starts_with("scan: wide 1bit 1100x1728 at ")) << printers.jobs[0];
    EXPECT_NE(printers.jobs[0].find("; high 1bit 1728x1100 at "), std::string::npos);
    EXPECT_EQ(std::count(printers.jobs[0].begin(), printers.jobs[0].end(), ';'), 3);
    EXPECT_FALSE(machine.busy.open);

    ASSERT_TRUE(viewer.ShowItem(File(Scan("thumbs", 4))));
    EXPECT_FALSE(window.Shows("mnuPrintThumbs"));
    Pages().SetThumbsShown(true);
    Pages().Thumbs().Clicked(2, false, false);
    Pages().Thumbs().Clicked(4, true, false);
    viewer.MenuChosen({"mnuPrintThumbs", 0, {}});
    EXPECT_EQ(printers.asked, 0) << "which pages is settled";
    ASSERT_EQ(printers.jobs.size(), 2U);
    EXPECT_EQ(std::count(printers.jobs[1].begin(), printers.jobs[1].end(), ';'), 2);

    printers.refusePage = 1;
    viewer.ButtonClicked("Print");
    EXPECT_EQ(printers.jobs.size(), 2U) << "taken back";
    EXPECT_NE(Told().find("The paper is out"), std::string::npos);
    printers.choice.reset();
    viewer.ButtonClicked("Print");
    EXPECT_EQ(Told(), "");
    machine.shell.hasPrinters = false;
    EXPECT_FALSE(window.Button("Print").enabled);
}

TEST_F(ViewerPages, TellsWhatAScanIs) {
    Show(2);
    viewer.SetNextPage();
    std::string told;
    window.forms.users = {[&](FormUser& user) {
        told = user.Caption();
        for (const char* field : {"txtDescription", "txtScanId", "frmPage", "txtExtent",
                                  "txtResolution", "txtColours", "txtCompression"})
            told += "|" + user.Text(field);
        user.Click("btnOk");
    }};
    viewer.MenuChosen({"mnuProperties", 0, {}});
    EXPECT_EQ(told, "Eigenschappen van gescand document|scan|ScanId = " +
                        std::to_string(viewer.Item()->ItemId()) +
                        "|Pagina 2 van 2 pagina's|1728 x 1100 (215 x 285 mm)|204 x 98 dpi|"
                        "Zwart-wit|CCITT G4");

    const auto single = machine.Path("single.tif");
    machine.files.WriteAll(single, SmallTiff("a"));
    ASSERT_TRUE(viewer.ShowItem(File(single)));
    window.forms.users = {[&](FormUser& user) { told = user.Text("frmPage"); }};
    viewer.MenuChosen({"mnuProperties", 0, {}});
    EXPECT_EQ(told, "Pagina 1 van  1 pagina");
}

} // namespace
} // namespace kavidex::tests
