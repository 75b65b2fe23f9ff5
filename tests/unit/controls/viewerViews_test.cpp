// Mails, links and files of every other type on the viewer's stage; the external window.
#include <gtest/gtest.h>

#include "controls/viewer/NoteFile.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "mail/HtmlText.h"
#include "platform/General.h"
#include "tests/fakes/CompoundFile.h"
#include "tests/fakes/FakeForms.h"
#include "tests/unit/controls/ViewerFixture.h"

namespace kavidex::controls {

namespace {

// webctl as the views see it.
struct FakeBrowser : BrowserWindow {
    BrowserPane& pane;
    std::vector<std::string> navigated;
    explicit FakeBrowser(BrowserPane& shown) : pane(shown) { pane.AttachWindow(this); }
    ~FakeBrowser() override { pane.AttachWindow(nullptr); }
    void Navigate(const std::string& path, std::string_view method) override {
        navigated.push_back(std::string(method) + " " + path);
    }
    void Print() override {}
};

struct Opened : mail::OpenedMail {
    mail::SavedMail lclContent;
    int& open;
    Opened(mail::SavedMail content, int& count) : lclContent(std::move(content)), open(count) {
        ++open;
    }
    ~Opened() override { --open; }
    const mail::SavedMail& Content() const override { return lclContent; }
};

struct Views : tests::ViewerTest {
    FakeBrowser browser{viewer.Views().browser};
    mail::SavedMail letter;
    int open = 0, openings = 0;

    tests::FormUser User(forms::Form& form) { return tests::FormUser(form); }
    void Script() {
        viewer.Views().mail.SetOpener([this](const platform::Workstation&, const std::string&) {
            ++openings;
            return std::make_unique<Opened>(letter, open);
        });
    }
};

} // namespace

TEST_F(Views, AMailHasAHeaderAndItsBodyInTheBrowser) {
    letter.subject = "Polis";
    letter.to = "K. de Vries";
    letter.sentOn = platform::DateTime{2026, 11, 14, 9, 30, 5, 0};
    letter.text = "Premie < 100 & meer";
    Script();
    const auto document = DocumentOf("msg", "Polis", "");
    ASSERT_TRUE(viewer.ShowItem(document));
    EXPECT_EQ(open, 0) << "what was made in the mail store is gone";
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::MailHeader, Part::Browser}));
    auto& header = viewer.Views().mail.Header();
    EXPECT_EQ(header["lblMailSubject"].Text(), "Polis");
    EXPECT_EQ(header["lblName1"].Text() + header["lblName"].Text(), "Aan:K. de Vries");
    EXPECT_EQ(header["lblDate1"].Text() + header["lblDate"].Text(),
              "Verzonden op:14-11-2026 09:30:05");
    EXPECT_FALSE(header["lblAttachment"].Visible());
    ASSERT_EQ(browser.navigated.size(), 1U);
    ASSERT_TRUE(browser.navigated[0].starts_with("Navigate2 ") &&
                browser.navigated[0].ends_with(".htm"));
    const auto body = browser.navigated[0].substr(10);
    EXPECT_NE(machine.files.ReadAll(body).find("Premie &lt; 100 &amp; meer"), std::string::npos);

    // The control turns out to show nothing: the text takes its place, and the file goes.
    viewer.Views().browser.Failed("no document");
    EXPECT_TRUE(window.idle);
    window.Settle();
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::MailHeader, Part::Text}));
    EXPECT_EQ(viewer.Views().mail.Text()["txtBody"].Text(), letter.text);
    EXPECT_FALSE(machine.files.FileExists(body));

    letter.receivedByName = "J. Jansen";
    letter.senderName = "Schadedienst";
    letter.attachmentCount = 2;
    letter.html = "<p>Het <b>formulier</b></p>";
    ASSERT_TRUE(viewer.Refresh());
    EXPECT_EQ(header["lblName1"].Text() + header["lblName"].Text(), "Van:Schadedienst");
    EXPECT_TRUE(header["lblAttachment"].Visible());
    EXPECT_EQ(header["lblAttachment"].Text(), "Bijlagen: 2");
    const auto page = browser.navigated.back().substr(10);
    EXPECT_NE(machine.files.ReadAll(page).find(letter.html), std::string::npos);
    viewer.ShowItem(nullptr);
    EXPECT_FALSE(machine.files.FileExists(page));
}

