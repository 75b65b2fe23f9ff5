// Documents of a dossier sent by mail: through the stand-in mail program and back into the dossier,
// through the session and message controls, and through the system's simple mail function.
#include <windows.h>

#include <ole2.h>

#include <gtest/gtest.h>

#include "com/controls/ctrlCorrespondenceFace.h"
#include "com/controls/ctrlTreeFace.h"
#include "controls/mailing/DossierMail.h"
#include "controls/mailing/FileInTree.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/NoteFile.h"
#include "mail/win32/MakeMailRoads.h"
#include "platform/General.h"
#include "platform/Shell.h"
#include "platform/text.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"
#include "tests/e2e/doubles/Factories.h"
#include "tests/e2e/doubles/SendingProgram.h"
#include "tests/e2e/viewer/Archive.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/SmallTiff.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::tests {

namespace {

using namespace kavidex::controls;
using platform::win32::ToWide;

// A value of the registry as long as this lives; a key that it made goes again.
class RegistryValue {
public:
    RegistryValue(HKEY root, const wchar_t* path, const wchar_t* name, const std::wstring& value)
        : lclRoot(root), lclPath(path), lclName(name) {
        wchar_t before[512];
        DWORD size = sizeof before;
        lclHadValue = RegGetValueW(root, path, name, RRF_RT_REG_SZ, nullptr, before, &size) == 0;
        if (lclHadValue) lclBefore = before;
        HKEY key = nullptr;
        lclHadKey = RegOpenKeyExW(root, path, 0, KEY_READ, &key) == 0;
        if (lclHadKey) RegCloseKey(key);
        Write(value);
    }
    ~RegistryValue() {
        if (!lclHadKey)
            RegDeleteTreeW(lclRoot, lclPath.c_str());
        else if (lclHadValue)
            Write(lclBefore);
        else
            RegDeleteKeyValueW(lclRoot, lclPath.c_str(), lclName.c_str());
    }
    RegistryValue(const RegistryValue&) = delete;
    RegistryValue& operator=(const RegistryValue&) = delete;

private:
    void Write(const std::wstring& value) const {
        EXPECT_EQ(RegSetKeyValueW(lclRoot, lclPath.c_str(), lclName.c_str(), REG_SZ, value.c_str(),
                                  static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t))),
                  ERROR_SUCCESS);
    }
    HKEY lclRoot;
    std::wstring lclPath, lclName, lclBefore;
    bool lclHadValue = false, lclHadKey = false;
};

// The prompt tool, as far as it can be seen from outside.
class PromptWindow {
public:
    PromptWindow() {
        WNDCLASSW description{};
        description.lpfnWndProc = Procedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.lpszClassName = L"KavidexTestPrompts";
        RegisterClassW(&description);
        lclWindow = CreateWindowExW(0, description.lpszClassName, L"Express ClickYes", WS_POPUP, 0,
                                    0, 1, 1, nullptr, nullptr, description.hInstance, nullptr);
    }
    ~PromptWindow() { DestroyWindow(lclWindow); }
    PromptWindow(const PromptWindow&) = delete;
    PromptWindow& operator=(const PromptWindow&) = delete;

