// A dossier of any size in a database in memory, shown in a window of its own.
#pragma once

#include <string>

#include <windows.h>

#include <commctrl.h>

#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/TreeWindowWin32.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Workstation.h"

namespace kavidex::bench {

class Dossier {
public:
    // So many folders below the root, so many documents in each.
    Dossier(int folders, int documents) {
        const auto database = data::EmbeddedDatabase::CreateInMemory();
        data::clsUpdateDb update(platform::TheWorkstation());
        update.SetDbConnection(database);
        update.fncUpdateDb();
        tree.SetDbConnection(database);
        tree.CreateNew("Bench", "");
        database->BeginTrans();
        lclLast = tree.Tree()->Item()->Id();
        const int root = lclLast;
        constexpr const char* types[] = {"tif", "pdf", "msg", "doc", "nnt"};
        for (int folder = 0; folder < folders; ++folder) {
            const int parent = Insert("tab", root, "Folder " + std::to_string(folder));
            for (int i = 0; i < documents; ++i)
                Insert(types[i % 5], parent,
                       "Document number " + std::to_string(folder * documents + i));
        }
        database->CommitTrans();
        tree.Refresh();
        window.Create(lclHost, {0, 0, 300, 500});
        view = FindWindowExW(window.Handle(), nullptr, WC_TREEVIEWW, nullptr);
    }
    ~Dossier() {
        window.Destroy();
        DestroyWindow(lclHost);
    }
    Dossier(const Dossier&) = delete;
    Dossier& operator=(const Dossier&) = delete;

    controls::ctrlTree tree{platform::TheWorkstation()};
    controls::win32::TreeWindowWin32 window{tree, platform::TheWorkstation()};
    HWND view = nullptr;

private:
    int Insert(const char* type, int parent, const std::string& text) {
        const auto number = std::to_string(++lclLast);
        tree.DbConnection()->Execute("Insert into tblTreeItem (Id, TreeItemId, Type, ItemId, "
                                     "ParentId, Description) Values (" +
                                     number + ", " + number + ", '" + type + "', " + number + ", " +
                                     std::to_string(parent) + ", '" + text + "')");
        return lclLast;
    }

    int lclLast = 0;
    HWND lclHost = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 600, 600, nullptr,
                                   nullptr, nullptr, nullptr);
};

} // namespace kavidex::bench
