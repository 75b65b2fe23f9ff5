// What a user does in a tree of 50,000 nodes: our part against the same in one of 500, and with its
// window against a bare tree view as large, since some tree views look every item up in a list.
// And sorting the list mode's 100,000 rows, against sorting their keys.
#include <algorithm>
#include <string>
#include <vector>

#include <ole2.h>

#include "bench/ratio.h"
#include "bench/win32/BareTree.h"
#include "bench/win32/Dossier.h"
#include "platform/text.h"

using namespace kavidex;

namespace {

constexpr int documents = 99; // in each folder

HTREEITEM ItemOf(bench::Dossier& dossier, HTREEITEM from, std::int32_t id) {
    for (auto item = from; item; item = TreeView_GetNextSibling(dossier.view, item)) {
        TVITEMW data{};
        data.mask = TVIF_PARAM;
        data.hItem = item;
        SendMessageW(dossier.view, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&data));
        if (data.lParam == id) return item;
    }
    return nullptr;
}

// The last folder of a dossier, open, and its documents.
struct Place {
    explicit Place(bench::Dossier& shown) : dossier(shown) {
        const auto items = dossier.tree.AllItems();
        for (const auto& item : items)
            if (item->AllowChildren())
                ids.clear(), folder = item->Id();
            else
                ids.push_back(item->Id());
        dossier.tree.SetHighLightToItem(ids.front()); // opens the folder
        const auto root = TreeView_GetRoot(dossier.view);
        const auto above = ItemOf(dossier, TreeView_GetChild(dossier.view, root), folder);
        for (const auto id : {ids[0], ids[1]})
            nodes.push_back(ItemOf(dossier, TreeView_GetChild(dossier.view, above), id));
    }

    void Menu() {
        for (int i = 0; i < 50; ++i) controls::VisibleEntries(dossier.tree.PrepareMenu(ids[i % 9]));
    }
    void Select() {
        for (int i = 0; i < 200; ++i)
            SendMessageW(dossier.view, TVM_SELECTITEM, TVGN_CARET,
                         reinterpret_cast<LPARAM>(nodes[i % 2]));
    }
    void SelectAlone() {
        for (int i = 0; i < 20000; ++i) dossier.tree.NodeSelected(ids[i % 2]);
    }
    void Delete() {
        for (int i = 0; i < 4; ++i, ids.pop_back()) dossier.tree.DeleteItem(ids.back());
    }

    bench::Dossier& dossier;
    std::int32_t folder = 0;
    std::vector<std::int32_t> ids;
    std::vector<HTREEITEM> nodes;
};

// A tree view of the system's own with the rows of a dossier.
class Bare {
public:
    explicit Bare(bench::Dossier& dossier) {
        auto rows = bench::RowsOf(dossier.tree);
        lclNodes = bench::FillBare(lclView, rows);
        SendMessageW(lclView, TVM_SELECTITEM, TVGN_CARET,
                     reinterpret_cast<LPARAM>(lclNodes.back()));
    }
    ~Bare() { DestroyWindow(lclView); }
    Bare(const Bare&) = delete;
    Bare& operator=(const Bare&) = delete;

    void Select() {
        for (int i = 0; i < 200; ++i)
            SendMessageW(lclView, TVM_SELECTITEM, TVGN_CARET,
                         reinterpret_cast<LPARAM>(lclNodes[lclNodes.size() - 40 - i % 2]));
    }
    void Delete() {
        for (int i = 0; i < 4; ++i, lclNodes.pop_back())
            TreeView_DeleteItem(lclView, lclNodes.back());
    }

private:
    HWND lclView = CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"",
                                   WS_OVERLAPPEDWINDOW | TVS_HASBUTTONS | TVS_HASLINES |
                                       TVS_LINESATROOT | TVS_SHOWSELALWAYS,
                                   0, 0, 300, 500, nullptr, nullptr, nullptr, nullptr);
    std::vector<HTREEITEM> lclNodes;
};

bool Against(const char* what, double bound, auto ours, auto peer) {
    return bench::AtMost(what, bench::Measure(ours, peer), bound);
}

bool Actions() {
    bench::Dossier large(500, documents), small(5, documents);
    Place there(large), here(small);
    Bare bare(large);
    bool good = Against(
        "prepare the menu, 50,001 nodes / 501", 2, [&] { there.Menu(); }, [&] { here.Menu(); });
    good &= Against(
        "change the selection of 50,001 nodes / of a bare tree view", 2, [&] { there.Select(); },
        [&] { bare.Select(); });
    good &= Against(
        "delete one of 50,001 nodes / one of 501 and one of a bare tree view", 2,
        [&] { there.Delete(); },
        [&] {
            here.Delete();
            bare.Delete();
        });
    large.tree.AttachWindow(nullptr);
    small.tree.AttachWindow(nullptr);
    good &= Against(
        "our part of a selection, 50,001 nodes / 501", 2, [&] { there.SelectAlone(); },
        [&] { here.SelectAlone(); });
    good &= Against(
        "our part of a deletion, 50,001 nodes / 501", 2, [&] { there.Delete(); },
        [&] { here.Delete(); });
    return good;
}

bool List() {
    bench::Dossier dossier(1, 100000);
    dossier.tree.SetListMode(true);
    auto& list = dossier.tree.Grid();
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < list.Count(); ++row)
        keys.push_back(platform::LowerCase(list.Text(row, 0)));
    std::printf("the list has %zu rows\n", keys.size());
    const auto times = bench::Measure([&] { list.HeadingClicked(0); },
                                      [&] {
                                          auto sorted = keys;
                                          std::stable_sort(sorted.begin(), sorted.end());
                                      });
    return bench::AtMost("click on a heading of the list mode / sorting the keys", times, 2) &&
           keys.size() == 100000;
}

} // namespace

int main() {
    OleInitialize(nullptr);
    const bool actions = Actions();
    return List() && actions ? 0 : 1;
}