TEST_F(Views, WithoutAMailProgramNothingIsSaidAndTheOptionReadsTheFile) {
    const auto document = DocumentOf("msg", "Polis", "no mail");
    ASSERT_TRUE(viewer.ShowItem(document));
    EXPECT_TRUE(machine.messages.shown.empty());
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::Facts}));
    EXPECT_TRUE(machine.log.Has("ShowItem"));
    User(viewer.Views().facts.Form()).Click("btnOpen");
    EXPECT_EQ(machine.shell.opened, std::vector<std::string>{FileOf(document)});

    Script();
    platform::SaveRegFlag(machine, "ViewerSetting", "ReadMailFiles", true);
    ASSERT_TRUE(viewer.Refresh());
    EXPECT_EQ(openings, 0) << "the mail program is not asked";
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::Facts})) << "it is no saved mail";

    tests::MailPart mail(32);
    mail.Wide("0037", "Offerte „Zomer“").Wide("0C1A", "Piet Jansen").Wide("0040", "An de Vries");
    mail.Raw("10130102", "<p>Beste An</p>").Fixed(0x3FDE0003, 1252);
    tests::MailPart file(8);
    file.Wide("3707", "polis.pdf");
    mail.With("__attach_version1.0_#00000000", file);
    machine.files.WriteAll(FileOf(document), tests::CompoundFileWriter::Write(mail.Whole()));
    ASSERT_TRUE(viewer.Refresh());
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::MailHeader, Part::Browser}));
    auto& header = viewer.Views().mail.Header();
    EXPECT_EQ(header["lblMailSubject"].Text(), "Offerte „Zomer“");
    EXPECT_EQ(header["lblName1"].Text() + header["lblName"].Text(), "Van:Piet Jansen");
    EXPECT_EQ(header["lblAttachment"].Text(), "Bijlagen: polis.pdf");
    EXPECT_NE(machine.files.ReadAll(browser.navigated.back().substr(10)).find("<p>Beste An</p>"),
              std::string::npos);
}

TEST_F(Views, ANoteIsPrintedAsItStandsInItsBox) {
    const auto note = DocumentOf("nnt", "Notitie", WriteNote("kop", "oud"));
    ASSERT_TRUE(viewer.ShowItem(note));
    viewer.Views().note.Note().SetText("nieuw\r\n" + std::string(4000, 'x'));
    auto& printers = machine.shell.printers;
    EXPECT_EQ(window.Button("Print").enabled, CanDrawPdf()) << "PDFium draws its pages";
    viewer.ButtonClicked("Print");
    ASSERT_EQ(printers.jobs.size(), CanDrawPdf() ? 1U : 0U);
    for (const auto& job : printers.jobs) EXPECT_TRUE(job.starts_with("Notitie: high "));
    machine.messages.answers = {platform::Answer::No};
    viewer.ShowItem(nullptr);
    EXPECT_EQ(ReadNote(machine.files.ReadAll(FileOf(note))).memo, "oud") << "printed, not saved";
}

TEST_F(Views, ALinkAsksTheHostAndShowsNothing) {
    std::string asked;
    const auto token = viewer.EvOpenDossier.Subscribe(
        [&](const std::string& key, const std::string& type) { asked = key + "|" + type; });
    ASSERT_TRUE(viewer.ShowItem(DocumentOf(
        "edf", "Link", "[Algemeen]\r\nInput=x\r\n[PARAM]\r\ninput = \"K4711;Zaak\"\r\n")));
    EXPECT_EQ(asked, "K4711|Zaak");
    EXPECT_TRUE(viewer.Parts().Empty());
    asked.clear();
    EXPECT_TRUE(viewer.Refresh());
    EXPECT_EQ(asked, "") << "it is chosen once";
    EXPECT_FALSE(viewer.ShowItem(DocumentOf("edf", "Leeg", "[Param]\r\nInput=\r\n")));
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].caption, "Error in ShowItem");
}

TEST_F(Views, WhatCannotBeDrawnShowsItsFactsAndOpens) {
    const auto empty = DocumentOf("tif", "Leeg", "");
    EXPECT_FALSE(viewer.ShowItem(empty));
    EXPECT_EQ(machine.messages.shown.back().caption, "Error in ShowItem");
    EXPECT_NE(LastMessage().find("Dit document is beschadigd"), std::string::npos) << LastMessage();
    machine.shell.pdfInBrowser = false;
    for (const auto& document : {empty, DocumentOf("pdf", "Kapot", "geen pdf")}) {
        viewer.ShowItem(document);
        EXPECT_EQ(viewer.Item(), document);
        EXPECT_EQ(viewer.Parts(), CanDrawPdf() || document == empty ? (PartSet{Part::Facts})
                                                                    : (PartSet{Part::Browser}));
        viewer.HintActivated();
        EXPECT_EQ(machine.shell.opened.back(), FileOf(document));
    }
    EXPECT_EQ(machine.messages.shown.size(), 2U) << "a PDF file that is not drawn is no fault";
}

