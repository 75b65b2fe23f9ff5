// The binder control made, a dossier of 1,000 documents opened in it and painted, against bare
// windows of the same kinds that are made, filled with the same rows, buttons and pictures and
// painted.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include "bench/ratio.h"
#include "bench/win32/BareTree.h"
#include "controls/binder/ctrlCorrespondence.h"
#include "controls/binder/win32/MakeBinderWindow.h"
#include "controls/pictures/win32/SharedPictures.h"
#include "controls/tree/ctrlTree.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Workstation.h"

using namespace kavidex;

namespace {

constexpr int folders = 20, documents = 50; // in each
constexpr RECT place{0, 0, 1000, 640};

double Seconds(const std::chrono::steady_clock::time_point& start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Paint(HWND window) {
    RedrawWindow(window, nullptr, nullptr,
                 RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

data::ConnectionPtr MakeDossier() {
    const auto database = data::EmbeddedDatabase::CreateInMemory();
    controls::ctrlCorrespondence binder(platform::TheWorkstation());
    binder.SetDbConnection(database);
    binder.OpenOrCreate("Bench", "Bench", "", "", "");
    auto& tree = binder.treCorr();
    database->BeginTrans();
    for (int folder = 0; folder < folders; ++folder) {
        const auto parent =
            tree.AddTab("Folder " + std::to_string(folder), tree.Tree()->Item()->Id())->Id();
        for (int i = 0; i < documents; ++i)
            tree.Add(0, i % 2 ? "tif" : "pdf", nullptr, 1, "Document " + std::to_string(i), parent);
    }
    database->CommitTrans();
    binder.CloseObject();
    return database;
}

// Every window of the control, a parent before its children.
struct Window {
    std::wstring kind;
    DWORD style, more;
    RECT place;
    std::size_t parent;
    std::vector<TBBUTTON> buttons{}; // of a toolbar
    int picture = 0;                 // its size
};

std::vector<TBBUTTON> ButtonsOf(HWND toolbar) {
    std::vector<TBBUTTON> buttons(
        static_cast<std::size_t>(SendMessageW(toolbar, TB_BUTTONCOUNT, 0, 0)));
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        SendMessageW(toolbar, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&buttons[i]));
        buttons[i].iString = -1;
    }
    return buttons;
}

void Collect(HWND window, std::size_t parent, std::vector<Window>& all) {
    wchar_t kind[64]{};
    GetClassNameW(window, kind, 64);
    WNDCLASSW known{};
    const bool ours = !GetClassInfoW(nullptr, kind, &known);
    RECT at{};
    GetWindowRect(window, &at);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&at), 2);
    const std::size_t index = all.size();
    all.push_back(
        {ours ? L"STATIC" : kind,
         static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE)) & ~(ours ? 0xFFFFu : 0u),
         static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE)), at, parent});
    if (all.back().kind == TOOLBARCLASSNAMEW) {
        all.back().buttons = ButtonsOf(window);
        int height = 0;
        const auto list = reinterpret_cast<HIMAGELIST>(SendMessageW(window, TB_GETIMAGELIST, 0, 0));
        ImageList_GetIconSize(list, &all.back().picture, &height);
    }
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        Collect(child, index, all);
}

void AddButtons(HWND toolbar, const Window& one, HIMAGELIST pictures) {
    SendMessageW(toolbar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    SendMessageW(toolbar, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(pictures));
    SendMessageW(toolbar, TB_SETBITMAPSIZE, 0, MAKELPARAM(one.picture, one.picture));
    SendMessageW(toolbar, TB_ADDBUTTONSW, one.buttons.size(),
                 reinterpret_cast<LPARAM>(one.buttons.data()));
    SendMessageW(toolbar, TB_AUTOSIZE, 0, 0);
}

double Bare(HWND host, const std::vector<Window>& plan, std::vector<bench::BareRow>& rows) {
    const auto start = std::chrono::steady_clock::now();
    const auto pictures = controls::win32::PicturesOf(controls::win32::PictureSet::Items, 16);
    std::vector<HWND> made;
    std::shared_ptr<controls::win32::SharedPictures> ofButtons;
    for (const auto& one : plan) {
        const HWND parent = made.empty() ? host : made[one.parent];
        made.push_back(CreateWindowExW(one.more, one.kind.c_str(), L"", one.style, one.place.left,
                                       one.place.top, one.place.right - one.place.left,
                                       one.place.bottom - one.place.top, parent, nullptr, nullptr,
                                       nullptr));
        if (!one.buttons.empty()) {
            ofButtons =
                controls::win32::PicturesOf(controls::win32::PictureSet::Buttons, one.picture);
            AddButtons(made.back(), one, ofButtons->Handle());
        }
        if (one.kind != WC_TREEVIEWW) continue;
        TreeView_SetImageList(made.back(), pictures->Handle(), TVSIL_NORMAL);
        bench::FillBare(made.back(), rows);
    }
    Paint(host);
    const double time = Seconds(start);
    DestroyWindow(made.front());
    return time;
}

double Ours(HWND host, const data::ConnectionPtr& database, std::vector<Window>* plan,
            std::vector<bench::BareRow>* rows) {
    const auto start = std::chrono::steady_clock::now();
    controls::ctrlCorrespondence binder(platform::TheWorkstation());
    binder.SetDbConnection(database);
    const auto window = controls::win32::MakeBinderWindow(binder, platform::TheWorkstation());
    window->Create(host, place);
    const double made = Seconds(start);
    const bool opened = binder.OpenOrCreate("Bench", "", "", "", "") == 0;
    const double filled = Seconds(start);
    Paint(host);
    const double time = Seconds(start);
    if (plan)
        std::printf("made %.1f, opened %.1f, painted %.1f ms\n", made * 1e3, (filled - made) * 1e3,
                    (time - filled) * 1e3);
    if (!opened) std::puts("the dossier was not opened");
    if (plan) Collect(window->Handle(), 0, *plan);
    if (rows) *rows = bench::RowsOf(binder.treCorr());
    window->Destroy();
    binder.CloseObject();
    return time;
}

} // namespace

int main() {
    OleInitialize(nullptr);
    const INITCOMMONCONTROLSEX kinds{sizeof kinds, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&kinds);
    const HWND host =
        CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0,
                        1040, 700, nullptr, nullptr, nullptr, nullptr);
    const auto database = MakeDossier();
    std::vector<Window> plan;
    std::vector<bench::BareRow> rows;
    Ours(host, database, &plan, &rows);
    std::printf("%zu windows, %zu rows\n", plan.size(), rows.size());
    if (rows.size() != 1 + folders * (documents + 1)) return 1;
    const bench::Times times =
        bench::Measure([&] { return Ours(host, database, nullptr, nullptr); },
                       [&] { return Bare(host, plan, rows); });
    return bench::AtMost("binder with 1,000 documents / bare windows", times, 2.0) ? 0 : 1;
}
