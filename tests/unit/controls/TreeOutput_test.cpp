// Printing from the tree.
#include "imaging/PageOperations.h"
#include "tests/fakes/SmallTiff.h"
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls {

namespace {

// A grey page, stored plainly; without `dpi` it does not tell its size.
std::string Page(std::uint32_t width, std::uint32_t height, std::uint32_t dpi) {
    const std::uint32_t resolution = 8 + 2 + 12 * (dpi ? 11 : 9) + 4, size = width * height;
    std::vector<std::array<std::uint32_t, 4>> entries = {
        {256, 4, 1, width}, {257, 4, 1, height}, {258, 4, 1, 8},
        {259, 4, 1, 1},     {262, 4, 1, 1},      {273, 4, 1, resolution + 8},
        {277, 4, 1, 1},     {278, 4, 1, height}, {279, 4, 1, size}};
    if (dpi)
        for (const std::uint32_t tag : {282U, 283U}) entries.push_back({tag, 5, 1, resolution});
    std::string rest;
    tests::PutNumber(rest, dpi, 4), tests::PutNumber(rest, 1, 4);
    return tests::TiffOf(entries, rest + std::string(size, '\x7F'));
}

class OutputTest : public TreeTest {
protected:
    void SetUp() override {
        MakeStore();
        tree.SetDbConnection(database);
        ASSERT_TRUE(tree.CreateNew("Dossier", "Post;Leeg")) << Told();
        root = tree.Tree()->Item()->Id();
        letters = Id("Post");
        // A whole page of A4 and a small one on its side; one that does not tell its size.
        machine.files.WriteAll(machine.Path("1.tif"), Page(620, 877, 75));
        machine.files.WriteAll(machine.Path("2.tif"), Page(300, 150, 150));
        imaging::StapleFiles(machine.files, {machine.Path("1.tif"), machine.Path("2.tif")},
                             machine.Path("both.tif"));
        scan = File("scan.tif", machine.files.ReadAll(machine.Path("both.tif")), letters);
        fax = File("fax.tif", Page(100, 50, 0), letters);
        memo = File("memo.doc", "text", letters);
        tree.AttachWindow(&window);
    }
    bool Print(const std::vector<std::int32_t>& ids) { return ChooseFor(ids, "mnuPrint"); }
    std::int32_t scan = 0, fax = 0, memo = 0;
};

} // namespace

TEST_F(OutputTest, PrintsImagesPageByPageInTheirOwnSizeAndOthersByTheirProgram) {
    const std::string a4 = " high 8bit 620x877 at 0,0 2480x3508;",
                      small = " wide 8bit 300x150 at 940,1604 600x300;";
    EXPECT_TRUE(Print({scan}));
    EXPECT_EQ(machine.shell.printers.asked, 2) << "pages to choose from";
    ASSERT_EQ(machine.shell.printers.jobs.size(), 1U) << Told();
    EXPECT_EQ(machine.shell.printers.jobs[0], "scan:" + a4 + small);
    machine.shell.printers.choice = {"Laser", 2, 9, 2, true, {}};
    Print({scan});
    EXPECT_EQ(machine.shell.printers.jobs.back(), "scan:" + small + small);
    machine.shell.printers.choice = {"Laser", 0, 0, 2, false, {}};
    Print({scan, memo, fax});
    EXPECT_EQ(machine.shell.printers.asked, 0) << "of several documents there is no range";
    ASSERT_EQ(machine.shell.printers.jobs.size(), 4U);
    EXPECT_EQ(machine.shell.printers.jobs[2], "scan:" + a4 + a4 + small + small);
    EXPECT_EQ(machine.shell.printers.jobs[3].find("fax: wide 8bit 100x50 at 0,1134 2480x1240;"), 0U)
        << machine.shell.printers.jobs[3];
    ASSERT_EQ(machine.shell.printed.size(), 1U);
    EXPECT_NE(machine.shell.printed[0].find("\\doc\\"), std::string::npos);
    EXPECT_TRUE(machine.messages.shown.empty()) << Told();

    machine.messages.answers = {platform::Answer::No};
    EXPECT_TRUE(Print({letters}));
    EXPECT_EQ(LastTold(), "Wilt u de inhoud van deze map afdrukken?");
    EXPECT_EQ(machine.shell.printers.jobs.size(), 4U);
    machine.shell.printers.choice.reset(); // cancelled in the dialog
    Print({letters});
    EXPECT_EQ(machine.shell.printers.jobs.size(), 4U);
    EXPECT_EQ(machine.shell.printed.size(), 1U);
    EXPECT_FALSE(Print({Id("Leeg")})) << "nothing is in it";
}

TEST_F(OutputTest, WhatIsNotPrintedIsToldAndTheRestIsPrinted) {
    std::filesystem::resize_file(tests::FakeWorkstation::Native(PathOf(tree.GetNode(scan))), 200);
    machine.shell.refuse = true;
    Print({scan, memo, fax});
    ASSERT_EQ(machine.shell.printers.jobs.size(), 1U) << Told();
    EXPECT_EQ(machine.shell.printers.jobs[0].find("fax:"), 0U);
    ASSERT_EQ(machine.messages.shown.size(), 1U) << Told();
    EXPECT_EQ(machine.messages.shown[0].caption, "Afdrukken");
    EXPECT_EQ(LastTold().find("Niet afgedrukt: \r\nscan: "), 0U) << LastTold();
    EXPECT_NE(LastTold().find("\r\nmemo: No program opens this file"), std::string::npos);

    machine.shell.printers.refusePage = 0; // the job is taken back
    Print({fax});
    EXPECT_EQ(LastTold(), "Niet afgedrukt: \r\nfax: The paper is out");
    machine.shell.printers.refusePage = -1;
    machine.busy.onProgress = [&](int) { machine.busy.stopAsked = true; };
    Print({fax});
    EXPECT_EQ(machine.shell.printers.jobs.size(), 1U) << "stopped before its only page";
    EXPECT_EQ(machine.messages.shown.size(), 2U);
}

TEST_F(OutputTest, WithoutPrinterOrRightNothingIsPrinted) {
    machine.shell.hasPrinters = false;
    EXPECT_FALSE(Print({scan})) << "it is not in the menu";
    EXPECT_TRUE(tree.CommandKey('P', true, false));
    EXPECT_EQ(LastTold(), "Er zijn geen printers geïnstalleerd op deze machine.");
    machine.shell.hasPrinters = true;
    tree.SetShowPrint(false);
    EXPECT_FALSE(Print({scan}));
    tree.CommandKey('P', true, false);
    EXPECT_TRUE(machine.shell.printers.jobs.empty());
}

} // namespace kavidex::controls
