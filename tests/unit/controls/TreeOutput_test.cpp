// Printing and mailing from the tree.
#include "controls/tree/MailSender.h"
#include "data/clsSettings.h"
#include "model/documentFile.h"
#include "model/filing.h"
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls {

namespace {

struct Page {
    std::uint32_t width, height, dpi; // 0: it does not say
};

// Grey pages, stored plainly.
std::string Tiff(const std::vector<Page>& pages) {
    std::string bytes = "II*";
    bytes += '\0';
    const auto put = [&](std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i));
    };
    put(8, 4);
    for (const auto& page : pages) {
        const std::uint32_t entries = page.dpi ? 11 : 8;
        const auto after = static_cast<std::uint32_t>(bytes.size()) + 2 + 12 * entries + 4;
        const std::uint32_t size = page.width * page.height;
        const auto number = [&](std::uint32_t tag, std::uint32_t type, std::uint32_t value) {
            put(tag, 2);
            put(type, 2);
            put(1, 4);
            put(value, 4);
        };
        put(entries, 2);
        number(256, 4, page.width);
        number(257, 4, page.height);
        number(258, 4, 8);
        number(259, 4, 1);
        number(262, 4, 1);
        number(273, 4, after + 8);
        if (page.dpi) number(277, 4, 1);
        number(278, 4, page.height);
        number(279, 4, size);
        if (page.dpi) {
            number(282, 5, after);
            number(283, 5, after);
        }
        put(&page == &pages.back() ? 0 : after + 8 + size, 4);
        put(page.dpi, 4);
        put(1, 4);
        bytes.append(size, '\x7F');
    }
    return bytes;
}

struct FakeSender : MailSender {
    std::vector<std::string> sent, filed;
    std::vector<std::int32_t> folders;
    MailResult result{MailOutcome::Sent, "C:\\mail.msg"};
    bool fails = false;
    std::function<void()> onSend;
    MailResult Send(const MailOrder& order) override {
        if (onSend) onSend();
        if (fails) throw platform::Error(platform::errors::fail, "The program died");
        std::string names = order.asPdf ? "pdf:" : "";
        for (const auto& item : order.documents) names += item->Description() + ";";
        sent.push_back(names + order.address);
        return result;
    }
    void File(const SentMail& mail) override {
        filed.push_back(mail.path);
        folders.push_back(mail.folder);
    }
};

class OutputTest : public TreeTest {
protected:
    void SetUp() override {
        data::clsSettings settings(machine);
        settings.SetDbConnection(database);
        settings.SetSetting("Storage", "DocumentPath", machine.Path("store"));
        machine.files.CreateDirectories(machine.Path("store"));
        tree.SetDbConnection(database);
        ASSERT_TRUE(tree.CreateNew("Dossier", "Post;Leeg")) << Told();
        root = tree.Tree()->Item()->Id();
        letters = Id("Post");
        // A whole page of A4 and a small one on its side; one that does not tell its size.
        scan = File("scan.tif", Tiff({{620, 877, 75}, {300, 150, 150}}));
        fax = File("fax.tif", Tiff({{100, 50, 0}}));
        memo = File("memo.doc", "text");
        tree.AttachWindow(&window);
    }
    std::int32_t File(const char* name, const std::string& bytes) {
        machine.files.WriteAll(machine.Path(name), bytes);
        model::FilingRequest request;
        request.source = machine.Path(name);
        request.folderId = letters;
        const auto filed = model::FileDocument(machine, *tree.Tree(), request);
        EXPECT_TRUE(filed) << filed.error;
        tree.AddItem(filed.item, letters, false);
        return filed.item->Id();
    }
    // Chosen from the menu over these items: whether it was offered.
    bool Choose(const std::vector<std::int32_t>& ids, const char* entry) {
        tree.ClearSelectedItems();
        tree.SetHighLightToItem(ids.front());
        if (ids.size() > 1)
            for (const auto id : ids) tree.NodeChecked(id, true);
        auto menu = tree.PrepareMenu(ids.front());
        const auto* found = FindEntry(menu, entry);
        tree.ChooseMenu(*found);
        return found->visible && found->enabled;
    }
    std::string LastTold() const {
        return machine.messages.shown.empty() ? "" : machine.messages.shown.back().text;
    }
    std::int32_t scan = 0, fax = 0, memo = 0;
};

} // namespace

