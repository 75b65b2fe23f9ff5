// Documents that the host has copied out of the dossier, as they are, merged, and described; pages
// that become a document.
#include "controls/viewer/external/ctrlExtViewer.h"
#include "imaging/pdf/PdfDocument.h"
#include "imaging/pdfium/Pdfium.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {
namespace {

using tests::SmallTiff;

struct Export : BinderWithTemporaryFolder {
    ItemPtr folder;

    void SetUp() override {
        BinderWithTemporaryFolder::SetUp();
        ASSERT_EQ(binder->OpenOrCreate("K1", "Dossier 7/8", "", "", ""), 0);
        folder = binder->treCorr().AddTab("Post", Root());
        ASSERT_TRUE(folder);
    }
    static std::string TextPdf() {
        std::string bytes;
        imaging::PdfDocument document([&](std::string_view piece) { bytes += piece; });
        document.AddText("Kop", "Regel");
        document.Finish("x");
        return bytes;
    }
    ItemPtr Add(const std::string& name, const std::string& bytes, std::int32_t into) {
        EXPECT_EQ(binder->AddFiles({File(name, bytes)}, "", into, false, false), 0);
        return binder->treCorr().Tree()->GetItem(into, {})->ChildCollection()->Items().back();
    }
    void Tick(const std::vector<std::int32_t>& ids) {
        binder->SetSelectItems(true);
        binder->treCorr().ClearSelectedItems();
        for (const auto id : ids) binder->treCorr().NodeChecked(id, true);
    }
    std::vector<std::string> Out(bool merge, bool page) {
        paths = binder->ExportSelectedFiles(merge, page);
        std::vector<std::string> names;
        for (const auto& path : paths) {
            EXPECT_TRUE(machine.files.FileExists(path)) << path;
            names.push_back(platform::FileName(path));
        }
        return names;
    }
    // As the list of pages has it.
    int Pages(const std::string& path) {
        const auto bytes = machine.files.ReadAll(path);
        const auto at = bytes.find("/Count ");
        EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
        return at == std::string::npos ? -1 : std::atoi(bytes.c_str() + at + 7);
    }
    std::size_t InFolderOf(const std::string& path) {
        return machine.files.List(platform::FolderOf(path), "*", false).size();
    }
    using Names = std::vector<std::string>;
    std::vector<std::string> paths;
};

TEST_F(Export, ImagesAndPdfFilesBecomeOneAndTheRestLiesBesideIt) {
    const auto scan = Add("scan.tif", SmallTiff("ab"), folder->Id());
    Add("brief.docx", "office", folder->Id());
    Add("akte.pdf", TextPdf(), folder->Id());
    const auto last = Add("los.TIFF", SmallTiff("c"), Root());
    Add("niet.tif", SmallTiff("d"), Root());
    Tick({last->Id(), folder->Id(), scan->Id()}); // whatever the order of the choice
    EXPECT_EQ(Out(false, false), (Names{"scan.tif", "brief.docx", "akte.pdf", "los.tiff"}));

    const bool pdfium = imaging::Pdfium(imaging::PdfiumPath()).IsHere();
    const Names beside = pdfium ? Names{"brief.docx"} : Names{"brief.docx", "akte.pdf"};
    const auto with = [&](Names first) {
        first.insert(first.end(), beside.begin(), beside.end());
        return first;
    };
    EXPECT_EQ(Out(true, false), with({"Dossier 7 8.pdf"}));
    EXPECT_EQ(Pages(paths[0]), pdfium ? 4 : 3);
    EXPECT_EQ(InFolderOf(paths[0]), paths.size()) << "nothing else is left over";
    EXPECT_EQ(machine.log.Has("MergeOut", "PDFium is not here"), !pdfium);

    EXPECT_EQ(Out(true, true), with({"Dossier 7 8.pdf"}));
    EXPECT_EQ(Pages(paths[0]), pdfium ? 5 : 4) << "the page that describes them comes first";

    EXPECT_EQ(Out(false, true),
              (Names{"Dossier 7 8.pdf", "scan.tif", "brief.docx", "akte.pdf", "los.tiff"}));
    EXPECT_EQ(Pages(paths[0]), 1);
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_FALSE(machine.busy.open);
}

TEST_F(Export, WhatCannotBeReadGoesBesideAndTakesNothingWithIt) {
    const auto good = Add("goed.tif", SmallTiff("a"), folder->Id());
    Add("stuk.tif", "II*\0 nonsense", folder->Id());
    Add("stuk.pdf", "no PDF at all", folder->Id());
    Add("foto.jpg", "no JPEG", folder->Id());
    Tick({folder->Id()});
    EXPECT_EQ(Out(true, false), (Names{"Dossier 7 8.pdf", "stuk.tif", "stuk.pdf", "foto.jpg"}));
    EXPECT_EQ(Pages(paths[0]), 1);
    EXPECT_TRUE(machine.log.Has("MergeOut", "stuk.tif"));
    EXPECT_EQ(machine.files.ReadAll(paths[2]), "no PDF at all");

    // Without one that can be merged there is no PDF file.
    EXPECT_TRUE(binder->treCorr().DeleteItem(good->Id()));
    EXPECT_EQ(Out(true, false), (Names{"stuk.tif", "stuk.pdf", "foto.jpg"}));
}

TEST_F(Export, ADocumentWithoutItsFileIsNamedToTheUser) {
    Add("een.tif", SmallTiff("a"), folder->Id());
    const auto lost = Add("weg.tif", SmallTiff("b"), folder->Id());
    machine.files.Remove(FileOf(lost));
    Tick({folder->Id()});
    EXPECT_EQ(Out(true, false), Names{"Dossier 7 8.pdf"});
    EXPECT_EQ(Pages(paths[0]), 1);
    EXPECT_TRUE(Told("weg"));
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].caption, "Export waarschuwing");
    EXPECT_EQ(binder->ExportFiles(machine.Path("uit")), -1);
    EXPECT_EQ(machine.messages.shown.size(), 2U);
}

