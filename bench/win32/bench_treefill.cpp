// Filling the tree's window with 50,000 nodes, against a bare loop that inserts the same texts into
// the same native tree.
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include "bench/ratio.h"
#include "bench/win32/Dossier.h"
#include "platform/win32/Variant.h"

using namespace kavidex;

namespace {

constexpr int folders = 500, documents = 99, rounds = 5;

double Seconds(const std::chrono::steady_clock::time_point& start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// What the loop inserts: texts ready in the form that Windows wants.
struct Row {
    std::wstring text;
    bool folder;
};

double Bare(HWND view, std::vector<Row>& rows) {
    SendMessageW(view, WM_SETREDRAW, FALSE, 0);
    TreeView_DeleteAllItems(view);
    const auto start = std::chrono::steady_clock::now();
    HTREEITEM root = nullptr, folder = nullptr;
    for (auto& row : rows) {
        TVINSERTSTRUCTW insert{};
        insert.hParent = !root ? TVI_ROOT : row.folder ? root : folder;
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
        insert.item.pszText = row.text.data();
        const auto item = reinterpret_cast<HTREEITEM>(
            SendMessageW(view, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
        if (!root) root = item;
        if (row.folder) folder = item;
    }
    TreeView_Expand(view, root, TVE_EXPAND);
    SendMessageW(view, WM_SETREDRAW, TRUE, 0);
    return Seconds(start);
}

} // namespace

int main() {
    OleInitialize(nullptr);
    bench::Dossier dossier(folders, documents);
    auto& tree = dossier.tree;
    auto& window = dossier.window;
    const HWND view = dossier.view;
    std::vector<Row> rows{{L"Bench", false}};
    for (const auto& item : tree.AllItems())
        rows.push_back({platform::win32::ToWide(item->Description()), item->AllowChildren()});

    const auto fill = [&] {
        tree.AttachWindow(nullptr);
        window.SetRedraw(false);
        window.Clear();
        const auto start = std::chrono::steady_clock::now();
        tree.AttachWindow(&window);
        return Seconds(start);
    };
    const bench::Times times = bench::Measure(
        fill, [&] { return Bare(view, rows); }, rounds);
    fill(); // the bare loop was the last to fill the window
    const unsigned shown = TreeView_GetCount(view);
    const auto start = std::chrono::steady_clock::now();
    tree.SetFullExpand(true);
    std::printf("open all %u nodes: %.0f ms\n", shown, Seconds(start) * 1000);
    if (shown != rows.size()) {
        std::printf("the window shows %u of %zu nodes\n", shown, rows.size());
        return 1;
    }
    return bench::AtMost("fill a window with 50,001 nodes / bare loop", times, 1.3) ? 0 : 1;
}