TEST_F(OutputTest, PrintsImagesPageByPageInTheirOwnSizeAndOthersByTheirProgram) {
    const std::string a4 = " high 8bit 620x877 at 0,0 2480x3508;",
                      small = " wide 8bit 300x150 at 940,1604 600x300;";
    EXPECT_TRUE(Choose({scan}, "mnuPrint"));
    EXPECT_EQ(machine.shell.printers.asked, 2) << "pages to choose from";
    ASSERT_EQ(machine.shell.printers.jobs.size(), 1U) << Told();
    EXPECT_EQ(machine.shell.printers.jobs[0], "scan:" + a4 + small);
    machine.shell.printers.choice = {"Laser", 2, 9, 2, true, {}};
    Choose({scan}, "mnuPrint");
    EXPECT_EQ(machine.shell.printers.jobs.back(), "scan:" + small + small);
    machine.shell.printers.choice = {"Laser", 0, 0, 2, false, {}};
    Choose({scan, memo, fax}, "mnuPrint");
    EXPECT_EQ(machine.shell.printers.asked, 0) << "of several documents there is no range";
    ASSERT_EQ(machine.shell.printers.jobs.size(), 4U);
    EXPECT_EQ(machine.shell.printers.jobs[2], "scan:" + a4 + a4 + small + small);
    EXPECT_EQ(machine.shell.printers.jobs[3].find("fax: wide 8bit 100x50 at 0,1134 2480x1240;"), 0U)
        << machine.shell.printers.jobs[3];
    ASSERT_EQ(machine.shell.printed.size(), 1U);
    EXPECT_NE(machine.shell.printed[0].find("\\doc\\"), std::string::npos);
    EXPECT_TRUE(machine.messages.shown.empty()) << Told();

    machine.messages.answers = {platform::Answer::No};
    EXPECT_TRUE(Choose({letters}, "mnuPrint"));
    EXPECT_EQ(LastTold(), "Wilt u de inhoud van deze map afdrukken?");
    EXPECT_EQ(machine.shell.printers.jobs.size(), 4U);
    machine.shell.printers.choice.reset(); // cancelled in the dialog
    Choose({letters}, "mnuPrint");
    EXPECT_EQ(machine.shell.printers.jobs.size(), 4U);
    EXPECT_EQ(machine.shell.printed.size(), 1U);
    EXPECT_FALSE(Choose({Id("Leeg")}, "mnuPrint")) << "nothing is in it";
}

TEST_F(OutputTest, WhatIsNotPrintedIsToldAndTheRestIsPrinted) {
    std::filesystem::resize_file(
        tests::FakeWorkstation::Native(
            model::FindDocumentFile(machine, database, *tree.GetNode(scan)).path),
        200);
    machine.shell.refuse = true;
    Choose({scan, memo, fax}, "mnuPrint");
    ASSERT_EQ(machine.shell.printers.jobs.size(), 1U) << Told();
    EXPECT_EQ(machine.shell.printers.jobs[0].find("fax:"), 0U);
    ASSERT_EQ(machine.messages.shown.size(), 1U) << Told();
    EXPECT_EQ(machine.messages.shown[0].caption, "Afdrukken");
    EXPECT_EQ(LastTold().find("Niet afgedrukt: \r\nscan: "), 0U) << LastTold();
    EXPECT_NE(LastTold().find("\r\nmemo: No program opens this file"), std::string::npos);

    machine.shell.printers.refusePage = 0; // the job is taken back
    Choose({fax}, "mnuPrint");
    EXPECT_EQ(LastTold(), "Niet afgedrukt: \r\nfax: The paper is out");
    machine.shell.printers.refusePage = -1;
    machine.busy.onProgress = [&](int) { machine.busy.stopAsked = true; };
    Choose({fax}, "mnuPrint");
    EXPECT_EQ(machine.shell.printers.jobs.size(), 1U) << "stopped before its only page";
    EXPECT_EQ(machine.messages.shown.size(), 2U);
}

