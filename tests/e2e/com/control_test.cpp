// The controls in a container: activation, size, focus, keys, drawing, events, and all of it
// undone.
#include "Container.h"
#include "com/class_table.h"
#include "kavidex_idl.h"

namespace kavidex::tests {

namespace {

class Controls : public Library, public testing::WithParamInterface<const CLSID*> {
protected:
    ComPtr<IDispatch> Control() const { return Make(*GetParam()); }
    static ComPtr<IOleObject> Ole(const Container& host) {
        return host.As<IOleObject>(IID_IOleObject);
    }
    static HRESULT Verb(const Container& host, LONG verb) {
        return Ole(host)->DoVerb(verb, nullptr, host.Site(), 0, host.window, &host.place);
    }
};

bool HasInk(HDC device, int width, int height, COLORREF blank) {
    for (int y = 0; y < height; y += 2)
        for (int x = 0; x < width; x += 2)
            if (GetPixel(device, x, y) != blank) return true;
    return false;
}

// A picture of 100 by 80 pixels, first all in a colour that no control uses.
struct Canvas {
    static constexpr COLORREF blank = RGB(255, 0, 255);
    HDC device = CreateCompatibleDC(nullptr);
    HBITMAP bitmap;
    HGDIOBJ before;
    Canvas() {
        const HDC screen = GetDC(nullptr);
        bitmap = CreateCompatibleBitmap(screen, 100, 80);
        ReleaseDC(nullptr, screen);
        before = SelectObject(device, bitmap);
        const HBRUSH brush = CreateSolidBrush(blank);
        const RECT all{0, 0, 100, 80};
        FillRect(device, &all, brush);
        DeleteObject(brush);
    }
    ~Canvas() {
        SelectObject(device, before);
        DeleteObject(bitmap);
        DeleteDC(device);
    }
};

} // namespace

TEST_P(Controls, ActivateInPlaceFollowTheirRectangleAndLeaveNoWindow) {
    Container host;
    host.Take(Control(), true);
    const HWND window = host.ControlWindow();
    ASSERT_TRUE(IsWindow(window));
    EXPECT_EQ(GetParent(window), host.window);
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_EQ(host.Count("OnInPlaceActivate"), 1u);
    EXPECT_EQ(host.Count("OnUIActivate"), 0u); // focus is not taken unasked

    auto inPlace = host.As<IOleInPlaceObject>(IID_IOleInPlaceObject);
    const RECT place{10, 20, 210, 170}, clip{0, 0, 1000, 1000};
    ASSERT_EQ(inPlace->SetObjectRects(&place, &clip), S_OK);
    RECT now{};
    GetWindowRect(window, &now);
    MapWindowPoints(nullptr, host.window, reinterpret_cast<POINT*>(&now), 2);
    EXPECT_TRUE(EqualRect(&now, &place));

    ASSERT_EQ(inPlace->InPlaceDeactivate(), S_OK);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(host.Count("OnInPlaceDeactivate"), 1u);
    EXPECT_EQ(Verb(host, OLEIVERB_SHOW), S_OK); // once more
    EXPECT_TRUE(IsWindow(host.ControlWindow()));
    EXPECT_EQ(Verb(host, OLEIVERB_HIDE), S_OK);
    EXPECT_FALSE(IsWindowVisible(host.ControlWindow()));
    inPlace = nullptr;
    host.Drop();
    EXPECT_EQ(GetWindow(host.window, GW_CHILD), nullptr);
}

TEST_P(Controls, TakeAndGiveBackTheFocus) {
    Container host;
    host.Take(Control(), true);
    SetForegroundWindow(host.window);
    ASSERT_EQ(Verb(host, OLEIVERB_UIACTIVATE), S_OK);
    EXPECT_EQ(host.Count("OnUIActivate"), 1u);
    EXPECT_EQ(host.Count("SetActiveObject"), 1u);
    const HWND focus = GetFocus();
    EXPECT_TRUE(focus == host.ControlWindow() || IsChild(host.ControlWindow(), focus));
    ASSERT_EQ(host.As<IOleInPlaceObject>(IID_IOleInPlaceObject)->UIDeactivate(), S_OK);
    EXPECT_EQ(host.Count("OnUIDeactivate"), 1u);
    EXPECT_EQ(host.Count("ClearActiveObject"), 1u);

    // A click into it activates it as well.
    SendMessageW(host.ControlWindow(), WM_MOUSEACTIVATE, reinterpret_cast<WPARAM>(host.window),
                 MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN));
    EXPECT_EQ(host.Count("OnUIActivate"), 2u);
}

