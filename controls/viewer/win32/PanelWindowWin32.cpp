// Making, laying out and drawing the document panel's window.
#include "controls/viewer/win32/PanelWindowWin32.h"

#include <algorithm>

#include "controls/common/win32/Look.h"
#include "controls/common/win32/WindowClass.h"
#include "controls/viewer/win32/MakePanelWindow.h"
#include "platform/text.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

using platform::win32::ToWide;

namespace {

enum Id { captionId = 1, listId, nothingId, missingId, openId, labelId = 20, valueId = 40 };

constexpr std::string_view factTitles[] = {"Omschrijving",  "Type",    "Toegevoegd door",
                                           "Toegevoegd op", "Bestand", "Grootte"};

int TextWidth(HDC device, const std::wstring& text) {
    SIZE size{};
    GetTextExtentPoint32W(device, text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
}

} // namespace

std::unique_ptr<ControlWindow> MakePanelWindow(DocumentPanel& logic,
                                               const platform::Workstation& workstation) {
    return std::make_unique<PanelWindowWin32>(logic, workstation);
}

HWND PanelWindowWin32::Create(HWND parent, const RECT& place) {
    if (lclWindow) return lclWindow;
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_LISTVIEW_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    WindowOf<PanelWindowWin32>::Create(*this, lclWindow, L"KavidexDocumentPanel", L"",
                                       WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                                       WS_EX_CONTROLPARENT, place, parent, lclWorkstation);
    if (!lclWindow) return nullptr;
    if (!CreateChildren()) {
        Destroy();
        return nullptr;
    }
    BuildLook();
    lclLogic.AttachWindow(this);
    return lclWindow;
}

HWND PanelWindowWin32::Child(const wchar_t* type, DWORD style, DWORD exStyle, int id) {
    return CreateWindowExW(exStyle, type, L"", WS_CHILD | style, 0, 0, 0, 0, lclWindow,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                           platform::win32::OwnModule(), nullptr);
}

// A label stands before what it names, so that screen readers find the name.
bool PanelWindowWin32::CreateChildren() {
    constexpr DWORD plain = SS_NOPREFIX | SS_LEFTNOWORDWRAP | SS_ENDELLIPSIS;
    lclCaption = Child(L"STATIC", WS_VISIBLE | plain | SS_CENTERIMAGE, 0, captionId);
    lclList.Create(lclWindow, listId);
    lclNothing = Child(L"STATIC", SS_NOPREFIX | SS_CENTER, 0, nothingId);
    for (int i = 0; i < factCount; ++i) {
        lclLabels[i] = Child(L"STATIC", plain, 0, labelId + i);
        // An edit field that cannot be changed: its text can be read by keyboard and copied.
        lclValues[i] = Child(L"EDIT", WS_TABSTOP | ES_READONLY | ES_AUTOHSCROLL, 0, valueId + i);
    }
    lclMissing = Child(L"STATIC", SS_NOPREFIX, 0, missingId);
    lclOpen = Child(L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON, 0, openId);
    return lclCaption && lclList.Handle() && lclOpen;
}

HWND PanelWindowWin32::FirstStop() const {
    if (lclLogic.Content() == PanelContent::Folder) return lclList.Handle();
    if (lclLogic.Content() == PanelContent::Document)
        return lclLogic.CanOpen() ? lclOpen : lclValues[0];
    return nullptr;
}

void PanelWindowWin32::TakeFocus() {
    if (const HWND stop = FirstStop()) ::SetFocus(stop);
}

bool PanelWindowWin32::TranslateKey(const MSG& message) {
    if (!HasFocus() || message.message != WM_KEYDOWN || GetKeyState(VK_MENU) < 0) return false;
    const bool list = message.hwnd == lclList.Handle(), button = message.hwnd == lclOpen;
    const bool control = GetKeyState(VK_CONTROL) < 0;
    switch (message.wParam) {
    case VK_RETURN:
        if (button) {
            SendMessageW(lclOpen, BM_CLICK, 0, 0);
            return true;
        }
        if (!list) return false;
        break;
    case VK_SPACE:
        if (!button && !list) return false;
        break;
    case 'C':
    case 'A':
        if (!control || list || button) return false;
        break;
    default:
        if (!IsMoveKey(message.wParam) || button) return false;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
}

LRESULT PanelWindowWin32::Handle(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
    case WM_SIZE: Layout(); return 0;
    case WM_SETFOCUS: TakeFocus(); return 0;
    case WM_NOTIFY: return lclList.Notified(*reinterpret_cast<NMHDR*>(l)).value_or(0);
    case WM_COMMAND:
        if (LOWORD(w) == openId && HIWORD(w) == BN_CLICKED) lclLogic.OpenDefault();
        return 0;
    case WM_CTLCOLORSTATIC: return Colours(reinterpret_cast<HDC>(w));
    case WM_ERASEBKGND: {
        RECT area;
        GetClientRect(lclWindow, &area);
        const HBRUSH back = lclBack.Get() ? lclBack.Get() : GetSysColorBrush(COLOR_BTNFACE);
        FillRect(reinterpret_cast<HDC>(w), &area, back);
        return 1;
    }
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
    case 0x02E3: // WM_DPICHANGED_AFTERPARENT
        SendMessageW(lclList.Handle(), message, w, l);
        BuildLook();
        return 0;
    case WM_DESTROY: lclLogic.AttachWindow(nullptr); return 0;
    case WM_NCDESTROY: {
        const LRESULT result = DefWindowProcW(lclWindow, message, w, l);
        lclFont.Reset();
        lclBold.Reset();
        lclBack.Reset();
        lclCaption = lclNothing = lclMissing = lclOpen = nullptr;
        std::fill(std::begin(lclLabels), std::end(lclLabels), nullptr);
        std::fill(std::begin(lclValues), std::end(lclValues), nullptr);
        return result;
    }
    default: return DefWindowProcW(lclWindow, message, w, l);
    }
}

bool PanelWindowWin32::OwnColours() const {
    return lclLogic.BackColor() != 0 || lclLogic.ForeColor() != 0;
}

LRESULT PanelWindowWin32::Colours(HDC device) const {
    if (!OwnColours()) {
        SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
        SetBkColor(device, GetSysColor(COLOR_BTNFACE));
        return reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE));
    }
    SetTextColor(device, ColourOf(static_cast<std::uint32_t>(lclLogic.ForeColor())));
    SetBkColor(device, ColourOf(static_cast<std::uint32_t>(lclLogic.BackColor())));
    return reinterpret_cast<LRESULT>(lclBack.Get());
}