TEST_F(Views, EveryOtherTypeIsForTheBrowserWhichRunsNothing) {
    const auto page = DocumentOf("htm", "Pagina", "<script>alert(1)</script>");
    ASSERT_TRUE(viewer.ShowItem(page));
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::Browser}));
    EXPECT_EQ(browser.navigated, std::vector<std::string>{"Navigate " + FileOf(page)});
    EXPECT_EQ(viewer.Status().page, "Scripts worden niet uitgevoerd");
    EXPECT_EQ(viewer.Status().hintTip,
              "Dubbelklik om het document met zijn standaard programma te openen");
    viewer.HintActivated();
    EXPECT_EQ(machine.shell.opened.size(), 1U);

    const auto program = DocumentOf("vbs", "Script", "MsgBox 1");
    ASSERT_TRUE(viewer.ShowItem(program));
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::Facts}));
    auto& facts = viewer.Views().facts.Form();
    EXPECT_EQ(facts["lblNotice"].Text(),
              "Dit bestand kan iets uitvoeren en wordt daarom niet getoond.");
    EXPECT_EQ(facts["txtSize"].Text(), "8 bytes");
    EXPECT_EQ(facts["txtMoment"].Text(), "15-11-2026 14:05");
    machine.messages.answers = {platform::Answer::No};
    User(facts).Click("btnOpen");
    EXPECT_EQ(machine.shell.opened.size(), 1U) << "only when the user insists";
    EXPECT_FALSE(window.Button("Print").enabled) << "a program is not run to be printed";

    machine.shell.engine = false; // nothing shows pages here
    ASSERT_TRUE(viewer.ShowItem(page));
    EXPECT_EQ(viewer.Parts(), (PartSet{Part::Facts}));
    EXPECT_EQ(browser.navigated.back(), " ") << "the control is empty";
    viewer.ButtonClicked("Print");
    EXPECT_EQ(machine.shell.printed, std::vector<std::string>{FileOf(page)});
    viewer.ShowItem(nullptr);
    machine.files.Remove(FileOf(page));
    EXPECT_FALSE(viewer.ShowItem(page));
    EXPECT_EQ(LastMessage(), "Document kan niet gevonden worden.");
}

TEST(HtmlText, KeepsWhatIsRead) {
    EXPECT_EQ(
        mail::TextOfHtml("<html><head><title>t</title></head><body>\r\n<p>Geachte&nbsp;heer,</p>"
                         "<script>if (a<b) x();</script><!-- <p> --><ul><li>1 &lt; 2 &#8364;"
                         "</ul>a & b &broken <"),
        "Geachte heer,\n\n1 < 2 \xE2\x82\xAC\na & b &broken <");
}

namespace {

struct FakeFormWindow : ViewerFormWindow {
    frmViewer& form;
    bool& open;
    std::string& caption;
    FakeFormWindow(frmViewer& owner, bool& isOpen, std::string& shown)
        : form(owner), open(isOpen), caption(shown) {
        open = true;
    }
    ~FakeFormWindow() override { open = false; }
    void Show() override {}
    void SetFocus() override {}
    void CaptionChanged() override { caption = form.Caption(); }
    ViewerPlace Place() const override { return {100, 200, 6000, 7000}; }
    void Close() override {
        if (form.MayClose()) form.Closed();
    }
    void CloseWhenDue() override { form.CloseIfDue(); }
};

} // namespace

