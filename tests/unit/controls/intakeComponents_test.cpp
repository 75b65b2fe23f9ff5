// What comes in through separate components, played here: the mail program, the letter generator,
// the scanning control, and the dialog that leads to letters and files.
#include "tests/unit/controls/PlayedComponents.h"

namespace kavidex::controls {
namespace {

using tests::FormUser;

TEST_F(Components, MakesALetterWithANumberOfItsOwn) {
    File("sjablonen\\Zaken\\Letter.DOTX");
    File("sjablonen\\Zaken\\~$Letter.DOTX");
    machine.files.CreateDirectories(machine.Path("sjablonen\\Zaken\\Oud"));
    File("sjablonen\\Letter.rtf");
    Setting("Template", "Path", machine.Path("sjablonen"));
    Setting("Unique", "Number", "41");
    const auto values = File("waarden.txt", "a=1\r\nDocumentID=7\r\nx documentid\r\nb=2");
    binder->SetValueFile(values);
    binder->SetDossierStatus("zaken");
    LetterGenerator::Merged made{3, {}};
    merge = [&](const std::string& valueFile, const std::string& letter) {
        EXPECT_EQ(valueFile, values);
        EXPECT_EQ(letter, machine.Path("sjablonen\\Zaken\\Letter.DOTX"));
        EXPECT_EQ(machine.busy.shown.back().text, "Bezig met aanmaken correspondentie");
        return made;
    };
    const auto letter = [&](FormUser& user) {
        user.Choose("TabStrip1", 2);
        EXPECT_FALSE(user.CanUse("btnOk"));
        EXPECT_EQ(user.Form()["treMap"].Selected(), 2) << "the folder of the dossier's status";
        user.Choose("treMap", 1);
        EXPECT_TRUE(user.Form()["lstFiles"].Items().empty()) << "Letter.rtf is no template";
        machine.files.refused = "List " + machine.Path("sjablonen\\Zaken");
        user.Expand("treMap", 2);
        EXPECT_TRUE(user.Text("lblProblem").find("kan niet gelezen worden") != std::string::npos);
        EXPECT_EQ(user.Form()["treMap"].Selected(), 2)
            << "it is that one's files that are not shown";
        machine.files.refused.clear();
        user.Expand("treMap", 2);
        EXPECT_EQ(user.Form()["treMap"].Items().size(), 3U) << "tried again";
        EXPECT_EQ(user.Form()["lstFiles"].Items().size(), 1U);
        user.Type("txtName", "Brief aan Piet");
        user.Tick("chkOpen");
        EXPECT_EQ(user.Form()["lstFiles"].Find(1)->icon, ".dotx");
        user.Choose("lstFiles", 1);
        user.Enter();
    };
    window.forms.users = {letter, letter};
    binder->ButtonClicked("New");
    EXPECT_TRUE(Told("Selecteer eerst een map voor de toevoeging"));
    binder->treCorr().NodeSelected(Root());
    binder->ButtonClicked("New");
    EXPECT_TRUE(Told("Fout in samenvoegen document (3)"));
    EXPECT_EQ(Documents(), "");
    EXPECT_EQ(machine.files.ReadAll(values), "a=1\r\nb=2\r\nDocumentId=42\r\n");
    made = {1, File("Brief aan Jan.docx")};
    binder->ButtonClicked("New");
    EXPECT_EQ(Documents(), "Brief aan Piet\n");
    EXPECT_EQ(machine.shell.opened.size(), 1U);
    EXPECT_EQ(machine.files.ReadAll(values), "a=1\r\nb=2\r\nDocumentId=43\r\n");
}

TEST_F(Components, WhatTheUserStopsDoesNotComeInLater) {
    machine.busy.onProgress = [&](int done) { machine.busy.stopAsked = done == 1; };
    program->dragged.selection = {Item("een"), Item("twee"), Item("drie")};
    EXPECT_EQ(DropMail(), drop::none);
    EXPECT_TRUE(Told("twee.msg: niet toegevoegd"));
    EXPECT_TRUE(machine.files.List(temporary, "*.msg", false).empty()) << "the mails are elsewhere";

    for (const char* name : {"queue\\key\\a.tif", "queue\\key\\b.tif"}) File(name, name);
    Setting("DossierSettings", "ScanQueue", machine.Path("queue"));
    window.scannerInstalled = false;
    window.forms.users = {[](FormUser& user) { user.Enter(); }};
    EXPECT_EQ(binder->fncCheckDocumentQueue({}), 0);
    EXPECT_EQ(Documents(), "een\nGescand document\n");
    EXPECT_EQ(binder->CloseObject(), 0);
    EXPECT_TRUE(machine.files.FileExists(machine.Path("queue\\key\\b.tif")));

    machine.busy.onProgress = nullptr;
    machine.busy.stopAsked = false;
    const auto enter = [](FormUser& user) { user.Enter(); };
    {
        const auto other = machine.files.Lock(machine.Path("queue\\key\\kavidex.lock"));
        window.forms.users = {enter};
        ASSERT_EQ(Open("key"), 0);
        EXPECT_TRUE(Told("Een andere gebruiker voegt de documenten in"));
    }
    window.forms.users = {enter};
    ASSERT_EQ(Open("key"), 0);
    EXPECT_EQ(Documents(), "een\nGescand document\nGescand document\n");
    EXPECT_FALSE(machine.files.FileExists(machine.Path("queue\\key\\b.tif")));
}

// The host goes on to another dossier while a mail, a letter and the scan queue come in.
TEST_F(Components, WhatCameForADossierNeverGoesIntoTheOneThatIsOpenedMeanwhile) {
    const auto leave = [&] {
        ASSERT_EQ(Open("other"), 0);
        binder->treCorr().NodeSelected(Root());
    };
    const auto comesBack = [&](const char* what) {
        binder->treCorr().NodeSelected(Root());
        EXPECT_EQ(Documents(), "") << what;
        ASSERT_EQ(Open("third"), 0);
        ASSERT_EQ(Open("other"), 0);
        EXPECT_EQ(Documents(), "") << what;
        machine.messages.shown.clear();
        ASSERT_EQ(Open("key"), 0);
        EXPECT_TRUE(Told("Selecteer een map")) << what;
        binder->treCorr().NodeSelected(Root());
        EXPECT_EQ(Documents(), what);
        for (const auto& item : binder->treCorr().AllItems())
            EXPECT_TRUE(binder->treCorr().DeleteItem(item->Id()));
    };
    struct Meanwhile : Translator { // the text of a box is asked for
        std::string text;
        std::function<void()> work;
        std::string Translate(std::string_view asked, const std::vector<std::string>& v) override {
            if (work && asked.starts_with(text)) std::exchange(work, nullptr)();
            return platform::FillPlaceholders(asked, v);
        }
    };
    const auto box = std::make_shared<Meanwhile>();
    binder->SetTranslate(box);
    program->dragged.selection = {Item("Mail")};
    program->dragged.attachments = {
        {"bijlage", "b.pdf", [&](std::string_view path) { machine.files.WriteAll(path, "b"); }}};
    box->text = "Wilt u de bijlage";
    box->work = leave;
    DropMail();
    EXPECT_TRUE(Told("Mail.msg: het dossier is gesloten"));
    comesBack("Mail\nb\n");

    File("sjablonen\\Letter.dotx");
    Setting("Template", "Path", machine.Path("sjablonen"));
    binder->SetDbConnection(nullptr);
    binder->SetDbConnection(connection);
    ASSERT_EQ(Open("key"), 0);
    binder->treCorr().NodeSelected(Root());
    const auto letter = [&](FormUser& user) {
        user.Choose("TabStrip1", 2);
        user.Choose("lstFiles", 1);
        user.Enter();
    };
    merge = [&](const std::string&, const std::string&) {
        leave();
        return LetterGenerator::Merged{1, File("Brief.docx")};
    };
    window.forms.users = {letter, [&](FormUser& user) {
                              leave();
                              letter(user);
                          }};
    binder->ButtonClicked("New");
    EXPECT_TRUE(Told("het dossier is gesloten"));
    comesBack("Brief\n");
    merge = nullptr; // no letter is made of one client's values for another
    binder->ButtonClicked("New");
    EXPECT_EQ(Documents(), "");

    const auto waiting = File("queue\\key\\a.tif");
    Setting("DossierSettings", "ScanQueue", machine.Path("queue"));
    box->text = "Er zijn nog documenten aanwezig";
    box->work = leave;
    EXPECT_EQ(Open("key"), -6);
    binder->treCorr().NodeSelected(Root());
    EXPECT_EQ(Documents(), "");
    EXPECT_TRUE(machine.files.FileExists(waiting));
}

TEST_F(Components, AsksForKindsFilesAndTemplatesByRight) {
    binder->treCorr().NodeSelected(Root());
    const auto file = File("bijlage.pdf");
    window.forms.chosen = {file + ";" + machine.Path("weg.txt")};
    window.forms.users = {
        [&](FormUser& user) {
            EXPECT_EQ(user.Form()["lstKinds"].Items().size(), 2U);
            user.Choose("TabStrip1", 2);
            EXPECT_EQ(user.Text("lblProblem"), "De sjablonenmap is niet ingesteld");
            user.Tick("optList");
            EXPECT_EQ(user.Form()["lstFiles"].Mode(), forms::ListMode::Rows);
            user.Click("btnFile");
        },
        [](FormUser& user) {
            user.Choose("lstKinds", 2);
            user.Enter();
        },
        [](FormUser& user) {
            EXPECT_FALSE(user.CanUse("btnFile"));
            EXPECT_EQ(user.Form()["lstKinds"].Items().size(), 1U);
            user.Choose("TabStrip1", 2);
            EXPECT_TRUE(user.Text("lblProblem").find("niet gevonden") != std::string::npos);
            user.Escape();
        }};
    binder->ButtonClicked("New");
    EXPECT_TRUE(Told("weg.txt"));
    binder->ButtonClicked("New");
    EXPECT_EQ(Documents(), "bijlage\nNieuwe notitie 15-11-2026 14:05\n");
    Setting("Template", "Path", machine.Path("bestaat niet"));
    binder->SetDbConnection(nullptr);
    binder->SetDbConnection(connection);
    ASSERT_EQ(Open("key"), 0);
    binder->treCorr().NodeSelected(Root());
    binder->treCorr().SetAllowAddExternal(false);
    binder->treCorr().SetAllowCreateFolders(false);
    binder->ButtonClicked("New");
    EXPECT_TRUE(window.forms.users.empty());
}

TEST_F(Components, ScansIntoTheSelectedFolderAndLosesNothingAtClosing) {
    const auto tooltip = [&] {
        for (const auto& item : binder->Toolbar())
            if (item.name == "Scan") return item.tooltip;
        return std::string();
    };
    window.scannerInstalled = false;
    binder->ButtonClicked("Scan");
    EXPECT_TRUE(Told("De scanmodule (Tessaro.ctrlScan) kan niet geopend worden"));
    EXPECT_FALSE(Told("no class")) << "words of the system are for the log";
    EXPECT_EQ(tooltip(), "Open de scanmodule");
    window.scannerInstalled = true;
    binder->SetAlternateScanSetting("kleur");
    binder->SetIniFile("C:\\scan.ini");
    binder->SetInitString("balie 3");
    binder->SetLayout(layouts::treeOnly);
    binder->ButtonClicked("Scan");
    EXPECT_EQ(tooltip(), "Sluit de scanmodule");
    EXPECT_TRUE(binder->SplitPanel().Control2Visible());
    ASSERT_EQ(window.scanner.texts.size(), 3U);
    EXPECT_EQ(window.scanner.texts[0].second, "kleur");
    EXPECT_EQ(window.scanner.texts[1].second, "C:\\scan.ini");
    EXPECT_EQ(window.scanner.texts[2].second, "balie 3");
    EXPECT_TRUE(window.scanner.flags[0].second) << "rights are not in use";
    Setting("Rights", "Use", "True");
    binder->SetUserAuth(std::make_shared<model::clsUserAuth>(machine));
    EXPECT_FALSE(window.scanner.flags[0].second) << "another user at the open control";
    Setting("Rights", "Use", "");
    binder->SetUserAuth(nullptr);
    const auto first = File("1.tif"), second = File("2.tif");
    const auto scanned = window.scanner.scanned;
    scanned({first});
    EXPECT_TRUE(Told("Selecteer een map om het document op te bergen"));
    binder->treCorr().NodeSelected(Root()); // closes the panel
    EXPECT_EQ(tooltip(), "Open de scanmodule");
    EXPECT_FALSE(binder->SplitPanel().Control2Visible());
    EXPECT_EQ(Documents(), "Gescand document\n");
    EXPECT_FALSE(machine.files.FileExists(first));
    Setting("Storage", "DocumentPath", machine.Path("weg"));
    scanned({second});
    EXPECT_TRUE(machine.files.FileExists(second));
    Setting("Storage", "DocumentPath", machine.Path("store"));
    EXPECT_EQ(binder->CloseObject(), 0);
    EXPECT_TRUE(Told("deze zijn op het hoogste niveau toegevoegd"));
    ASSERT_EQ(Open("key"), 0);
    EXPECT_EQ(Documents(), "Gescand document\nGescand document\n");
}

// A control that hands over what a feeder holds as soon as it is there.
TEST_F(Components, WhatIsScannedWhileTheControlOpensStaysWithItsDossier) {
    const auto first = File("1.tif"), second = File("2.tif");
    window.onOpen = [&] {
        const auto scanned = window.scanner.scanned;
        scanned({first});
        binder->treCorr().NodeSelected(Root()); // closes the panel that is not quite open
        ASSERT_EQ(Open("other"), 0);
        binder->treCorr().NodeSelected(Root());
        scanned({second});
    };
    binder->ButtonClicked("Scan");
    EXPECT_FALSE(window.scanner.scanned) << "it does not stay open beside the other dossier";
    EXPECT_EQ(Documents(), "");
    EXPECT_TRUE(Told(second + ": het dossier is gesloten"));
    binder->treCorr().NodeSelected(Root());
    EXPECT_EQ(Documents(), "");
    ASSERT_EQ(Open("key"), 0);
    binder->treCorr().NodeSelected(Root());
    EXPECT_EQ(Documents(), "Gescand document\nGescand document\n");
    EXPECT_FALSE(machine.files.FileExists(second));
    binder->ButtonClicked("Scan");
    EXPECT_TRUE(window.scanner.scanned);
}

TEST_F(Components, ADropBelongsToTheDossierOfItsMomentWhateverTheHostDoesOnHearingOfIt) {
    const auto file = File("brief.txt");
    const auto token = binder->OLEDragDrop.Subscribe([&](const DropData&, std::int32_t&) {
        ASSERT_EQ(Open("other"), 0);
        binder->treCorr().NodeSelected(Root());
    });
    DropData data;
    data.hasFiles = true;
    data.files = {file};
    EXPECT_EQ(binder->treCorr().Dropped(data, Root()), drop::none);
    EXPECT_EQ(Documents(), "");
    EXPECT_TRUE(Told(file + ": het dossier is gesloten"));
    ASSERT_EQ(Open("key"), 0);
    binder->treCorr().NodeSelected(Root());
    EXPECT_EQ(Documents(), "brief\n");
}

} // namespace
} // namespace kavidex::controls