TEST_F(OutputTest, WithoutPrinterOrRightNothingIsPrinted) {
    machine.shell.hasPrinters = false;
    EXPECT_FALSE(Choose({scan}, "mnuPrint")) << "it is not in the menu";
    EXPECT_TRUE(tree.CommandKey('P', true, false));
    EXPECT_EQ(LastTold(), "Er zijn geen printers geïnstalleerd op deze machine.");
    machine.shell.hasPrinters = true;
    tree.SetShowPrint(false);
    EXPECT_FALSE(Choose({scan}, "mnuPrint"));
    tree.CommandKey('P', true, false);
    EXPECT_TRUE(machine.shell.printers.jobs.empty());
}

TEST_F(OutputTest, MailsTheSelectionAndFilesWhatWasSent) {
    EXPECT_FALSE(Choose({scan}, "mnuMail")) << "nobody sends it";
    FakeSender sender;
    tree.SetMailSender(&sender);
    tree.SetEmailAddress("jan@example.nl");
    EXPECT_TRUE(Choose({letters}, "mnuMailPdf"));
    ASSERT_EQ(machine.messages.shown.size(), 2U) << Told();
    EXPECT_EQ(machine.messages.shown[0].text,
              "Wilt u de inhoud van deze map toevoegen aan deze e-mail?");
    EXPECT_EQ(machine.messages.shown[0].caption, "Bevestigen toevoegen items aan e-mail");
    EXPECT_EQ(machine.messages.shown[1].text, "Wilt u de verzonden mail opslaan?");
    EXPECT_EQ(machine.messages.shown[1].caption, "Bevestigen opslaan verzonden mail");
    EXPECT_EQ(sender.sent, std::vector<std::string>{"pdf:scan;fax;memo;jan@example.nl"});
    EXPECT_EQ(sender.folders, std::vector{letters}) << "no folder is set: the selected one";
    platform::SaveRegSetting(machine, platform::applicationName, "Mail", "Folder", "leeg");
    Choose({scan}, "mnuMail");
    EXPECT_EQ(sender.folders.back(), Id("Leeg"));
    platform::SaveRegSetting(machine, platform::applicationName, "Mail", "Folder", "Elders");
    Choose({scan}, "mnuMail");
    EXPECT_EQ(sender.folders.back(), letters);
    EXPECT_TRUE(machine.log.Has("Mail", "Elders"));

    const auto id = tree.TreeId();
    sender.folders.clear();
    sender.onSend = [&] { tree.SetTreeId(0); };
    Choose({scan}, "mnuMail");
    EXPECT_EQ(sender.folders, std::vector{letters}) << "of the dossier that it was sent from";
    sender.onSend = nullptr;
    tree.SetTreeId(id);
    const auto filed = sender.filed.size();
    machine.messages.answers = {platform::Answer::No};
    Choose({scan}, "mnuMail");
    sender.result.outcome = MailOutcome::LogonFailed;
    Choose({scan}, "mnuMail");
    EXPECT_EQ(LastTold(), "Aanmelden voor email mislukt!");
    sender.fails = true;
    Choose({scan}, "mnuMail");
    EXPECT_EQ(machine.messages.shown.back().caption, "Error sending mail");
    machine.messages.answers = {platform::Answer::No};
    const auto sent = sender.sent.size();
    Choose({letters}, "mnuMail");
    EXPECT_EQ(sender.sent.size(), sent) << "a folder without its contents is nothing to send";
    sender.fails = false;
    EXPECT_TRUE(Choose({root}, "mnuMail")) << "the whole dossier";
    EXPECT_EQ(sender.sent.back(), "scan;fax;memo;jan@example.nl");
    tree.SetShowMail(false);
    EXPECT_FALSE(Choose({scan}, "mnuMail"));
    EXPECT_EQ(sender.filed.size(), filed);
}

} // namespace kavidex::controls