void PanelWindowWin32::BuildLook() {
    lclDpi = DpiOf(lclWindow);
    // The windows get the new fonts before the old ones go.
    FontFace strong = lclLogic.Font().value_or(FontFace{});
    strong.weight = FW_BOLD;
    const HFONT font = MakeFont(lclLogic.Font(), lclDpi), bold = MakeFont(strong, lclDpi);
    for (HWND child = GetWindow(lclWindow, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(child == lclCaption ? bold : font),
                     TRUE);
    lclFont.Reset(font);
    lclBold.Reset(bold);
    lclBack.Reset(OwnColours()
                      ? CreateSolidBrush(ColourOf(static_cast<std::uint32_t>(lclLogic.BackColor())))
                      : nullptr);
    std::optional<COLORREF> back, fore;
    if (OwnColours()) {
        back = ColourOf(static_cast<std::uint32_t>(lclLogic.BackColor()));
        fore = ColourOf(static_cast<std::uint32_t>(lclLogic.ForeColor()));
    }
    lclList.BuildLook(lclDpi, font, back, fore);
    HDC device = GetDC(lclWindow);
    const HGDIOBJ before = SelectObject(device, font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(device, &metrics);
    SelectObject(device, before);
    ReleaseDC(lclWindow, device);
    lclLine = metrics.tmHeight;
    for (const HWND child : {lclList.Handle(), lclOpen})
        EnableWindow(child, lclLogic.Enabled() && (child != lclOpen || lclLogic.CanOpen()));
    Layout();
    InvalidateRect(lclWindow, nullptr, TRUE);
}

void PanelWindowWin32::AppearanceChanged() {
    if (lclWindow) BuildLook();
}

void PanelWindowWin32::ContentChanged() {
    if (!lclWindow) return;
    const bool hadFocus = HasFocus();
    const auto content = lclLogic.Content();
    SetWindowTextW(lclCaption, ToWide(lclLogic.Caption()).c_str());
    SetWindowTextW(lclNothing, ToWide(lclLogic.NothingSelected()).c_str());
    // The list bears the caption too: that is how it is called when it is read out.
    lclList.SetName(lclLogic.Caption());
    FillFacts();
    const auto show = [](HWND child, bool visible) {
        ShowWindow(child, visible ? SW_SHOWNA : SW_HIDE);
    };
    const bool facts = content == PanelContent::Document;
    show(lclCaption, content != PanelContent::Nothing);
    show(lclList.Handle(), content == PanelContent::Folder);
    show(lclNothing, content == PanelContent::Nothing);
    for (int i = 0; i < factCount; ++i) {
        show(lclLabels[i], facts);
        show(lclValues[i], facts);
    }
    show(lclMissing, facts && lclLogic.Document().missing);
    show(lclOpen, facts);
    EnableWindow(lclOpen, lclLogic.Enabled() && lclLogic.CanOpen());
    Layout();
    if (hadFocus && !(GetFocus() && IsWindowVisible(GetFocus()))) TakeFocus();
}

void PanelWindowWin32::FillFacts() {
    const auto& facts = lclLogic.Document();
    const std::string* values[factCount] = {
        &facts.row.description, &facts.row.type, &facts.row.insertedBy,
        &facts.row.insertedOn,  &facts.path,     &facts.size};
    for (int i = 0; i < factCount; ++i) {
        SetWindowTextW(lclLabels[i], ToWide(lclLogic.Text(factTitles[i]) + ":").c_str());
        SetWindowTextW(lclValues[i], ToWide(*values[i]).c_str());
    }
    SetWindowTextW(lclMissing, ToWide(lclLogic.Text("Document kan niet gevonden worden.")).c_str());
    SetWindowTextW(lclOpen, ToWide(lclLogic.Text("Openen")).c_str());
}

void PanelWindowWin32::Layout() {
    if (!lclWindow || !lclOpen) return;
    RECT area;
    GetClientRect(lclWindow, &area);
    const int gap = Scaled(6, lclDpi), head = lclLine + gap;
    MoveWindow(lclCaption, gap, 0, std::max<int>(0, area.right - 2 * gap), head, TRUE);
    const int width = std::max<int>(0, area.right - 2 * gap);
    MoveWindow(lclNothing, gap, std::max<int>(gap, (area.bottom - 3 * lclLine) / 2), width,
               3 * lclLine, TRUE);
    area.top = std::min<LONG>(head, area.bottom);
    lclList.Place(area);
    LayoutFacts(area);
}

void PanelWindowWin32::LayoutFacts(const RECT& area) {
    HDC device = GetDC(lclWindow);
    const HGDIOBJ before = SelectObject(device, lclFont.Get());
    int label = 0;
    for (const auto title : factTitles)
        label = std::max(label, TextWidth(device, ToWide(lclLogic.Text(title) + ":")));
    const int button = TextWidth(device, ToWide(lclLogic.Text("Openen"))) + Scaled(40, lclDpi);
    SelectObject(device, before);
    ReleaseDC(lclWindow, device);

    const int gap = Scaled(6, lclDpi), left = area.left + gap, right = area.right - gap;
    const int column = left + label + 2 * gap, step = lclLine + gap;
    int top = area.top + gap;
    for (int i = 0; i < factCount; ++i, top += step) {
        MoveWindow(lclLabels[i], left, top, label + gap, lclLine, TRUE);
        MoveWindow(lclValues[i], column, top, std::max(0, right - column), lclLine, TRUE);
    }
    if (lclLogic.Document().missing) {
        MoveWindow(lclMissing, left, top, std::max(0, right - left), 2 * lclLine, TRUE);
        top += 2 * lclLine;
    }
    MoveWindow(lclOpen, left, top + gap, std::max(button, Scaled(88, lclDpi)), lclLine + 2 * gap,
               TRUE);
}

void PanelWindowWin32::Draw(HDC device, const RECT& place) const {
    const int dpi = GetDeviceCaps(device, LOGPIXELSY);
    GdiObject<HFONT> font;
    font.Reset(MakeFont(lclLogic.Font(), dpi));
    const HGDIOBJ before = SelectObject(device, font.Get());
    RECT area = place;
    FillRect(device, &area, GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(device, TRANSPARENT);
    SetTextColor(device, GetSysColor(COLOR_BTNTEXT));
    InflateRect(&area, -Scaled(6, dpi), -Scaled(6, dpi));
    std::string text = lclLogic.Content() == PanelContent::Nothing ? lclLogic.NothingSelected()
                                                                   : lclLogic.Caption();
    for (const auto& row : lclLogic.Documents()) text += "\r\n" + row.description;
    DrawTextW(device, ToWide(text).c_str(), -1, &area, DT_NOPREFIX | DT_WORDBREAK);
    SelectObject(device, before);
}

} // namespace kavidex::controls::win32
