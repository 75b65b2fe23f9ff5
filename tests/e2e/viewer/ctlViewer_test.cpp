// The document viewer as a host has it: the class of the library in a container's window, with a
// scan that is paged through, turned, marked, saved and shortened.
#include <algorithm>
#include <filesystem>
#include <thread>

#include "com/controls/ctlViewerFace.h"
#include "imaging/PageFile.h"
#include "imaging/annotations/Annotations.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "tests/e2e/Windows.h"
#include "tests/e2e/com/Dossier.h"
#include "tests/fakes/SmallTiff.h"

namespace kavidex::tests {

namespace {

// Answers Yes to the question of that caption, from beside the thread that waits for it.
class Yes {
public:
    explicit Yes(std::wstring caption)
        : lclHand([caption] {
              for (DWORD waited = 0; waited < 60000; waited += 20) {
                  if (const HWND box = FindWindowW(L"#32770", caption.c_str()))
                      if (PostMessageW(box, WM_COMMAND, IDYES, 0)) return;
                  Sleep(20);
              }
          }) {}
    ~Yes() { lclHand.join(); }

private:
    std::thread lclHand;
};

class ViewerControl : public Dossiers {
protected:
    void SetUp() override {
        Dossiers::SetUp();
        Unattended(nullptr);
        tree = Late(Make(CLSID_clsTree));
        tree.PutRef(L"DbConnection", {lclConnection});
        tree.Put(L"Description", {"Dossier"});
        ASSERT_TRUE(tree.Call(L"CreateNew").ToBool());
        box = tree.Call(L"AddChildTab", {"Post", Late(tree.Get(L"Item")).Get(L"Id")});
    }
    void TearDown() override {
        tree = {};
        box = {};
        Dossiers::TearDown();
    }
    // A scan of these pages, filed; the item that stands for it.
    Variant Scan(const char* name, const std::string& pages) {
        const auto source = Path("source.tif");
        platform::TheWorkstation().files.WriteAll(source, SmallTiff(pages, 320, 480));
        const Late document(Make(CLSID_clsDocument));
        document.PutRef(L"DatabaseObject", {lclConnection});
        document.Put(L"DocType", {"tif"});
        document.Put(L"InsertDate", {"20261115"});
        document.Put(L"InsertTime", {"1405"});
        EXPECT_TRUE(document.Call(L"SaveNewRow").ToBool());
        EXPECT_TRUE(document.Call(L"AddDocument", {Variant(source), false, true}).ToBool());
        return tree.Call(L"AddChildItem", {0, "tif", Variant(static_cast<IDispatch*>(nullptr)),
                                           document.Get(L"DocId"), name, Late(box).Get(L"Id")});
    }
    imaging::PageFile Stored() const {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(lclFolder))
            if (entry.path().extension() == L".tif")
                return {platform::TheWorkstation().files,
                        platform::win32::FromWide(entry.path().wstring())};
        throw std::runtime_error("no scan was stored");
    }
    // A new viewer in the container, with room for all of its toolbar.
    Late Open(Container& host) const {
        SetWindowPos(host.window, nullptr, 10, 10, 820, 620, SWP_NOZORDER);
        host.place = {0, 0, 800, 580};
        host.Take(Make(CLSID_ctlViewer), true);
        SetForegroundWindow(host.window);
        const Late viewer(host.control);
        viewer.PutRef(L"DbConnection", {lclConnection});
        return viewer;
    }
    static HWND Window(const Container& host, const wchar_t* type) {
        return Visible(host.window, type);
    }
    // Presses the button that is called so, on whichever toolbar has it.
    static bool Press(const Container& host, const wchar_t* name) {
        for (const HWND bar : AllVisible(host.window, TOOLBARCLASSNAMEW))
            for (WPARAM i = 0; i < static_cast<WPARAM>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
                 ++i) {
                TBBUTTON button{};
                wchar_t text[128] = L"";
                SendMessageW(bar, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&button));
                SendMessageW(bar, TB_GETBUTTONTEXTW, static_cast<WPARAM>(button.idCommand),
                             reinterpret_cast<LPARAM>(text));
                if (std::wstring(text) != name || !(button.fsState & TBSTATE_ENABLED)) continue;
                SendMessageW(GetParent(bar), WM_COMMAND, static_cast<WPARAM>(button.idCommand),
                             reinterpret_cast<LPARAM>(bar));
                return true;
            }
        return false;
    }
    static bool Key(const Container& host, HWND focus, WPARAM key) {
        ::SetFocus(focus);
        MSG message{focus, WM_KEYDOWN, key, 0, 0, {}};
        return host.As<IOleInPlaceActiveObject>(IID_IOleInPlaceActiveObject)
                   ->TranslateAccelerator(&message) == S_OK;
    }
    static int Told(const Container& host, const wchar_t* name) {
        for (const auto& row : com::ViewerEventTable())
            if (std::wstring(row.name) == name)
                return static_cast<int>(
                    std::count_if(host.events.begin(), host.events.end(),
                                  [&](const auto& event) { return event.first == row.id; }));
        return -1;
    }

    Variant box;
    Late tree;
};

} // namespace

