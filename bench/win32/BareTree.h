// A native tree view filled by a bare loop: what the controls are measured against.
#pragma once

#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>

#include "controls/tree/ctrlTree.h"
#include "model/clsItem.h"
#include "platform/win32/Variant.h"

namespace kavidex::bench {

// Texts ready in the form that Windows wants.
struct BareRow {
    std::wstring text;
    bool folder;
};

// The root's comes first.
inline std::vector<BareRow> RowsOf(controls::ctrlTree& tree) {
    std::vector<BareRow> rows{{L"Bench", false}};
    for (const auto& item : tree.AllItems())
        rows.push_back({platform::win32::ToWide(item->Description()), item->AllowChildren()});
    return rows;
}

// Documents lie in the folder before them. Gives the nodes in the rows' order.
inline std::vector<HTREEITEM> FillBare(HWND view, std::vector<BareRow>& rows) {
    std::vector<HTREEITEM> nodes;
    nodes.reserve(rows.size());
    SendMessageW(view, WM_SETREDRAW, FALSE, 0);
    HTREEITEM folder = nullptr;
    for (auto& row : rows) {
        TVINSERTSTRUCTW insert{};
        insert.hParent = nodes.empty() ? TVI_ROOT : row.folder ? nodes.front() : folder;
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
        insert.item.pszText = row.text.data();
        nodes.push_back(reinterpret_cast<HTREEITEM>(
            SendMessageW(view, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert))));
        if (row.folder) folder = nodes.back();
    }
    TreeView_Expand(view, nodes.front(), TVE_EXPAND);
    SendMessageW(view, WM_SETREDRAW, TRUE, 0);
    return nodes;
}

} // namespace kavidex::bench
