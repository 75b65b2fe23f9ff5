// Documents chosen in the tree on their way out by mail, with a played mail program: what it is
// given is looked through by other people's programs.
#include "controls/mailing/DossierMail.h"
#include "controls/mailing/FileInTree.h"
#include "controls/viewer/NoteFile.h"
#include "imaging/PageOperations.h"
#include "imaging/annotations/Annotations.h"
#include "tests/fakes/PlayedMailProgram.h"
#include "tests/unit/controls/BinderFixture.h"
#include "tests/unit/controls/TreeFixture.h"

namespace kavidex::controls {
namespace {

namespace fs = std::filesystem;

class Mailing : public TreeTest {
protected:
    const std::string temporary = machine.Path("temp");
    OwnTemporaryFolder own{temporary};
    tests::PlayedMailProgram program;
    std::unique_ptr<DossierMail> sender;
    std::vector<std::string> names, texts; // of the attachments, while the mail is shown

    void SetUp() override {
        machine.files.CreateDirectories(temporary);
        machine.shell.mailClient = "Microsoft Outlook";
        MakeStore();
        tree.SetDbConnection(database);
        ASSERT_TRUE(tree.CreateNew("Dossier", "Post;Mail")) << Told();
        letters = Id("Post");
        program.save = [&](const std::string& path) { machine.files.WriteAll(path, "mail"); };
        program.whileShown = [this] { LookAtAttachments(); };
        sender =
            std::make_unique<DossierMail>(machine, program.Roads(), [this](const SentMail& sent) {
                FileInTree(machine, tree, sent);
            });
        tree.SetMailSender(sender.get());
        tree.SetEmailAddress("jan@example.nl");
        tree.AttachWindow(&window);
    }
    void TearDown() override {
        EXPECT_TRUE(fs::is_empty(tests::FakeWorkstation::Native(temporary)))
            << "what is made for a mail goes with it";
        EXPECT_FALSE(machine.busy.open);
    }

