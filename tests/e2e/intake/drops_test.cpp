// What is dropped on the tree and on the list of documents.
#include "tests/e2e/intake/HostWindow.h"

namespace kavidex::tests {

namespace {

struct Drops : HostWindow {
    static controls::DropData Mail() { // what the mail program's window offers
        controls::DropData data;
        data.hasText = true;
        data.text = "Van Onderwerp Ontvangen";
        return data;
    }
    std::vector<std::string> Row(const std::string& of) {
        const auto rows = binder->DbConnection()->Open(
            {"select SendTo, SendFrom, SendOn, RecievedOn, NrOfAttatchements from "
             "tblDocExtraInfo where DocId = " +
             std::to_string(Item(of)->ItemId())});
        std::vector<std::string> row;
        for (std::size_t i = 0; i < 5; ++i) row.push_back(data::ToText(rows->Get(i)));
        return row;
    }
};

} // namespace

TEST_F(Drops, FilesAndFoldersAndFilesOfOtherProgramsAreFiled) {
    const auto letter = File("Brief é.txt");
    File("Post\\a.txt");
    File("Post\\Oud\\b.pdf");
    EXPECT_EQ(DropOnTop(Files({letter, machine.Path("Post")})), DWORD{DROPEFFECT_COPY});
    EXPECT_TRUE(Told("Wilt u 'Post' met alle onderliggende mappen"));
    EXPECT_EQ(Outline(), "Brief é|txt\nPost|tab\n.a|txt\n.Oud|tab\n..b|pdf\n");
    EXPECT_EQ(TreeView_GetCount(Tree()), 6U) << "the window shows them";

    controls::DropData offered;
    offered.virtualFiles = {{"Foto.jpg", [] { return std::string(70000, 'f'); }},
                            {"map\\Kaart.txt", [] { return std::string("kaart"); }},
                            {"weg.txt", []() -> std::string {
                                 throw platform::Error(platform::errors::fail, "gone");
                             }}};
    EXPECT_EQ(Drop(Tree(), offered,
                   Middle(TreeView_GetNextSibling(
                       Tree(), TreeView_GetChild(Tree(), TreeView_GetRoot(Tree()))))),
              DWORD{DROPEFFECT_COPY});
    EXPECT_EQ(Outline(),
              "Brief é|txt\nPost|tab\n.a|txt\n.Oud|tab\n..b|pdf\n.Foto|jpg\n.Kaart|txt\n");
    EXPECT_TRUE(Told("weg.txt: niet opgeslagen"));
    EXPECT_EQ(machine.files.ReadAll(Stored("Foto")), std::string(70000, 'f'));
    EXPECT_TRUE(machine.files.List(machine.Path("temp"), "*", false).empty())
        << "no copy is left behind";
}

TEST_F(Drops, TheListOfDocumentsTakesThemAsTheTreeDoes) {
    ASSERT_EQ(DropOnTop(Files({File("Post\\a.txt")})), DWORD{DROPEFFECT_COPY});
    ASSERT_TRUE(binder->AddItem(0, "tab", nullptr, 0, "Map", 0));
    TreeView_SelectItem(Tree(), TreeView_GetNextSibling(
                                    Tree(), TreeView_GetChild(Tree(), TreeView_GetRoot(Tree()))));
    const HWND list = Visible(Part(L"KavidexViewer"), WC_LISTVIEWW);
    ASSERT_TRUE(list);
    POINT middle{40, 60};
    ClientToScreen(list, &middle);
    EXPECT_EQ(Drop(list, Files({File("b.txt")}), middle), DWORD{DROPEFFECT_COPY});
    EXPECT_EQ(Outline(), "a|txt\nMap|tab\n.b|txt\n");
    EXPECT_EQ(ListView_GetItemCount(Visible(Part(L"KavidexViewer"), WC_LISTVIEWW)), 1);
    TreeView_SelectItem(Tree(), TreeView_GetChild(Tree(), TreeView_GetRoot(Tree())));
    EXPECT_EQ(Drop(Part(L"KavidexViewer"), Files({File("c.txt")}), middle), DWORD{DROPEFFECT_NONE})
        << "a document that is shown takes nothing";
    EXPECT_EQ(Outline(), "a|txt\nMap|tab\n.b|txt\n");
}

TEST_F(Drops, WhatCannotBeReadIsNamedAndTheRestIsFiled) {
    const auto held = File("vast.txt"), tooLong = machine.Path(std::string(300, 'x') + ".txt");
    const HANDLE other = CreateFileW(ToWide(held).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    DropOnTop(Files({File("eerst.txt"), held, machine.Path("weg.txt"), machine.Path("con.txt"),
                     tooLong, File("laatst.txt")}));
    CloseHandle(other);
    EXPECT_EQ(Outline(), "eerst|txt\nlaatst|txt\n");
    EXPECT_TRUE(Told("Document zijn niet correct toegevoegd (Fout -4)"));
    EXPECT_TRUE(Told(held + ": in gebruik bij een ander programma"));
    for (const char* name : {"weg.txt", "con.txt"})
        EXPECT_TRUE(Told("Bestand niet gevonden: " + machine.Path(name)));
    EXPECT_TRUE(Told("Bestand niet gevonden: " + tooLong));
    EXPECT_TRUE(machine.files.FileExists(held));
}

TEST_F(Drops, MailsOfTheMailProgramComeUnderTheirSubjects) {
    File("selection.txt", "mail|Polis 1\nmail|Polis 1\nother|Afspraak\nmail|\nmail|Re: a/b?\n");
    EXPECT_EQ(DropOnTop(Mail()), DWORD{DROPEFFECT_COPY});
    EXPECT_EQ(Outline(), "Polis 1|msg\nPolis 1 (1)|msg\nLeeg onderwerp 4|msg\nRe  a b |msg\n");
    EXPECT_TRUE(Told("Afspraak: niet opgeslagen"));
    EXPECT_TRUE(Recorded("mail.txt")
                    .starts_with("Application.ActiveExplorer\nMailItem.SaveAs Polis 1.msg as 3\n"
                                 "MailItem.SaveAs Polis 1 (1).msg as 3\n"));
    // The program knows a mail whose file's name ends in 1.msg.
    EXPECT_EQ(Row("Polis 1"), (std::vector<std::string>{"J. Jansen", "Schadedienst",
                                                        "202611140930"
                                                        "5",
                                                        "20261114093005", "2"}));
    EXPECT_EQ(Row("Re  a b ")[0], "Not retrieved");
    EXPECT_TRUE(machine.log.Has("MailInfo", "Error retrieving SendTo"));
    EXPECT_TRUE(machine.files.List(machine.Path("temp"), "*", false).empty());
}

TEST_F(Drops, AttachmentsAreAskedForOneByOne) {
    File("selection.txt", "mail|Schade|foto.jpg;nota.pdf;foto.jpg\n");
    machine.messages.answers = {platform::Answer::Yes, platform::Answer::No, platform::Answer::Yes};
    EXPECT_EQ(DropOnTop(Mail()), DWORD{DROPEFFECT_COPY});
    EXPECT_TRUE(Told("Wilt u de bijlage 'Bijlage nota.pdf' opnemen in het dossier?"));
    EXPECT_EQ(Outline(), "Schade|msg\nfoto|jpg\nfoto (1)|jpg\n");
    // An open mail alone, without the program's main window.
    File("selection.txt", "mail|Schade|kaart.txt\ninspector\nno explorer\n");
    EXPECT_EQ(DropOnTop(Mail()), DWORD{DROPEFFECT_COPY});
    EXPECT_EQ(Outline(), "Schade|msg\nfoto|jpg\nfoto (1)|jpg\nkaart|txt\n");
}

TEST_F(Drops, AMailProgramThatCannotBeAskedAddsNothing) {
    const char* const told = "Uw mail moet eerst gekopieerd worden naar de verkenner";
    File("selection.txt", "mail|Een\ndies|Twee\n");
    EXPECT_EQ(DropOnTop(Mail()), DWORD{DROPEFFECT_NONE});
    EXPECT_TRUE(Told(told));
    machine.shell.mailClient = "Ander programma";
    EXPECT_EQ(DropOnTop(Mail()), DWORD{DROPEFFECT_NONE});
    EXPECT_TRUE(Told(told));
    EXPECT_EQ(Outline(), "");
    EXPECT_TRUE(machine.files.List(machine.Path("temp"), "*", false).empty());
}

} // namespace kavidex::tests
