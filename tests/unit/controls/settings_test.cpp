// The dialog "Instellingen": what it reads and writes where, and what it refuses.
#include "tests/unit/controls/BinderFixture.h"

#include "controls/settings/frmSettings.h"

namespace kavidex::controls {

namespace {

struct Settings : Binder {
    tests::FakeForms forms;

    std::string Kept(std::string_view section, std::string_view key) {
        tests::On<data::clsSettings> settings(machine, connection);
        std::string value;
        return settings.GetSetting(section, key, value) ? value : "(none)";
    }
    std::string Option(std::string_view section, std::string_view key) {
        return platform::GetRegSetting(machine, platform::applicationName, section, key, "(none)");
    }
    bool Show(std::function<void(tests::FormUser&)> acts) {
        forms.users = {std::move(acts)};
        frmSettings dialog(machine, connection, binder->Translate(), nullptr);
        return dialog.Show(forms);
    }
};

} // namespace

TEST_F(Settings, AreWrittenUnderTheirNamesAndUntouchedOnesAreNot) {
    const auto queue = machine.Path("queue");
    machine.files.CreateDirectories(queue);
    forms.chosen = {queue};
    machine.messages.answers = {platform::Answer::Yes, platform::Answer::Yes}; // two are not there
    EXPECT_TRUE(Show([&](tests::FormUser& user) {
        EXPECT_EQ(user.Text("txtDocumentPath"), machine.Path("store"));
        user.Click("btnTestDocuments");
        EXPECT_NE(user.Text("lblTest").find("kan gebruikt worden"), std::string::npos);
        user.Type("txtTemplatePath", "Z:\\nergens");
        user.Click("btnTestTemplates");
        EXPECT_NE(user.Text("lblTest").find("bestaat niet"), std::string::npos);
        user.Choose("TabStrip1", 2);
        user.Click("txtScanQueue");
        user.Type("txtBackLog", " C:\\achterstand ");
        user.Choose("TabStrip1", 4);
        user.Tick("chkFullExpand");
        user.Choose("cmbLanguage", 2);
        user.Choose("TabStrip1", 5);
        EXPECT_TRUE(user.Ticked("chkRetrieve")) << "on where nothing is kept";
        user.Tick("chkRetrieve", false);
        user.Type("txtSubject", "Dossier");
        user.Choose("cmbFormat", 3);
        user.Click("btnOk");
    }));
    EXPECT_EQ(Kept("Storage", "DocumentPath"), machine.Path("store"));
    EXPECT_EQ(Kept("Template", "Path"), "Z:\\nergens");
    EXPECT_EQ(Kept("DossierSettings", "ScanQueue"), queue);
    EXPECT_EQ(Kept("DossierSettings", "ImportDocumentsPath"), "(none)");
    EXPECT_EQ(Kept("BackLogSettings", "Path"), "C:\\achterstand");
    EXPECT_EQ(Kept("Rights", "Use"), "(none)");
    EXPECT_EQ(Option("TreeSettings", "FullExpand"), "True");
    EXPECT_EQ(Option("TreeSettings", "ShowDeleted"), "(none)");
    EXPECT_EQ(Option("Mail", "RetrieveSendMail"), "0");
    EXPECT_EQ(Option("Mail", "Subject"), "Dossier");
    EXPECT_EQ(Option("Mail", "Body"), "(none)");
    EXPECT_EQ(Option("Email", "FormatText"), "2");
    EXPECT_EQ(LanguageOption(machine), 1);
    EXPECT_EQ(Make()->Language(), 1);
    EXPECT_TRUE(machine.files.List(queue, "*", false).empty());
}

TEST_F(Settings, TheRightsAreSwitchedAfterTheirQuestionOnly) {
    const auto& shown = machine.messages.shown;
    machine.messages.answers = {platform::Answer::No};
    EXPECT_TRUE(Show([&](tests::FormUser& user) {
        user.Choose("TabStrip1", 3);
        user.Tick("chkUseRights");
        EXPECT_FALSE(user.Ticked("chkUseRights"));
        EXPECT_EQ(shown.back().caption, "Gebruik van rechten activeren");
        EXPECT_EQ(shown.back().text,
                  "Hiermee schakelt u het gebruik van rechten in. Gebruikers hebben vanaf nu "
                  "standaard geen rechten meer. Wilt u echt doorgaan?");
        user.Tick("chkUseRights"); // and yes to both questions: nobody has the right to undo it
        EXPECT_EQ(shown.size(), 3U);
        EXPECT_NE(shown.back().text.find("Geen enkele gebruiker"), std::string::npos);
        user.Click("btnOk");
    }));
    EXPECT_EQ(Kept("Rights", "Use"), "True");
    Show([&](tests::FormUser& user) {
        user.Choose("TabStrip1", 3);
        EXPECT_FALSE(user.CanUse("chkUseRights")) << "no rights object, and rights count";
    });
    tests::On<model::clsUserAuth> rights(machine, connection);
    rights.SetUserId("O'Brien");
    rights.SetRight("UpdateEditRights", "True");
    frmSettings blind(machine, connection, nullptr, std::make_shared<model::clsUserAuth>(rights));
    forms.users = {[](tests::FormUser& user) {
        user.Choose("TabStrip1", 3);
        EXPECT_FALSE(user.CanUse("chkUseRights")) << "of what he cannot see";
    }};
    blind.Show(forms);
    rights.SetRight("ReadEditRights", "True");
    ASSERT_TRUE(rights.SaveRights());
    frmSettings dialog(machine, connection, nullptr, std::make_shared<model::clsUserAuth>(rights));
    forms.users = {[&](tests::FormUser& user) {
        user.Choose("TabStrip1", 3);
        user.Tick("chkUseRights", false);
        EXPECT_EQ(shown.back().caption, "Gebruik van rechten deactiveren");
        user.Tick("chkUseRights", true);
        EXPECT_EQ(shown.back().text.find("Geen enkele"), std::string::npos);
        // His right went before it is written.
        rights.DeleteRights();
        Setting("Rights", "Use", "False");
    }};
    dialog.Show(forms);
    forms.users = {[&](tests::FormUser& user) {
        ASSERT_TRUE(rights.SaveRights());
        user.Choose("TabStrip1", 3);
        user.Tick("chkUseRights", true);
        rights.DeleteRights();
        user.Click("btnOk");
        EXPECT_TRUE(Told("intussen door iemand anders gewijzigd"));
    }};
    EXPECT_FALSE(dialog.Show(forms));
    EXPECT_EQ(Kept("Rights", "Use"), "False");
}

TEST_F(Settings, NothingIsHalfWritten) {
    EXPECT_FALSE(Show([&](tests::FormUser& user) {
        user.Type("txtTemplatePath", "C:\\a'b");
        user.Click("btnOk");
        EXPECT_TRUE(Told("'C:\\a'b' is te lang"));
        user.Type("txtTemplatePath", "C:\\sjablonen");
        user.Choose("TabStrip1", 2);
        user.Type("txtBackLog", "C:\\mijn");
        Setting("BackLogSettings", "Path", "C:\\van een ander");
        user.Click("btnOk");
        EXPECT_TRUE(Told("intussen door iemand anders gewijzigd"));
    }));
    EXPECT_EQ(Kept("Template", "Path"), "(none)");
    EXPECT_EQ(Kept("BackLogSettings", "Path"), "C:\\van een ander");

    const auto inner = connection;
    const auto closed = std::make_shared<tests::RecordingConnection>("ACCESS", inner);
    closed->refuse = [](const std::string& statement) {
        return statement.find("Values('BackLog") != std::string::npos ||
               statement.find("update tblSettings") != std::string::npos;
    };
    connection = closed;
    EXPECT_FALSE(Show([&](tests::FormUser& user) {
        user.Type("txtTemplatePath", "C:\\sjablonen");
        user.Choose("TabStrip1", 2);
        user.Type("txtBackLog", "C:\\mijn");
        user.Choose("TabStrip1", 4);
        user.Tick("chkFullExpand");
        user.Click("btnOk");
        EXPECT_TRUE(Told("De instellingen kunnen niet opgeslagen worden"));
    }));
    connection = inner;
    EXPECT_EQ(Kept("Template", "Path"), "(none)");
    EXPECT_EQ(Option("TreeSettings", "FullExpand"), "(none)") << "the options go with them";
}

} // namespace kavidex::controls