    static std::string Run(const std::string& command) {
        FILE* const output = ::popen((command + " 2>&1").c_str(), "r");
        std::string text;
        for (int c = 0; output && (c = std::fgetc(output)) != EOF;) text += static_cast<char>(c);
        const bool good = output && ::pclose(output) == 0;
        EXPECT_TRUE(good) << command << ": " << text;
        return text;
    }
    std::string Made(const std::string& name, const std::string& command) {
        Run("cd '" + tests::FakeWorkstation::Native(machine.Folder()).string() + "' && " + command +
            " " + name);
        return machine.files.ReadAll(machine.Path(name));
    }
    std::string Scan() { // two pages of fax
        return Made("pages.tif", "convert -size 344x210 xc:white -fill black -draw 'rectangle "
                                 "20,20 90,60' \\( +clone -negate \\) -type bilevel -depth 1 "
                                 "-units PixelsPerInch -density 200x100 -compress Group4");
    }
    std::int32_t File(const std::string& file, const std::string& bytes,
                      const std::string& name = {}) {
        return TreeTest::File(file, bytes, letters, name);
    }
    std::string PathOf(std::int32_t id) { return TreeTest::PathOf(tree.GetNode(id)); }
    void Choose(const std::vector<std::int32_t>& ids, const char* entry) {
        EXPECT_TRUE(ChooseFor(ids, entry));
    }
    void LookAtAttachments() {
        for (const auto& path : std::exchange(program.attached, {})) {
            names.push_back(platform::FileName(path));
            const auto native = "'" + tests::FakeWorkstation::Native(path).string() + "'";
            const bool pdf = platform::Extension(path) == "pdf";
            if (pdf) Run("qpdf --check " + native);
            texts.push_back(pdf ? Run("pdfimages -list " + native + " | tail -n +3") +
                                      Run("pdftotext -layout " + native + " -")
                                : machine.files.ReadAll(path));
        }
    }
    static std::size_t Times(const std::string& part, const std::string& text) {
        std::size_t count = 0;
        for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
        return count;
    }
};

TEST_F(Mailing, PagesAndNotesGoAsPdfAllElseAsItIsUnderNamesThatTheReaderKnows) {
    const auto scan = File("a.tif", Scan(), "Polis 12-3: aanvraag");
    imaging::annotations::Mark mark;
    mark.type = imaging::annotations::MarkType::Text;
    mark.bounds = {20, 20, 300, 120};
    mark.text = "Akkoord";
    mark.font.height = 6;
    imaging::annotations::Annotations marks;
    marks.Add(mark, 1600000000);
    auto pages = imaging::PagesOf(machine.files, PathOf(scan));
    pages[0].marks = marks.Bytes();
    imaging::WritePages(machine.files, pages, PathOf(scan));
    const auto remark =
        File("n.nnt", WriteNote("Gemaakt door: 'jansen'", "Één € „tekst“ żółć"), "Memo");
    const auto again = File("b.doc", "bytes", "Memo");
    const auto third = File("c.doc", "meer", "Memo");
    const auto photo =
        File("p.jpg", Made("p.jpg", "convert -size 40x30 gradient:red-blue"), "foto");
    Choose({scan, remark, again, third, photo}, "mnuMail");
    EXPECT_EQ(names, (std::vector<std::string>{"Polis 12 3  aanvraag.pdf", "Memo.pdf", "Memo.doc",
                                               "Memo (1).doc", "foto.jpg"}))
        << Told();
    EXPECT_EQ(
        std::count(program.calls.begin(), program.calls.end(), "Attach Polis 12 3  aanvraag.pdf"),
        1);
    ASSERT_EQ(texts.size(), 5u);
    EXPECT_EQ(Times(" ccitt ", texts[0]), 2u) << texts[0];
    EXPECT_EQ(Times(" 200 ", texts[0]), 2u) << texts[0];
    EXPECT_NE(texts[0].find("Akkoord"), std::string::npos) << texts[0];
    EXPECT_NE(texts[1].find("Gemaakt door: 'jansen'"), std::string::npos) << texts[1];
    EXPECT_NE(texts[1].find("Één € „tekst“ żółć"), std::string::npos) << texts[1];
    EXPECT_EQ(texts[2], "bytes");

    names.clear();
    Choose({photo}, "mnuMailPdf");
    EXPECT_EQ(names, std::vector<std::string>{"foto.pdf"});
}

TEST_F(Mailing, ASentMailIsFiledWithWhatItSaysOfItself) {
    const auto memo = File("m.doc", "x", "memo");
    platform::SaveRegSetting(machine, platform::applicationName, "Mail", "Folder", "Mail");
    program.subject = "Re: polis";
    Choose({memo}, "mnuMail");
    const auto filed = tree.GetItem(0, "Re  polis");
    ASSERT_TRUE(filed) << Told();
    EXPECT_EQ(tree.GetParent(filed->Id())->Id(), Id("Mail"));
    EXPECT_EQ(filed->ItemType(), "msg");
    EXPECT_EQ(machine.files.ReadAll(PathOf(filed->Id())), "mail");
    EXPECT_EQ(LastTold(), "Wilt u de verzonden mail opslaan?");
    machine.files.FailAt(1, platform::errors::diskFull, true);
    program.whileShown = [] {};
    const auto before = tree.AllItems().size();
    FileInTree(machine, tree, {machine.Path("m.doc"), tree.Tree(), letters});
    machine.files.FailAt(0);
    EXPECT_EQ(LastTold(), "m.doc: niet opgeslagen");
    EXPECT_EQ(tree.AllItems().size(), before);
}

TEST_F(Mailing, WhatIsMailedIsOfTheDossierThatWasOpenWhenTheQuestionCame) {
    File("m.doc", "x", "memo");
    data::EmbeddedDatabase::BackupTo(*database, machine.Path("other.db"));
    const auto other = data::EmbeddedDatabase::Open(machine.Path("other.db"));
    other->Execute({"update tblTreeItem set Description = 'geheim' where Type = 'doc'"});
    const auto before = tree.TreeId();
    machine.messages.meanwhile = [&] {
        tree.SetDbConnection(other);
        tree.SetTreeId(before);
        ASSERT_TRUE(tree.GetItem(0, "geheim"));
    };
    Choose({letters}, "mnuMail");
    EXPECT_EQ(names, std::vector<std::string>{"memo.doc"}) << Told();
    EXPECT_FALSE(tree.GetItem(0, "Emailing")) << "it went back to the one that it came from";
    tree.SetDbConnection(database);
    tree.SetTreeId(before);
    EXPECT_TRUE(tree.GetItem(0, "Emailing"));
}

TEST_F(Mailing, WhatCannotBeReadIsNamedAndTheRestGoes) {
    const auto gone = File("g.doc", "x", "weg"), damaged = File("d.tif", Scan(), "stuk"),
               memo = File("m.doc", "x", "memo");
    machine.files.Remove(PathOf(gone));
    fs::resize_file(tests::FakeWorkstation::Native(PathOf(damaged)), 20);
    program.sends = false;
    Choose({gone, damaged, memo}, "mnuMail");
    EXPECT_EQ(names, std::vector<std::string>{"memo.doc"});
    EXPECT_EQ(LastTold().find("Niet bijgevoegd: \r\nweg: bestand of map niet gevonden\r\n"), 0u)
        << LastTold();
    EXPECT_NE(LastTold().find("\r\nstuk: "), std::string::npos) << LastTold();
    names.clear();
    std::vector<std::int32_t> many{gone, damaged};
    for (int i = 0; i < 30; ++i) {
        many.push_back(File("w.doc", "x", "weg"));
        machine.files.Remove(PathOf(many.back()));
    }
    Choose(many, "mnuMail");
    EXPECT_TRUE(names.empty()) << "there is nothing to send";
    EXPECT_EQ(Times("\n", LastTold()), 9u) << LastTold();
    EXPECT_TRUE(LastTold().ends_with("... en nog 24; het logboek noemt ze alle")) << LastTold();
    EXPECT_EQ(std::count(program.calls.begin(), program.calls.end(), "CreateMail"), 1);
}

TEST_F(Mailing, ManyAttachmentsShowHowFarTheyAreAndCanBeStopped) {
    std::vector<std::int32_t> all;
    for (int i = 0; i < 100; ++i)
        all.push_back(File("m" + std::to_string(i) + ".doc", "x", std::string(200, 'a') + "?"));
    machine.busy.onProgress = [&](int done) { machine.busy.stopAsked = done == 60; };
    Choose(all, "mnuMail");
    EXPECT_TRUE(program.calls.empty()) << "no mail is made";
    EXPECT_EQ(machine.busy.progress.back(), std::make_pair(60, 100));
    EXPECT_EQ(machine.busy.shown.back().caption, "Mailen");
    machine.busy.onProgress = {};
    machine.busy.stopAsked = false;
    Choose(all, "mnuMail");
    ASSERT_EQ(names.size(), 100u);
    EXPECT_NE(names[98], names[99]);
}

TEST_F(Mailing, AsksWhatGoesAlongAndKeepsTheMailWhereItIsWanted) {
    const auto memo = File("m.doc", "x", "memo");
    const auto folderOf = [&](const char* subject) {
        const auto filed = tree.GetItem(0, subject);
        return filed ? tree.GetParent(filed->Id())->Description() : "nowhere";
    };
    program.subject = "Eerste";
    Choose({letters}, "mnuMailPdf");
    ASSERT_EQ(machine.messages.shown.size(), 2U) << Told();
    EXPECT_EQ(machine.messages.shown[0].text,
              "Wilt u de inhoud van deze map toevoegen aan deze e-mail?");
    EXPECT_EQ(machine.messages.shown[0].caption, "Bevestigen toevoegen items aan e-mail");
    EXPECT_EQ(machine.messages.shown[1].caption, "Bevestigen opslaan verzonden mail");
    EXPECT_EQ(folderOf("Eerste"), "Post") << "no folder is set: the selected one";
    platform::SaveRegSetting(machine, platform::applicationName, "Mail", "Folder", "Elders");
    program.subject = "Tweede";
    Choose({memo}, "mnuMail");
    EXPECT_EQ(folderOf("Tweede"), "Post");
    EXPECT_TRUE(machine.log.Has("Mail", "Elders"));
    program.subject = "Derde";
    machine.messages.answers = {platform::Answer::No};
    Choose({memo}, "mnuMail");
    EXPECT_EQ(folderOf("Derde"), "nowhere");
    names.clear();
    machine.messages.answers = {platform::Answer::No};
    Choose({letters}, "mnuMail");
    EXPECT_TRUE(names.empty()) << "a folder without its contents is nothing to send";
    Choose({tree.Tree()->Item()->Id()}, "mnuMail");
    EXPECT_EQ(names.size(), 3U) << "the whole dossier";
    const auto offered = [&] {
        auto menu = tree.PrepareMenu(memo);
        return FindEntry(menu, "mnuMail")->visible;
    };
    tree.SetShowMail(false);
    EXPECT_FALSE(offered());
    tree.SetShowMail(true);
    EXPECT_TRUE(offered());
    tree.SetMailSender(nullptr);
    EXPECT_FALSE(offered()) << "nobody sends it";
}

class MailingFromTheBinder : public BinderWithTemporaryFolder {};

TEST_F(MailingFromTheBinder, FilesTheSentMailAsItsIntakeDoes) {
    machine.shell.mailClient = "Microsoft Outlook";
    tests::PlayedMailProgram program;
    program.subject = "Antwoord";
    program.save = [&](const std::string& path) { machine.files.WriteAll(path, "mail"); };
    IntakeComponents components;
    components.sending = std::make_shared<mail::MailRoads>(program.Roads());
    binder = std::make_unique<ctrlCorrespondence>(machine, nullptr, nullptr, components);
    binder->SetDbConnection(connection);
    ASSERT_EQ(binder->OpenOrCreate("sleutel", "Dossier", "Post;Mail", "", ""), 0);
    auto& tree = binder->treCorr();
    const auto post = tree.GetItem(0, "Post")->Id();
    ASSERT_EQ(binder->AddFiles({File("memo.doc")}, "", post, false, false), 0);
    tree.SetHighLightToItem(tree.GetItem(0, "memo")->Id());
    auto menu = tree.PrepareMenu(tree.GetItem(0, "memo")->Id());
    const auto* entry = FindEntry(menu, "mnuMail");
    ASSERT_TRUE(entry->visible && entry->enabled);
    tree.ChooseMenu(*entry);
    const auto filed = tree.GetItem(0, "Antwoord");
    ASSERT_TRUE(filed);
    EXPECT_EQ(tree.GetParent(filed->Id())->Id(), post) << "the selected one, as none is named";
    const auto rows = connection->Open({"select ExternalId from tblDocument where Type = 'msg'"});
    EXPECT_EQ(platform::Trim(data::ToText(rows->Get(std::size_t{0}))), "sleutel");

    const auto dossier = binder->Id();
    program.whileShown = [&] {
        ASSERT_EQ(binder->OpenOrCreate("ander", "Dossier", "Post;Mail", "", ""), 0);
    };
    platform::SaveRegSetting(machine, platform::applicationName, "Mail", "Folder", " mail ");
    program.subject = "Vervolg";
    tree.SetHighLightToItem(tree.GetItem(0, "memo")->Id());
    tree.ChooseMenu(*entry);
    EXPECT_FALSE(tree.GetItem(0, "Vervolg")) << "another dossier is open";
    ASSERT_NE(binder->Id(), dossier);
    ASSERT_EQ(binder->OpenOrCreate("sleutel", "Dossier", "", "", ""), 0);
    const auto late = tree.GetItem(0, "Vervolg");
    ASSERT_TRUE(late);
    EXPECT_EQ(tree.GetParent(late->Id())->Description(), "Mail");
    const auto others = connection->Open(
        {"select count(*) from tblDocument where Type = 'msg' and ExternalId = 'sleutel'"});
    EXPECT_EQ(data::ToInt32(others->Get(std::size_t{0})), 2);
    EXPECT_TRUE(fs::is_empty(tests::FakeWorkstation::Native(temporary)));
}

} // namespace
} // namespace kavidex::controls
