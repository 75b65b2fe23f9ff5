// The registered library in a host's window, with the registered stand-ins: nothing is played here
// but the user.
#include "platform/win32/Late.h"
#include "platform/win32/ole/ControlSite.h"
#include "tests/e2e/intake/HostWindow.h"

namespace kavidex::tests {

namespace {

using platform::win32::ControlSite;
using platform::win32::Late;
using platform::win32::Variant;

struct Registered : testing::Test {
    void SetUp() override {
        OleInitialize(nullptr);
        const auto path = machine.Path("dossiers.kvx");
        {
            controls::ctrlCorrespondence maker(machine);
            const auto made = data::EmbeddedDatabase::Create(path);
            maker.SetDbConnection(made);
            On<data::clsSettings> settings(machine, made);
            settings.SetSetting("Storage", "DocumentPath", machine.Path("store"));
            settings.SetSetting("DossierSettings", "ScanQueue", machine.Path("queue"));
            machine.files.CreateDirectories(machine.Path("store"));
            maker.SetDbConnection(nullptr);
            settings.SetDbConnection(nullptr);
            made->Close();
        }
        host = CreateWindowExW(0, L"#32770", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20,
                               1000, 700, nullptr, nullptr, nullptr, nullptr);
        site = new ControlSite(host);
        site->Open(L"Kavidex.ctrlCorrespondence", {0, 0, 960, 640});
        connection =
            Late::Create("Kavidex.EmbeddedDatabase").Call(L"OpenOrCreate", {Variant(path)});
        Binder().PutRef(L"DbConnection", {connection});
        ASSERT_EQ(Binder()
                      .Call(L"OpenOrCreate", {Variant("key"), Variant("Dossier"), Variant(""),
                                              Variant(""), Variant("")})
                      .ToInt32(),
                  0);
    }
    void TearDown() override {
        Binder().Call(L"CloseObject");
        site->Close();
        site->Release();
        Late(connection).Call(L"Close");
        connection = Variant();
        DestroyWindow(host);
        OleUninitialize();
    }
    Late Binder() const { return Late(ComPtr<IDispatch>(site->Control())); }
    std::int32_t Documents() const {
        return Binder().Get(L"ContainsDocuments", {Variant("")}).ToInt32();
    }
    std::string File(std::string_view name, std::string_view bytes) {
        const auto path = machine.Path(name);
        machine.files.CreateDirectories(platform::FolderOf(path));
        machine.files.WriteAll(path, bytes);
        return path;
    }

    FakeWorkstation machine;
    HWND host = nullptr;
    ControlSite* site = nullptr;
    Variant connection;
};

} // namespace

TEST_F(Registered, TakesADropAndAScanQueue) {
    const HWND tree = Visible(host, WC_TREEVIEWW);
    ASSERT_TRUE(tree);
    auto* const target = static_cast<IDropTarget*>(GetPropW(tree, L"OleDropTargetInterface"));
    ASSERT_TRUE(target);
    RECT place{};
    TreeView_GetItemRect(tree, TreeView_GetRoot(tree), &place, TRUE);
    POINT point{place.left + 5, place.top + 5};
    ClientToScreen(tree, &point);
    controls::DropData data;
    data.hasFiles = true;
    data.files = {File("brief.txt", "inhoud"), File("scan.tif", SmallTiff("ab"))};
    const auto object = platform::win32::MakeDataObject(data);
    DWORD effect = DROPEFFECT_COPY;
    target->DragEnter(object.Get(), 0, {point.x, point.y}, &effect);
    ASSERT_EQ(effect, DWORD{DROPEFFECT_COPY});
    target->Drop(object.Get(), 0, {point.x, point.y}, &effect);
    EXPECT_EQ(effect, DWORD{DROPEFFECT_COPY});
    EXPECT_EQ(Documents(), 2);
    EXPECT_EQ(TreeView_GetCount(tree), 3U);

    const auto waiting = File("queue\\key\\a.tif", SmallTiff("a"));
    TreeView_SelectItem(tree, TreeView_GetRoot(tree));
    {
        const User user(
            {{L"Controle op bestaande documenten", [](HWND box) { User::Press(box, IDYES); }}});
        EXPECT_EQ(Binder().Call(L"fncCheckDocumentQueue", {Variant("")}).ToInt32(), 0);
    }
    const HWND import = Visible(host, L"Button", L"Importeren");
    ASSERT_TRUE(import) << "the scanning control stands in the viewer's place";
    SendMessageW(import, BM_CLICK, 0, 0);
    EXPECT_EQ(Documents(), 3);
    EXPECT_FALSE(machine.files.FileExists(waiting));
}

} // namespace kavidex::tests