TEST_F(Views, TheExternalWindowIsMadeWhenNeededAndForgottenWhenItCloses) {
    bool there = false;
    std::string caption;
    int unloads = 0, nexts = 0;
    ctrlExtViewer external(machine);
    external.SetDbConnection(database);
    external.SetWindowMaker(
        [&](frmViewer& form) { return std::make_unique<FakeFormWindow>(form, there, caption); });
    const auto unload = external.EvUnload.Subscribe([&] { ++unloads; });
    const auto next = external.EvNextDocumentRequest.Subscribe([&] { ++nexts; });
    const auto brief = DocumentOf("txt", "Brief", "x");
    ASSERT_TRUE(external.ShowItemFromId(brief->Id()));
    ASSERT_TRUE(external.Form());
    EXPECT_EQ(external.Form()->Caption(), "Document: Brief");
    EXPECT_EQ(external.Id(), brief->Id());
    external.Form()->Viewer().NextDocumentRequest.Raise();
    EXPECT_EQ(nexts, 1);
    EXPECT_FALSE(external.ShowItemFromId(4711));
    // What is asked for within a question comes when it is answered.
    const auto script = DocumentOf("vbs", "Script", "x");
    machine.messages.meanwhile = [&] { external.ShowItem(script); };
    external.Form()->Viewer().OpenDefault(script);
    EXPECT_EQ(external.Form()->Caption(), "Document: Script");
    EXPECT_EQ(external.Form()->Id(), script->Id());
    EXPECT_EQ(caption, "Document: Script") << "the window shows it too";

    const auto option = [&] {
        return platform::GetRegSetting(machine, "Kavidex", "ViewerSetting", "AlwaysExternal", "-");
    };
    for (const bool kept : {true, false}) {
        platform::SaveRegFlag(machine, "ViewerSetting", "AlwaysExternal", kept); // by another
        external.Form()->MenuChosen(external.Form()->Menu()[1]);
        EXPECT_EQ(option(), kept ? "True" : "False") << "the mark of this window counts";
        EXPECT_EQ(external.Form()->Menu()[1].checked, kept);
    }
    external.Form()->MenuChosen(external.Form()->Menu()[2]);
    EXPECT_EQ(ReadViewerPlace(machine), (ViewerPlace{100, 200, 6000, 7000}));
    bool closed = true;
    machine.messages.meanwhile = [&] { closed = external.CloseForm(); };
    external.Form()->Viewer().OpenDefault(script);
    EXPECT_FALSE(closed) << "not within its question";
    EXPECT_FALSE(external.Form()) << "but when that was answered";
    EXPECT_EQ(unloads, 1);
    external.Show();
    machine.messages.meanwhile = [&] { // windows that were destroyed ask nobody
        for (int i = 0; i < 2; ++i) {
            external.Show();
            external.Form()->Closed();
        }
    };
    external.Form()->Viewer().OpenDefault(script);
    EXPECT_EQ(unloads, 3);
    ASSERT_TRUE(external.ShowItem(script));

    ctrlExtViewer second(machine);
    second.SetDbConnection(database);
    second.ShowItem(brief);
    platform::SaveRegFlag(machine, "ViewerSettings", "CloseAll", true);
    EXPECT_TRUE(external.CloseForm());
    EXPECT_FALSE(external.Form() || second.Form()) << "all close together";
    EXPECT_EQ(unloads, 4);
    external.Show();
    EXPECT_TRUE(there);
}

TEST_F(Views, TheExternalWindowIsPulledBackOntoTheScreen) {
    EXPECT_EQ(ReadViewerPlace(machine), (ViewerPlace{0, 512, 4000, 2000}));
    const ScreenArea one[] = {{0, 0, 15000, 10000}};
    const ScreenArea two[] = {{0, 0, 15000, 10000}, {-15000, -2000, 0, 8000}};
    const struct {
        ViewerPlace stored;
        std::span<const ScreenArea> monitors;
        ViewerPlace shown;
    } cases[] = {
        {{0, 512, 4000, 2000}, one, {0, 512, 4000, 2000}},
        {{500, 16000, 4000, 2000}, one, {500, 13000, 4000, 2000}}, // its right side at the edge
        {{500, 15000, 4000, 2000}, one, {500, 13000, 4000, 2000}},
        {{12000, 500, 4000, 2000}, one, {6000, 500, 4000, 2000}},
        {{-700, -900, 4000, 2000}, one, {0, 0, 4000, 2000}},
        {{8000, 14000, 4000, 2000}, one, {8000, 14000, 2000, 1000}}, // made smaller
        {{500, 16000, 20000, 30000}, one, {500, 0, 9500, 15000}},
        {{-1500, -9000, 4000, 2000}, two, {-1500, -9000, 4000, 2000}}, // on the other monitor
        {{100, -1000, 4000, 2000}, two, {100, -1000, 4000, 2000}},     // on both
        {{100, -30000, 4000, 2000}, two, {100, 0, 4000, 2000}},        // on none of them
    };
    for (const auto& each : cases) EXPECT_EQ(OnScreen(each.stored, each.monitors), each.shown);

    SaveViewerPlace(machine, {100, 200, 60, 15}); // nothing could be seen in it
    EXPECT_EQ(ReadViewerPlace(machine), (ViewerPlace{100, 200, 3600, 2000}));
    EXPECT_EQ(LeastSize({0, 0, 9000, 9000}), (ViewerSize{4800, 3600}));
    EXPECT_EQ(LeastSize({0, 512, 4000, 2000}), (ViewerSize{2000, 3600})) << "as it opened";
}

} // namespace kavidex::controls