TEST_F(ViewerControl, AScanIsPagedTurnedMarkedSavedAndShortened) {
    const auto scan = Scan("Polis", std::string("\0\x0F\x33", 3)); // the first one is black
    Container host;
    const auto viewer = Open(host);
    viewer.Put(L"AnnotationsPopupShown", {true});
    viewer.Put(L"AllowMultipleDocScroll", {true});
    ASSERT_TRUE(viewer.Call(L"ShowItem", {scan}).ToBool());
    EXPECT_EQ(viewer.Get(L"Description").ToText(), "Polis");
    const HWND page = Window(host, L"KavidexPage");
    ASSERT_TRUE(page);
    EXPECT_EQ(tests::TextOf(page), "Pagina 1 van 3 pagina's");
    RECT room{};
    GetClientRect(page, &room);
    EXPECT_TRUE(PumpUntil([&] {
        const HDC device = GetDC(page);
        const COLORREF middle = GetPixel(device, room.right / 2, room.bottom / 2);
        ReleaseDC(page, device);
        return middle == RGB(0, 0, 0);
    })) << "it is on the screen";

    EXPECT_TRUE(viewer.Call(L"SetNextPage").ToBool());
    EXPECT_TRUE(viewer.Call(L"SetNextPage").ToBool());
    EXPECT_FALSE(viewer.Call(L"SetNextPage").ToBool());
    EXPECT_EQ(tests::TextOf(page), "Pagina 3 van 3 pagina's");
    EXPECT_EQ(Told(host, L"EvImageSelected"), 3);
    EXPECT_EQ(Told(host, L"NextDocumentRequest"), 1);
    EXPECT_TRUE(viewer.Call(L"SetPreviousPage").ToBool());

    ASSERT_TRUE(Press(host, L"Rechtsom draaien"));
    ASSERT_TRUE(Press(host, L"Toon annotatie toolbox"));
    ASSERT_TRUE(Press(host, L"Rechthoek"));
    GetClientRect(page, &room);
    const auto at = [&](int x, int y) {
        return MAKELPARAM(room.right / 2 + x, room.bottom / 2 + y);
    };
    SendMessageW(page, WM_LBUTTONDOWN, MK_LBUTTON, at(-30, -20));
    SendMessageW(page, WM_MOUSEMOVE, MK_LBUTTON, at(30, 20));
    SendMessageW(page, WM_LBUTTONUP, 0, at(30, 20));
    EXPECT_EQ(Stored().Facts(2).width, 320U) << "nothing is written yet";
    ASSERT_TRUE(viewer.Call(L"SaveImage").ToBool());
    EXPECT_EQ(Stored().Facts(2).width, 480U);
    const auto marks = Stored().Marks(2);
    ASSERT_TRUE(marks);
    EXPECT_EQ(imaging::annotations::Annotations(*marks).Count(), 1U);
    EXPECT_FALSE(Stored().Facts(1).hasMarks);

    EXPECT_FALSE(viewer.Get(L"ThumbsShown").ToBool());
    ASSERT_TRUE(Press(host, L"Toon miniatuur weergave"));
    EXPECT_TRUE(viewer.Get(L"ThumbsShown").ToBool());
    const HWND thumbs = Window(host, L"KavidexThumbs");
    ASSERT_TRUE(thumbs);
    EXPECT_TRUE(Key(host, thumbs, VK_END));
    EXPECT_EQ(tests::TextOf(page), "Pagina 3 van 3 pagina's");
    ASSERT_TRUE(Press(host, L"Omhoog"));
    EXPECT_EQ(Told(host, L"EvMoveUp"), 1);
    EXPECT_EQ(Stored().Facts(3).width, 480U) << "they changed places";
    EXPECT_TRUE(Key(host, thumbs, VK_END));
    {
        const Yes yes(L"Bevestigen verwijderen pagina's");
        EXPECT_TRUE(viewer.Call(L"DeleteSelectedThumbs").ToBool());
    }
    EXPECT_EQ(Stored().Count(), 2);
    EXPECT_EQ(Stored().Facts(2).width, 320U);
    EXPECT_TRUE(viewer.Call(L"CloseImage").ToBool());
    EXPECT_FALSE(Window(host, L"KavidexPage"));
}

TEST_F(ViewerControl, TheListOfAFolderTellsWhatIsChosenInIt) {
    const auto scan = Scan("Polis", "\x0F");
    Container host;
    const auto viewer = Open(host);
    ASSERT_TRUE(viewer.Call(L"ShowList", {box}).ToBool());
    const HWND list = Window(host, WC_LISTVIEWW);
    ASSERT_TRUE(list);
    EXPECT_EQ(ListView_GetItemCount(list), 1);
    EXPECT_TRUE(Key(host, list, VK_RETURN));
    ASSERT_EQ(Told(host, L"EvDocumentChosen"), 1);
    EXPECT_EQ(host.events.back().second.at(0).ToInt32(), Late(scan).Get(L"Id").ToInt32());

    // What a host keeps of it.
    viewer.Put(L"LastFit", {"width"});
    ComPtr<IStream> stream;
    CreateStreamOnHGlobal(nullptr, TRUE, stream.Put());
    ASSERT_EQ(host.As<IPersistStreamInit>(IID_IPersistStreamInit)->Save(stream.Get(), TRUE), S_OK);
    stream->Seek({}, STREAM_SEEK_SET, nullptr);
    const Late other(Make(CLSID_ctlViewer));
    ASSERT_EQ(As<IPersistStreamInit>(other.Object(), IID_IPersistStreamInit)->Load(stream.Get()),
              S_OK);
    EXPECT_EQ(other.Get(L"LastFit").ToText(), "width");
    EXPECT_EQ(other.Get(L"Description").ToText(), "Post");
    EXPECT_THROW(other.Put(L"ThumbsShown", {true}), platform::Error) << "only to be read";
}

} // namespace kavidex::tests
