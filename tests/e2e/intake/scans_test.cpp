// The scanning control in the viewer's place, and what waits in the folders of devices.
#include "tests/e2e/intake/HostWindow.h"

namespace kavidex::tests {

namespace {

// As on a workstation without the scanning control, for as long as this lives.
class NoScanner {
public:
    NoScanner() { Name(L"{00000000-0000-0000-0000-00000000F00D}"); }
    ~NoScanner() { Name(L"{70604CFB-7E37-4C0B-8FBA-5A3C9C6C143A}"); }

private:
    static void Name(const std::wstring& clsid) {
        RegSetKeyValueW(HKEY_CLASSES_ROOT, L"Tessaro.ctrlScan\\CLSID", nullptr, REG_SZ,
                        clsid.c_str(), static_cast<DWORD>((clsid.size() + 1) * sizeof(wchar_t)));
    }
};

struct Scans : HostWindow {
    std::string ScanTooltip() {
        for (const auto& item : binder->Toolbar())
            if (item.name == "Scan") return item.tooltip;
        return {};
    }
    void Press(const wchar_t* button) {
        const HWND window = Part(L"Button", button);
        ASSERT_TRUE(window) << FromWide(button);
        SendMessageW(window, BM_CLICK, 0, 0);
    }
};

} // namespace

TEST_F(Scans, TheControlTakesTheViewersPlaceAndItsDocumentsAreFiled) {
    binder->SetAlternateScanSetting("Kleur");
    binder->ButtonClicked("Scan");
    EXPECT_TRUE(Part(L"ScanControlDouble"));
    EXPECT_FALSE(Part(L"KavidexViewer"));
    EXPECT_EQ(ScanTooltip(), "Sluit de scanmodule");
    EXPECT_EQ(Recorded("scan.txt"),
              "StartScan\nEditSettings\nTransportBatches\nAlternateScanSetting Kleur\n");
    RECT area{};
    GetClientRect(host, &area);
    control->Place({0, 0, 900, 600});
    RECT place{};
    GetWindowRect(Part(L"ScanControlDouble"), &place);
    MapWindowPoints(nullptr, control->Handle(), reinterpret_cast<POINT*>(&place), 2);
    EXPECT_EQ(place.right, 900) << "it follows the control's size";

    const auto first = File("1.tif", SmallTiff("ab")), second = File("2.tif", SmallTiff("c"));
    File("scanned.txt", first + "\n" + second + "\n");
    Press(L"Scannen");
    EXPECT_TRUE(Told("Selecteer een map om het document op te bergen"));
    EXPECT_EQ(Outline(), "");
    SelectRoot();
    EXPECT_EQ(Outline(), "Gescand document|tif\nGescand document|tif\n");
    EXPECT_FALSE(machine.files.FileExists(first)) << "its copy is in the store";
    EXPECT_FALSE(Part(L"ScanControlDouble"));
    EXPECT_TRUE(Part(L"KavidexViewer"));
    EXPECT_EQ(ScanTooltip(), "Open de scanmodule");
}

TEST_F(Scans, WithoutTheControlTheButtonTellsWhatIsMissing) {
    const NoScanner without;
    binder->ButtonClicked("Scan");
    EXPECT_TRUE(Told("De scanmodule (Tessaro.ctrlScan) kan niet geopend worden"));
    EXPECT_TRUE(Part(L"KavidexViewer"));
    EXPECT_EQ(ScanTooltip(), "Open de scanmodule");
}

TEST_F(Scans, TheControlGoesWithTheHostsWindow) {
    binder->ButtonClicked("Scan");
    DestroyWindow(host);
    EXPECT_EQ(ScanTooltip(), "Open de scanmodule");
    host = CreateWindowExW(0, L"#32770", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 1000,
                           700, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(control->Create(host, {0, 0, 960, 640}));
    EXPECT_TRUE(Part(L"KavidexViewer"));
    binder->ButtonClicked("Scan");
    EXPECT_TRUE(Part(L"ScanControlDouble"));
}

TEST_F(Scans, TheQueueGoesThroughTheControlOneFolderAtATime) {
    Setting("DossierSettings", "ScanQueue", machine.Path("queue"));
    Setting("DossierSettings", "ImportDocumentsPath", machine.Path("import"));
    const auto first = File("queue\\key\\a.tif", SmallTiff("a"));
    const auto second = File("import\\key\\b.tif", SmallTiff("b"));
    machine.messages.shown.clear();
    EXPECT_EQ(binder->fncCheckDocumentQueue({}), 0);
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].caption, "Controle op bestaande documenten");
    EXPECT_NE(Recorded("scan.txt").find("ImportFolder key\n"), std::string::npos);
    SelectRoot(); // that closes the control
    EXPECT_EQ(binder->fncCheckDocumentQueue({}), 0);
    Press(L"Importeren");
    EXPECT_EQ(Outline(), "Gescand document|tif\n");
    EXPECT_FALSE(machine.files.FileExists(first));
    EXPECT_TRUE(machine.files.FileExists(second));
    EXPECT_EQ(binder->fncCheckDocumentQueue({}), 0);
    Press(L"Importeren");
    EXPECT_FALSE(machine.files.FileExists(second));
    EXPECT_EQ(Outline(), "Gescand document|tif\nGescand document|tif\n");
}

