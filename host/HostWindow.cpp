#include "host/HostWindow.h"

#include <commctrl.h>

#include <algorithm>

#include "host/Dialogs.h"
#include "host/Menu.h"
#include "host/resources.h"
#include "platform/Error.h"
#include "platform/text.h"
#include "platform/win32/Late.h"
#include "platform/win32/Variant.h"

namespace kavidex::host {

using platform::win32::ToWide;

namespace {

constexpr wchar_t className[] = L"KavidexHost", title[] = L"Kavidex host";
constexpr char noDossier[] = "No binder is open: choose Binder, Open (Ctrl+O)";
constexpr UINT startMessage = WM_APP + 1;
constexpr UINT_PTR closeTimer = 1;

// In the order of the menu.
struct Administration {
    const wchar_t* progId;
    const char* title; // as in the menu
};
constexpr Administration administration[] = {
    {L"Kavidex.ctlRights", "&Users and rights"},
    {L"Kavidex.ctlDefaultFolders", "Default &folders"},
    {L"Kavidex.ctlChecklistEditor", "&Checklists"},
    {L"Kavidex.ctlPost", "&Post"},
};

void Complain(HWND owner, const std::exception& error) {
    MessageBoxW(owner, ToWide(error.what()).c_str(), title, MB_OK | MB_ICONEXCLAMATION);
}

} // namespace

HostWindow::HostWindow(Options options) : lclOptions(std::move(options)) {}

HostWindow::~HostWindow() {
    lclFrames.clear();
    lclSession.reset();
    if (lclSite) lclSite->Release();
}

int HostWindow::Run() {
    Create();
    ShowWindow(lclWindow, SW_SHOWDEFAULT);
    UpdateWindow(lclWindow);
    PostMessageW(lclWindow, startMessage, 0, 0);
    Loop();
    return lclExitCode;
}

void HostWindow::Create() {
    const HINSTANCE module = GetModuleHandleW(nullptr);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = Procedure;
    windowClass.hInstance = module;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    windowClass.lpszClassName = className;
    RegisterClassExW(&windowClass);
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    RECT room{0, 0, MAXSHORT, MAXSHORT}; // no larger than the screen
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &room, 0);
    lclWindow =
        CreateWindowExW(0, className, title, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                        CW_USEDEFAULT, std::min<int>(MulDiv(1000, dpi, 96), room.right - room.left),
                        std::min<int>(MulDiv(680, dpi, 96), room.bottom - room.top), nullptr,
                        MakeMenu(lclLanguage), module, this);
    if (!lclWindow) throw platform::Error(platform::errors::fail, "no window", "kavidex-host");
}

LRESULT CALLBACK HostWindow::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_NCCREATE) {
        auto* self =
            static_cast<HostWindow*>(reinterpret_cast<CREATESTRUCTW*>(lparam)->lpCreateParams);
        self->lclWindow = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self) return DefWindowProcW(window, message, wparam, lparam);
    try {
        return self->Handle(message, wparam, lparam);
    } catch (const std::exception& error) {
        self->Report("error " + std::string(error.what()));
        self->lclExitCode = 1;
        if (self->lclOptions.closeWhen.empty()) Complain(window, error);
        return 0;
    }
}

LRESULT HostWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
    case WM_CREATE:
        lclStatus =
            CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0,
                            0, 0, lclWindow, nullptr, GetModuleHandleW(nullptr), nullptr);
        return 0;
    case startMessage:
    case WM_COMMAND: Work(message, wparam); return 0;
    case WM_SIZE: Arrange(); return 0;
    case WM_ACTIVATE: lclActive = LOWORD(wparam) != WA_INACTIVE; break;
    case WM_SETFOCUS:
        if (lclSite) lclSite->Focus();
        return 0;
    case WM_TIMER:
        if (wparam == closeTimer &&
            GetFileAttributesW(ToWide(lclOptions.closeWhen).c_str()) != INVALID_FILE_ATTRIBUTES)
            Close();
        return 0;
    case WM_CLOSE: Close(); return 0;
    case WM_DESTROY:
        lclFrames.clear();
        if (lclSession) lclSession->CloseDossier();
        lclSession.reset();
        if (lclSite) lclSite->Close();
        PostQuitMessage(0);
        return 0;
    default: break;
    }
    return DefWindowProcW(lclWindow, message, wparam, lparam);
}