TEST_P(Controls, HandKeysThatTheyDoNotUseBackToTheHost) {
    Container host;
    host.Take(Control(), true);
    Verb(host, OLEIVERB_UIACTIVATE);
    auto active = host.As<IOleInPlaceActiveObject>(IID_IOleInPlaceActiveObject);
    MSG key{};
    key.hwnd = GetFocus();
    key.message = WM_KEYDOWN;
    key.wParam = VK_F10;
    EXPECT_EQ(active->TranslateAccelerator(&key),
              S_FALSE); // neither wants it: it goes its usual way
    EXPECT_EQ(host.Count("SiteKey"), 1u);
    host.takesKeys = true;
    EXPECT_EQ(active->TranslateAccelerator(&key), S_OK);
}

TEST_P(Controls, KeepTheSizeThatTheHostGives) {
    Container host;
    host.Take(Control(), false);
    SIZEL size{5080, 2540}, got{};
    ASSERT_EQ(Ole(host)->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    ASSERT_EQ(Ole(host)->GetExtent(DVASPECT_CONTENT, &got), S_OK);
    EXPECT_EQ(got.cx, 5080);
    EXPECT_EQ(got.cy, 2540);
    ASSERT_EQ(
        host.As<IViewObject2>(IID_IViewObject2)->GetExtent(DVASPECT_CONTENT, -1, nullptr, &got),
        S_OK);
    EXPECT_EQ(got.cx, 5080);
    EXPECT_EQ(Ole(host)->SetExtent(DVASPECT_ICON, &size), DV_E_DVASPECT);
    EXPECT_EQ(host.As<IPersistStreamInit>(IID_IPersistStreamInit)->IsDirty(), S_OK);
    DWORD status = 0;
    ASSERT_EQ(Ole(host)->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
    EXPECT_TRUE(status & OLEMISC_INSIDEOUT);
}

TEST_P(Controls, DrawWithoutAWindowOnScreenAndInAMetafile) {
    const auto control = Control();
    auto view = As<IViewObject2>(control, IID_IViewObject2);
    const Canvas canvas;
    const RECTL bounds{10, 10, 90, 70};
    const auto draw = [&](DWORD aspect, HDC device) {
        return view->Draw(aspect, -1, nullptr, nullptr, nullptr, device, &bounds, nullptr, nullptr,
                          0);
    };
    ASSERT_EQ(draw(DVASPECT_CONTENT, canvas.device), S_OK);
    EXPECT_TRUE(HasInk(canvas.device, 100, 80, Canvas::blank));
    EXPECT_EQ(GetPixel(canvas.device, 2, 2), Canvas::blank); // nothing beyond the bounds

    const HDC meta = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(draw(DVASPECT_CONTENT, meta), S_OK);
    const HENHMETAFILE file = CloseEnhMetaFile(meta);
    ENHMETAHEADER header{};
    GetEnhMetaFileHeader(file, sizeof header, &header);
    EXPECT_GT(header.nRecords, 2u); // more than its own head and end
    DeleteEnhMetaFile(file);
    EXPECT_EQ(draw(DVASPECT_ICON, canvas.device), DV_E_DVASPECT);
}

TEST_P(Controls, FollowADeadUserInterface) {
    Container host;
    host.Take(Control(), true);
    host.uiDead = true;
    host.As<IOleControl>(IID_IOleControl)->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD);
    EXPECT_FALSE(IsWindowEnabled(host.ControlWindow()));
    host.uiDead = false;
    host.As<IOleControl>(IID_IOleControl)->OnAmbientPropertyChange(DISPID_UNKNOWN);
    EXPECT_TRUE(IsWindowEnabled(host.ControlWindow()));
}

TEST_P(Controls, WorkWithoutASite) {
    const HWND before = GetTopWindow(nullptr);
    const Late control(Control());
    control.Put(L"Enabled", {Variant(false)});
    EXPECT_FALSE(control.Get(L"Enabled").ToBool());
    EXPECT_EQ(As<IOleObject>(control.Object(), IID_IOleObject)
                  ->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, nullptr, nullptr),
              E_FAIL);
    EXPECT_EQ(GetTopWindow(nullptr), before);
}

TEST_P(Controls, TellTheHostWhichPropertyChanged) {
    Container host;
    host.Take(Control(), false);
    const Late control(host.control);
    control.Put(L"Enabled", {Variant(false)});
    ASSERT_EQ(host.changes.size(), 1u);
    EXPECT_EQ(host.changes[0], DISPID_ENABLED);
    EXPECT_EQ(host.As<IPersistStreamInit>(IID_IPersistStreamInit)->IsDirty(), S_OK);
}

INSTANTIATE_TEST_SUITE_P(, Controls,
                         testing::Values(&CLSID_ctrlTree, &CLSID_ctrlCorrespondence,
                                         &CLSID_ctrlNote, &CLSID_ctlViewer, &CLSID_ctlChecklist,
                                         &CLSID_ctlRights, &CLSID_ctlDefaultFolders,
                                         &CLSID_ctlChecklistEditor, &CLSID_ctlPost),
                         [](const auto& one) {
                             return platform::win32::FromWide(com::FindClass(*one.param)->name);
                         });

} // namespace kavidex::tests