TEST_F(Scans, WithoutTheControlTheFolderIsAskedForAndTheQueueFiledFromHere) {
    const NoScanner without;
    Setting("DossierSettings", "ScanQueue", machine.Path("queue"));
    const auto scan = File("queue\\key\\a.tif", SmallTiff("a"));
    const auto written = File("queue\\key\\b.tif", SmallTiff("b"));
    const HANDLE device = CreateFileW(ToWide(written).c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(device, INVALID_HANDLE_VALUE);
    ASSERT_TRUE(binder->AddItem(0, "tab", nullptr, 0, "Scans", 0));
    {
        const User user({{L"Map kiezen", [](HWND dialog) { User::Press(dialog, IDCANCEL); }}});
        EXPECT_EQ(binder->fncCheckDocumentQueue({}), 0);
    }
    EXPECT_TRUE(machine.files.FileExists(scan));
    const User user({{L"Map kiezen", [](HWND dialog) {
                          const HWND tree = Visible(dialog, WC_TREEVIEWW);
                          TreeView_SelectItem(tree,
                                              TreeView_GetChild(tree, TreeView_GetRoot(tree)));
                          User::Press(dialog, IDOK);
                      }}});
    EXPECT_EQ(binder->fncCheckDocumentQueue({}), 0);
    CloseHandle(device);
    EXPECT_EQ(Outline(), "Scans|tab\n.Gescand document|tif\n");
    EXPECT_FALSE(machine.files.FileExists(scan));
    EXPECT_TRUE(Told(written + ": in gebruik bij een ander programma"));
    EXPECT_TRUE(machine.files.FileExists(written)) << "the next look takes it in whole";
}

TEST_F(Scans, WhatTheControlHandsOverOnBeingClosedIsFiledInItsDossier) {
    SelectRoot();
    const auto open = [&](const char* name) {
        binder->ButtonClicked("Scan");
        ASSERT_TRUE(Part(L"ScanControlDouble"));
        File("scanned.txt.late", File(name, SmallTiff(name)) + "\n");
    };
    open("1.tif");
    binder->ButtonClicked("Scan");
    EXPECT_EQ(Outline(), "Gescand document|tif\n");
    open("2.tif");
    ASSERT_EQ(Open("other"), 0);
    EXPECT_EQ(Outline(), "");
    ASSERT_EQ(Open("key"), 0);
    SelectRoot();
    EXPECT_EQ(Outline(), "Gescand document|tif\nGescand document|tif\n");
    open("3.tif");
    DestroyWindow(host);
    EXPECT_EQ(Outline(), "Gescand document|tif\nGescand document|tif\nGescand document|tif\n");
    for (const char* name : {"1.tif", "2.tif", "3.tif"})
        EXPECT_FALSE(machine.files.FileExists(machine.Path(name))) << name;
}

TEST_F(Scans, ABacklogLeavesAnImageThatADeviceStillWrites) {
    Setting("BackLogSettings", "Path", machine.Path("backlog"));
    File("backlog\\000000004711\\1.tif", SmallTiff("a"));
    const auto written = File("backlog\\000000004711\\2.tif", SmallTiff("b"));
    const HANDLE device = CreateFileW(ToWide(written).c_str(), GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(device, INVALID_HANDLE_VALUE);
    ASSERT_EQ(Open("4711"), 0);
    CloseHandle(device);
    EXPECT_TRUE(Told(written + ": in gebruik bij een ander programma"));
    const auto folder = Outline().substr(0, Outline().find('|'));
    EXPECT_EQ(Outline(), folder + "|tab\n.1|tif\n");
    ASSERT_EQ(Open("4711"), 0);
    EXPECT_EQ(Outline(), folder + "|tab\n.1|tif\n.2|tif\n");
}

} // namespace kavidex::tests