// Long work of the control lets messages through: a second command waits for no one and is dropped,
// and the frame does not go from under a call that is not back yet.
void HostWindow::Work(UINT message, WPARAM wparam) {
    if (lclWorking > 0 && !(message == WM_COMMAND && LOWORD(wparam) == ID_EXIT)) return;
    ++lclWorking;
    const std::unique_ptr<HostWindow, void (*)(HostWindow*)> back(this, [](HostWindow* self) {
        if (--self->lclWorking == 0 && self->lclCloseAsked)
            PostMessageW(self->lclWindow, WM_CLOSE, 0, 0);
    });
    if (message == startMessage)
        Start();
    else
        Command(LOWORD(wparam));
}

// What is not saved is asked about while the window still stands.
void HostWindow::Close() {
    lclCloseAsked = true;
    if (lclWorking > 0) return;
    for (const auto& frame : lclFrames)
        if (!frame->MayClose()) {
            lclCloseAsked = false;
            return;
        }
    ++lclWorking;
    try {
        if (lclSession) lclSession->CloseDossier();
    } catch (const std::exception& error) {
        Report("error " + std::string(error.what()));
    }
    DestroyWindow(lclWindow);
}

void HostWindow::Start() {
    if (!lclOptions.closeWhen.empty()) SetTimer(lclWindow, closeTimer, 250, nullptr);
    lclSite = new platform::win32::ControlSite(
        lclWindow, {.event =
                        [this](const platform::win32::SiteEvent& event) {
                            std::vector<std::string> texts;
                            for (const auto& argument : event.Arguments())
                                texts.push_back(platform::win32::TextOf(argument));
                            OnEvent(event.name, texts);
                        },
                    .keyBack = TabAround(lclWindow)});
    RECT client;
    GetClientRect(lclWindow, &client);
    lclSite->Open(L"Kavidex.ctrlCorrespondence", client);
    lclSession = std::make_unique<Session>(lclSite->Control());
    Arrange();
    Speak(lclOptions.language.empty() ? 0 : std::stoi(lclOptions.language));
    if (!lclOptions.database.empty()) {
        lclSession->Connect(lclOptions.database, lclOptions.store);
        Report("database " + lclOptions.database);
    }
    const platform::win32::Late binder(platform::win32::ComPtr<IDispatch>(lclSite->Control()));
    if (!lclOptions.dossierType.empty())
        binder.Put(L"DossierType", {platform::win32::Variant(lclOptions.dossierType)});
    if (!lclOptions.checklist.empty())
        binder.Put(L"ShowCheckList", {platform::win32::Variant(lclOptions.checklist)});
    if (!lclOptions.key.empty()) OpenDossier(lclOptions.key, lclOptions.description);
    if (!lclOptions.files.empty()) AddFiles(lclOptions.files);
    lclSite->Focus();
    Report("ready");
}

void HostWindow::Arrange() {
    RECT client, bar;
    GetClientRect(lclWindow, &client);
    SendMessageW(lclStatus, WM_SIZE, 0, 0);
    InvalidateRect(lclStatus, nullptr, TRUE); // its grip has moved
    GetWindowRect(lclStatus, &bar);
    client.bottom -= bar.bottom - bar.top;
    if (lclSite && client.bottom > client.top) lclSite->Place(client);
}

void HostWindow::Command(int id) {
    switch (id) {
    case ID_OPEN: AskDossier(); break;
    case ID_ADD_FILES: AskFiles(); break;
    case ID_CLOSE_DOSSIER:
        if (lclSession) lclSession->CloseDossier();
        SetWindowTextW(lclWindow, title);
        Say(Own(noDossier));
        break;
    case ID_CONNECTION: AskConnection(); break;
    case ID_CHECKLIST: ShowChecklist(); break;
    case ID_EXIT: Close(); break;
    default:
        if (id >= ID_LANGUAGE && id < ID_LANGUAGE + languages) Speak(id - ID_LANGUAGE);
        if (id >= ID_ADMIN && id < ID_ADMIN + static_cast<int>(std::size(administration)))
            ShowAdministration(static_cast<std::size_t>(id - ID_ADMIN));
        break;
    }
}

void HostWindow::Speak(int language) {
    lclLanguage = std::clamp(language, 0, languages - 1);
    if (lclSession) lclSession->Speak(lclLanguage);
    const HMENU before = GetMenu(lclWindow);
    SetMenu(lclWindow, MakeMenu(lclLanguage));
    DestroyMenu(before);
    const bool open = lclSession && !lclSession->Key().empty();
    Say(open ? Own("Binder") + " " + lclSession->Key() : Own(noDossier));
}

