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
#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/TreeWindowWin32.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Workstation.h"
#include "platform/win32/Variant.h"

using namespace kavidex;

namespace {

constexpr int folders = 500, documents = 99, rounds = 5;

double Seconds(const std::chrono::steady_clock::time_point& start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void MakeDossier(controls::ctrlTree& tree) {
    tree.CreateNew("Bench", "");
    const auto& connection = tree.DbConnection();
    const auto root = tree.Tree()->Item()->Id();
    connection->BeginTrans();
    int id = root;
    const auto insert = [&](const char* type, int parent, const std::string& text) {
        ++id;
        const auto number = std::to_string(id);
        connection->Execute("Insert into tblTreeItem (Id, TreeItemId, Type, ItemId, ParentId, "
                            "Description) Values (" +
                            number + ", " + number + ", '" + type + "', 0, " +
                            std::to_string(parent) + ", '" + text + "')");
        return id;
    };
    constexpr const char* types[] = {"tif", "pdf", "msg", "doc", "nnt"};
    for (int folder = 0; folder < folders; ++folder) {
        const int parent = insert("tab", root, "Folder " + std::to_string(folder));
        for (int i = 0; i < documents; ++i)
            insert(types[i % 5], parent,
                   "Document number " + std::to_string(folder * documents + i));
    }
    connection->CommitTrans();
    tree.Refresh();
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
    controls::ctrlTree tree(platform::TheWorkstation());
    const auto database = data::EmbeddedDatabase::CreateInMemory();
    data::clsUpdateDb update(platform::TheWorkstation());
    update.SetDbConnection(database);
    update.fncUpdateDb();
    tree.SetDbConnection(database);
    MakeDossier(tree);
    std::vector<Row> rows{{L"Bench", false}};
    for (const auto& item : tree.AllItems())
        rows.push_back({platform::win32::ToWide(item->Description()), item->AllowChildren()});

    const HWND host = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 600, 600,
                                      nullptr, nullptr, nullptr, nullptr);
    controls::win32::TreeWindowWin32 window(tree, platform::TheWorkstation());
    window.Create(host, {0, 0, 300, 500});
    const HWND view = FindWindowExW(window.Handle(), nullptr, WC_TREEVIEWW, nullptr);

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
    window.Destroy();
    DestroyWindow(host);
    if (shown != rows.size()) {
        std::printf("the window shows %u of %zu nodes\n", shown, rows.size());
        return 1;
    }
    return bench::AtMost("fill a window with 50,001 nodes / bare loop", times, 1.3) ? 0 : 1;
}
