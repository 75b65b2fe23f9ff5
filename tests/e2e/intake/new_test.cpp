// The toolbar's "Nieuw": kinds of items, files from elsewhere, and letters.
#include "tests/e2e/intake/HostWindow.h"

namespace kavidex::tests {

namespace {

struct NewDialog : HostWindow {
    void SetUp() override {
        HostWindow::SetUp();
        SelectRoot();
    }
    static void Mark(HWND list, int row) {
        ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED,
                              LVIS_SELECTED | LVIS_FOCUSED);
    }
    static void ShowTemplates(HWND dialog) {
        const HWND tabs = Visible(dialog, WC_TABCONTROLW);
        RECT page{};
        TabCtrl_GetItemRect(tabs, 1, &page);
        const LPARAM place = MAKELPARAM((page.left + page.right) / 2, (page.top + page.bottom) / 2);
        SendMessageW(tabs, WM_LBUTTONDOWN, MK_LBUTTON, place);
        SendMessageW(tabs, WM_LBUTTONUP, 0, place);
    }
    // Chooses the template at that row of the top folder.
    static User::Act Template(int row) {
        return {L"Nieuw", [row](HWND dialog) {
                    ShowTemplates(dialog);
                    Mark(Visible(dialog, WC_LISTVIEWW), row);
                    User::Press(dialog, IDOK);
                }};
    }
};

} // namespace

TEST_F(NewDialog, TakesFilesThroughTheSystemsChooser) {
    File("import\\een.pdf");
    File("import\\twee.txt");
    Setting("DossierSettings", "ImportDocumentsPath", machine.Path("import"));
    const User user({{L"Nieuw",
                      [](HWND dialog) {
                          const HWND button = Visible(dialog, L"Button", L"Bestand...");
                          PostMessageW(button, BM_CLICK, 0, 0);
                      }},
                     {L"Documenten toevoegen", [](HWND dialog) {
                          SendMessageW(Visible(dialog, L"Edit"), WM_SETTEXT, 0,
                                       reinterpret_cast<LPARAM>(L"\"een.pdf\" \"twee.txt\""));
                          User::Press(dialog, IDOK);
                      }}});
    binder->ButtonClicked("New");
    EXPECT_EQ(Outline(), "een|pdf\ntwee|txt\n");
}

TEST_F(NewDialog, MakesALetterThroughTheGenerator) {
    for (const char* name : {"fout.dot", "leeg.doc", "stuk.docx", "Uitnodiging.DOTX"})
        File(std::string("sjablonen\\") + name);
    File("sjablonen\\geen.rtf");
    Setting("Template", "Path", machine.Path("sjablonen"));
    Setting("Unique", "Number", "41");
    binder->SetValueFile(File("waarden.txt", "naam;Jansen\r\nDocumentID;1\r\n"));
    const struct {
        int row;
        const char *told, *caption;
    } refused[] = {
        {0, "Fout in samenvoegen document (7)", nullptr},
        {1, "Bestand niet gevonden", nullptr},
        {2, "The word processor does not answer.", "Error in ButttonClick of ctrlCorrespondence"},
    };
    for (const auto& row : refused) {
        machine.messages.shown.clear();
        const User user({Template(row.row)});
        binder->ButtonClicked("New");
        EXPECT_TRUE(Told(row.told)) << row.told;
        if (row.caption) {
            EXPECT_EQ(machine.messages.shown.back().caption, row.caption);
        }
        EXPECT_EQ(Outline(), "");
        EXPECT_FALSE(machine.busy.open);
    }
    {
        const User user({Template(3)});
        binder->ButtonClicked("New");
    }
    ASSERT_EQ(Outline(), "Brief van Uitnodiging|docx\n");
    EXPECT_EQ(machine.files.ReadAll(Stored("Brief van Uitnodiging")),
              "naam;Jansen\r\nDocumentId;45\r\n")
        << "every letter has a number of its own, also one that was not made";
    EXPECT_EQ(Recorded("letter.txt").substr(0, 38), "fncMergeDocument waarden.txt fout.dot\n");
    EXPECT_EQ(machine.busy.shown.back().caption, "Documenten toevoegen");
}

} // namespace kavidex::tests