    // What it was told since, in letters: p to pause, r to go on.
    std::string Told() {
        MSG message;
        while (PeekMessageW(&message, lclWindow, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        return std::exchange(told, {});
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
        static const UINT signal = RegisterWindowMessageW(L"CLICKYES_SUSPEND_RESUME");
        if (message == signal) told += w == 0 ? 'p' : 'r';
        return DefWindowProcW(window, message, w, l);
    }
    static inline std::string told;
    HWND lclWindow = nullptr;
};

struct SentMails : testing::Test {
    struct Apartment {
        Apartment() { OleInitialize(nullptr); }
        ~Apartment() { OleUninitialize(); }
    } apartment;
    FakeWorkstation machine;
    const std::string temporary = machine.Path("temp");
    Archive archive{machine, machine.Path("store")};
    ctrlTree tree{machine};
    std::unique_ptr<DossierMail> sender;
    std::unique_ptr<PromptWindow> prompts = std::make_unique<PromptWindow>();
    std::unique_ptr<OwnTemporaryFolder> own;
    std::int32_t scan = 0, note = 0, letter = 0;

    void SetUp() override {
        Script() = {};
        machine.guids.real = true;
        machine.shell.mailClient = "Microsoft Outlook ";
        machine.files.CreateDirectories(temporary);
        own = std::make_unique<OwnTemporaryFolder>(temporary);
        scan = archive.Document("tif", "Aanvraag 12-3", SmallTiff("ab"))->Id();
        note = archive.Document("nnt", "Notitie", WriteNote("Gemaakt door", "Één €"))->Id();
        letter = archive.Document("doc", "Brief", "bytes")->Id();
        archive.tree.AddChildTab("Verzonden", archive.tree.Item()->Id());
        tree.SetDbConnection(archive.database);
        tree.SetTreeId(archive.tree.TreeId());
        sender = std::make_unique<DossierMail>(
            machine, mail::win32::MakeMailRoads(machine),
            [this](const SentMail& mail) { FileInTree(machine, tree, mail); });
        tree.SetMailSender(sender.get());
        tree.SetEmailAddress("jan@example.nl");
    }
    void TearDown() override {
        EXPECT_TRUE(machine.files.List(temporary, "*", true).empty())
            << "what is made for a mail goes with it";
        own.reset();
    }
    void Mail(const std::vector<std::int32_t>& ids) {
        machine.messages.shown.clear();
        tree.ClearSelectedItems();
        tree.SetHighLightToItem(ids.front());
        if (ids.size() > 1)
            for (const auto id : ids) tree.NodeChecked(id, true);
        auto menu = tree.PrepareMenu(ids.front());
        const auto* entry = FindEntry(menu, "mnuMail");
        ASSERT_TRUE(entry->visible && entry->enabled);
        tree.ChooseMenu(*entry);
    }
    std::string Told() const {
        std::string all;
        for (const auto& one : machine.messages.shown) all += one.caption + ": " + one.text + "\n";
        return all;
    }
};

} // namespace

TEST_F(SentMails, GoThroughTheProgramAndComeBackUnderTheirSubject) {
    const ClassUnder<SendingProgramDouble> program(L"outlook.Application");
    ASSERT_TRUE(program.Registered());
    platform::SaveRegSetting(machine, platform::applicationName, "Mail", "Folder", "verzonden");
    platform::SaveRegSetting(machine, platform::applicationName, "Mail", "Body", "Groet");
    platform::SaveRegSetting(machine, platform::applicationName, "Email", "FormatText", "2");
    auto& script = Script();
    script.subject = "a/b:c?";
    script.appearsAt = 6; // it takes its time
    std::string beginnings, toldWhileShown;
    script.whileShown = [&] {
        toldWhileShown = prompts->Told();
        for (const auto& folder : machine.files.List(temporary, "*", true))
            for (const auto& file :
                 machine.files.List(platform::JoinPath(temporary, folder), "*.pdf", false))
                beginnings +=
                    machine.files
                        .ReadAll(platform::JoinPath(platform::JoinPath(temporary, folder), file))
                        .substr(0, 5);
    };
    Mail({scan, note, letter});
    EXPECT_EQ(script.Calls(),
              "GetNamespace mapi\nCreateItem 0\nRecipients.Add jan@example.nl\n"
              "Subject Emailing:\nBodyFormat 2\nBody Groet\n"
              "Attachments.Add Aanvraag 12 3.pdf 1 1 Aanvraag 12 3.pdf\n"
              "Attachments.Add Notitie.pdf 1 1 Notitie.pdf\n"
              "Attachments.Add Brief.doc 1 1 Brief.doc\n"
              "SaveSentMessageFolder\nGetFolderFromID sent-1\nItems.Count\n"
              "UserProperties.Add UniqueIndex 1\nUserProperty.Value\nDisplay modal\nSent\n"
              "Items.Count\nItems.Item 4\nUserProperties.Find UniqueIndex\n"
              "SaveAs a b c?.msg 3\nSaveAs a b c.msg 3\n")
        << Told();
    EXPECT_EQ(beginnings, "%PDF-%PDF-");
    EXPECT_EQ(toldWhileShown + prompts->Told(), "pr");
    EXPECT_EQ(Told(), "Bevestigen opslaan verzonden mail: Wilt u de verzonden mail opslaan?\n");
    const auto filed = tree.GetItem(0, "a b c");
    ASSERT_TRUE(filed);
    EXPECT_EQ(tree.GetParent(filed->Id())->Description(), "Verzonden");
    EXPECT_EQ(machine.files.ReadAll(archive.FileOf(filed)), "saved mail");
}

TEST_F(SentMails, AProgramThatDiesIsToldAndWhatIsNotSentIsNotAskedFor) {
    const ClassUnder<SendingProgramDouble> program(L"outlook.Application");
    const auto before = tree.AllItems().size();
    for (const char* step : {"GetNamespace", "CreateItem", "Attachments.Add", "Display"}) {
        Script() = {};
        Script().diesAt = step;
        Mail({letter});
        EXPECT_TRUE(Told().starts_with("Error sending mail: ") && Told().ends_with("RPC server\n"))
            << step << ": " << Told();
        EXPECT_EQ(prompts->Told(), "pr") << step;
    }
    Script() = {};
    Script().whileShown = [] { Script().diesAt = "Items.Count"; }; // once the mail is out
    Mail({letter});
    EXPECT_EQ(Told(), "");
    EXPECT_TRUE(machine.log.Has("Mail", "not retrieved"));
    Script() = {};
    Script().sends = false;
    Mail({letter});
    EXPECT_EQ(Told(), "");
    prompts.reset(); // the tool does not run
    Script() = {};
    Script().byNext = true;
    Mail({letter});
    EXPECT_EQ(machine.messages.shown.size(), 1u) << Told();
    EXPECT_EQ(tree.AllItems().size(), before + 1);
}

TEST_F(SentMails, GoThroughTheSessionAndMessageControlsWhereTheyAre) {
    machine.shell.mailClient = "Tobit";
    const RegistryValue session(HKEY_CLASSES_ROOT, L"MSMAPI.MAPISession\\CLSID", L"",
                                L"{6C2C1E38-9C0B-4B0C-8D1A-0D8A1A6B7F01}"),
        messages(HKEY_CLASSES_ROOT, L"MSMAPI.MAPIMessages\\CLSID", L"",
                 L"{6C2C1E38-9C0B-4B0C-8D1A-0D8A1A6B7F02}");
    const ClassUnder<MailSessionDouble> sessions(L"MSMAPI.MAPISession");
    const ClassUnder<MailMessagesDouble> composers(L"MSMAPI.MAPIMessages");
    ASSERT_TRUE(sessions.Registered() && composers.Registered());
    platform::SaveRegSetting(machine, platform::applicationName, "Mail", "Body", "Groet");
    Mail({letter, scan});
    EXPECT_EQ(Script().Calls(),
              "LogonUI on\nDownLoadMail off\nSignOn\nSessionID 7\nMsgIndex -1\nCompose\n"
              "RecipIndex 0\nRecipType 1\nRecipDisplayName jan@example.nl\n"
              "RecipAddress SMTP:jan@example.nl\nMsgSubject Emailing:\nMsgNoteText Groet\r\n  \n"
              "AttachmentIndex 0\nAttachmentType 0\nAttachmentPosition 7\n"
              "AttachmentPathName Brief.doc\nAttachmentName Brief.doc\n"
              "AttachmentIndex 1\nAttachmentType 0\nAttachmentPosition 8\n"
              "AttachmentPathName Aanvraag 12 3.pdf\nAttachmentName Aanvraag 12 3.pdf\n"
              "Send with dialog\nSignOff\n");
    EXPECT_EQ(Told(), "");
    Script() = {};
    Script().aborted = true;
    Mail({letter});
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(Script().calls.back(), "SignOff");
    Script() = {};
    Script().logonFails = true;
    Mail({letter});
    EXPECT_EQ(Told(), "Mailen: Aanmelden voor email mislukt!\n");
    EXPECT_EQ(Script().calls.back(), "SignOn");
}

TEST_F(SentMails, GoThroughTheSystemsFunctionWhereThereAreNoControls) {
    constexpr wchar_t clients[] = L"Software\\Clients\\Mail";
    const RegistryValue program(HKEY_LOCAL_MACHINE, clients, L"", L"Kavidex test"),
        library(HKEY_LOCAL_MACHINE, (std::wstring(clients) + L"\\Kavidex test").c_str(), L"DLLPath",
                ToWide(KAVIDEX_SIMPLE_MAIL));
    machine.shell.mailClient = platform::TheWorkstation().shell.MailClient();
    ASSERT_EQ(machine.shell.mailClient, "Kavidex test");
    const auto record = machine.Path("calls.txt");
    SetEnvironmentVariableW(L"KAVIDEX_MAIL_RECORD", ToWide(record).c_str());
    const HWND host = CreateWindowExW(0, L"#32770", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                      200, 200, nullptr, nullptr, nullptr, nullptr);
    platform::win32::SetOwner(host);
    const auto sent = [&](const wchar_t* answer) {
        SetEnvironmentVariableW(L"KAVIDEX_MAIL_ANSWER", answer);
        if (machine.files.FileExists(record)) machine.files.Remove(record);
        Mail({letter, scan});
        return machine.files.ReadAll(record);
    };
    const std::string rest = " flags 9: Emailing:||jan@example.nl SMTP:jan@example.nl|Brief.doc|"
                             "Aanvraag 12 3.pdf|alive\n";
    EXPECT_EQ(sent(L"0"), "wide" + rest);
    EXPECT_EQ(Told(), "");
    EXPECT_TRUE(IsWindowEnabled(host));
    EXPECT_EQ(sent(L"1"), "wide" + rest);
    EXPECT_EQ(Told(), "") << "the user closed it";
    EXPECT_EQ(sent(L"3"), "wide" + rest);
    EXPECT_EQ(Told(), "Mailen: Aanmelden voor email mislukt!\n");
    EXPECT_EQ(sent(L"2"), "wide" + rest);
    EXPECT_TRUE(Told().starts_with("Error sending mail: ") &&
                Told().ends_with("The mail program answered 2\n"))
        << Told();
    EXPECT_EQ(sent(L"26"), "wide" + rest);
    EXPECT_NE(Told().find("geen e-mailprogramma"), std::string::npos) << Told();
    EXPECT_EQ(sent(L"27"), "wide" + rest + "narrow" + rest) << "a program without wide letters";
    platform::win32::SetOwner(nullptr);
    DestroyWindow(host);
}

TEST_F(SentMails, BothControlsOfferThem) {
    const auto offers = [&](ctrlTree& control) {
        control.SetHighLightToItem(letter);
        auto menu = control.PrepareMenu(letter);
        return FindEntry(menu, "mnuMail")->visible && FindEntry(menu, "mnuMailPdf")->enabled;
    };
    auto* const alone = new com::ctrlTreeFace;
    const auto first = com::ComPtr<IDispatch>::Attach(alone);
    alone->Logic().SetDbConnection(archive.database);
    alone->Logic().SetTreeId(archive.tree.TreeId());
    EXPECT_TRUE(offers(alone->Logic()));
    auto* const binder = new com::ctrlCorrespondenceFace;
    const auto second = com::ComPtr<IDispatch>::Attach(binder);
    binder->Logic().SetDbConnection(archive.database);
    binder->Logic().SetId(archive.tree.TreeId());
    EXPECT_TRUE(offers(binder->Logic().treCorr()));
}

} // namespace kavidex::tests