TEST_F(Export, NothingIsLostWhateverTheDiskRefuses) {
    Add("een.tif", SmallTiff("a"), folder->Id());
    Add("twee.tif", SmallTiff("b"), folder->Id());
    Tick({folder->Id()});
    const Names whole{"Dossier 7 8.pdf"};
    int n = 1;
    for (bool met = true; met && n < 500; ++n) {
        machine.messages.shown.clear();
        machine.files.FailAt(n);
        const auto names = Out(true, true);
        met = machine.files.operations >= n;
        machine.files.FailAt(0);
        int there = 0; // a page each in the PDF file, or beside it
        for (const auto& path : paths)
            there += platform::Extension(path) == "pdf" ? Pages(path) - 1 : 1;
        EXPECT_TRUE(there == 2 || !machine.messages.shown.empty()) << n << " went untold";
    }
    EXPECT_GT(n, 8);
    EXPECT_EQ(Out(true, true), whole);
}

TEST_F(Export, AStopLooksLikeNoWholeExport) {
    for (const char* const name : {"a.tif", "b.tif", "c.tif"})
        Add(name, SmallTiff("x"), folder->Id());
    Tick({folder->Id()});
    machine.busy.onProgress = [&](int done) { machine.busy.stopAsked = done == 2; };
    for (const bool merge : {true, false}) EXPECT_EQ(Out(merge, false), Names{});
    EXPECT_EQ(machine.files.List(temporary, "*", true), Names{}) << "the copies went with it";
    EXPECT_EQ(binder->ExportFiles(machine.Path("uit")), -2) << "two were left";
    EXPECT_EQ(machine.files.List(machine.Path("uit"), "*", false), Names{"a.tif"});
}

TEST_F(Binder, FilesPagesBesideTheDocumentThatTheyComeFrom) {
    ASSERT_EQ(Open("key"), 0);
    auto& tree = binder->treCorr();
    const auto post = tree.AddTab("Post", Root());
    ASSERT_EQ(binder->AddFiles({File("polis.tif", tests::SmallTiff("abc"))}, "", post->Id(), false,
                               false),
              0);
    binder->SetShowExternalViewer(true);
    tree.NodeSelected(post->ChildCollection()->Item(1)->Id());
    tree.NodeSelected(Root()); // the window stays
    bool done = false;
    binder->ExtViewer().EvExportPages.Raise(machine.Path("polis.tif"), {2, 3}, done);
    EXPECT_TRUE(done);
    ASSERT_EQ(post->ChildCollection()->Count(), 2);
    EXPECT_EQ(post->ChildCollection()->Item(2)->Description(), "polis (2, 3)");
    EXPECT_EQ(tree.Tree()->Item()->ChildCollection()->Count(), 1) << "nothing lies beside it";
}

TEST_F(Binder, ExportsUnderNamesThatWindowsTakes) {
    ASSERT_EQ(Open("key"), 0);
    for (const char* const name : {"CON", "com1.oud", "brief. . ", "nulmeting"}) {
        ASSERT_EQ(binder->AddFiles({File("a.txt")}, "", 0, false, true), 0);
        binder->treCorr().Tree()->Item()->ChildCollection()->Items().back()->SetDescription(name);
    }
    machine.files.CreateDirectories(machine.Path("export\\brief.txt"));
    EXPECT_EQ(binder->ExportFiles(machine.Path("export")), 4);
    const auto names = machine.files.List(machine.Path("export"), "*", false);
    EXPECT_EQ(names, (std::vector<std::string>{"brief (1).txt", "com1_.oud.txt", "CON_.txt",
                                               "nulmeting.txt"}));
    EXPECT_EQ(machine.files.ReadAll(machine.Path("export\\brief (1).txt")), "text");
}

} // namespace
} // namespace kavidex::controls
