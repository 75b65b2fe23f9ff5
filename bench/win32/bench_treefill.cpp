// Filling the tree's window with 50,000 nodes, against a bare loop that inserts the same texts into
// the same native tree.
#include <chrono>
#include <cstdio>
#include <vector>

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include "bench/ratio.h"
#include "bench/win32/BareTree.h"
#include "bench/win32/Dossier.h"

using namespace kavidex;

namespace {

constexpr int folders = 500, documents = 99, rounds = 5;

double Seconds(const std::chrono::steady_clock::time_point& start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Bare(HWND view, std::vector<bench::BareRow>& rows) {
    SendMessageW(view, WM_SETREDRAW, FALSE, 0);
    TreeView_DeleteAllItems(view);
    const auto start = std::chrono::steady_clock::now();
    bench::FillBare(view, rows);
    return Seconds(start);
}

} // namespace

int main() {
    OleInitialize(nullptr);
    bench::Dossier dossier(folders, documents);
    auto& tree = dossier.tree;
    auto& window = dossier.window;
    const HWND view = dossier.view;
    auto rows = bench::RowsOf(tree);

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