std::string HostWindow::Own(std::string_view english) const {
    return std::string(Text(english, lclLanguage));
}

void HostWindow::AskDossier() {
    if (!lclSession || lclSession->Database().empty()) AskConnection();
    if (!lclSession || lclSession->Database().empty()) return;
    std::string key = lclSession->Key(), description;
    if (host::AskDossier(lclWindow, lclLanguage, key, description))
        OpenDossier(key, description.empty() ? key : description);
}

void HostWindow::AskFiles() {
    if (!lclSession || lclSession->Key().empty()) AskDossier();
    if (!lclSession || lclSession->Key().empty()) return;
    const auto files = ChooseFiles(lclWindow, lclLanguage);
    if (!files.empty()) AddFiles(files);
}

void HostWindow::AskConnection() {
    if (!lclSession) return;
    std::string database = lclSession->Database(), store = lclSession->Store();
    if (!host::AskConnection(lclWindow, lclLanguage, database, store)) return;
    lclFrames.clear(); // they show the other one
    lclSession->Connect(database, store);
}

void HostWindow::ShowAdministration(std::size_t which) {
    if (!lclSession || lclSession->Database().empty()) AskConnection();
    if (!lclSession || lclSession->Database().empty()) return;
    std::erase_if(lclFrames, [](const auto& frame) { return !frame->IsOpen(); });
    auto name = Own(administration[which].title);
    std::erase(name, '&');
    lclFrames.push_back(std::make_unique<ControlFrame>(
        lclWindow, administration[which].progId, name, lclSession->Connection(),
        lclSession->Rights(), Own("Save the changes?")));
}

// The panel beside the documents, by the type of the dossier.
void HostWindow::ShowChecklist() {
    const platform::win32::Late binder(platform::win32::ComPtr<IDispatch>(lclSite->Control()));
    const bool shown = !binder.Get(L"ShowCheckList").ToText().empty();
    binder.Put(L"ShowCheckList",
               {shown ? platform::win32::Variant("") : binder.Get(L"DossierType")});
}

void HostWindow::OpenDossier(const std::string& key, const std::string& description) {
    const int result = lclSession->Open(key, description, lclOptions.folders);
    Report("dossier " + key + " result " + std::to_string(result));
    Say(result == 0 ? Own("Binder") + " " + key
                    : Own("The binder cannot be opened") + ": " + std::to_string(result));
    if (result != 0) lclExitCode = 1;
    SetWindowTextW(lclWindow, result == 0 ? (ToWide(key) + L" - " + title).c_str() : title);
}

void HostWindow::AddFiles(const std::vector<std::string>& files) {
    const int result = lclSession->AddFiles(files, lclFolder);
    Report("added " + std::to_string(files.size()) + " result " + std::to_string(result));
    if (result != 0) {
        lclExitCode = 1;
        Say(Own("Not all files were added") + ": " + std::to_string(result));
    }
}

void HostWindow::OnEvent(const std::string& name, const std::vector<std::string>& arguments) {
    if (name != "EvItemSelected" || arguments.size() < 5) return;
    const bool folder = platform::EqualAsciiNoCase(arguments[1], "tab");
    lclFolder = folder ? std::stol(arguments[2]) : 0;
    Say(Own(folder ? "Folder" : "Document") + " " + arguments[3]);
}

void HostWindow::Say(std::string_view text) {
    SendMessageW(lclStatus, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(ToWide(text).c_str()));
}

void HostWindow::Report(const std::string& line) {
    if (lclOptions.report.empty()) return;
    const HANDLE file = CreateFileW(ToWide(lclOptions.report).c_str(), FILE_APPEND_DATA,
                                    FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    const std::string text = line + "\n";
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
}

// Keys go to the control of their window first, as the protocol of in-place objects has it; then to
// the menu of this one.
void HostWindow::Loop() {
    const HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDR_KEYS));
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
        const bool own = GetAncestor(message.hwnd, GA_ROOT) == lclWindow;
        if (key && own && lclSite && lclSite->TranslateKey(message)) continue;
        if (key && !own && std::any_of(lclFrames.begin(), lclFrames.end(), [&](const auto& frame) {
                return frame->TranslateKey(message);
            }))
            continue;
        if (own && TranslateAcceleratorW(lclWindow, keys, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace kavidex::host
