// The rights editor with 2,000 users of 26 rights each, read and shown, against the bare statements
// and a loop that inserts the same names into the same native tree.
#include <cstdio>
#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include "bench/ratio.h"
#include "controls/admin/ctlRights.h"
#include "controls/forms/win32/FormWindow.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsUserAuth.h"
#include "model/userRights.h"
#include "platform/Workstation.h"
#include "platform/win32/Variant.h"

using namespace kavidex;

namespace {

constexpr int groups = 20, usersOfGroup = 100;

std::string NameOf(int user) { return "Gebruiker " + std::to_string(user); }

data::ConnectionPtr Installation() {
    const auto& machine = platform::TheWorkstation();
    auto database = data::EmbeddedDatabase::CreateInMemory();
    data::clsUpdateDb update(machine);
    update.SetDbConnection(database);
    update.fncUpdateDb();
    const model::Store store(database);
    const auto place = model::MakeUserTree(machine, store, "Gebruikers en groepen");
    model::Transaction transaction(store, machine);
    for (int group = 0; group < groups; ++group) {
        const auto id = model::AddHolder(machine, store, place,
                                         {0, 0, true, "Groep " + std::to_string(group), {}});
        for (int user = group * usersOfGroup; user < (group + 1) * usersOfGroup; ++user) {
            model::AddHolder(machine, store, place, {0, id, false, NameOf(user), {}});
            for (const auto& right : model::Rights())
                database->Execute("insert into tblSettings (Section, SKey, [Value]) values ('" +
                                  model::RightsSection(NameOf(user)) + "', '" +
                                  std::string(right.key) + "', 'True')");
        }
    }
    transaction.Commit();
    return database;
}

struct Row {
    std::string id, text;
    bool group;
};

void Children(data::Connection& database, const std::string& parent, std::vector<Row>& rows) {
    const auto found = database.Open({"Select TreeItemId, Type, Description from tblTreeItem where "
                                      "ParentId = " +
                                      parent + " order by Description"});
    for (; !found->Eof(); found->MoveNext()) {
        const bool group = data::ToText(found->Get(1)) == "usergroup";
        rows.push_back(
            {data::ToText(found->Get(std::size_t{0})), data::ToText(found->Get(2)), group});
        if (group) Children(database, std::string(rows.back().id), rows);
    }
}

std::size_t Bare(data::Connection& database, const std::string& users, HWND view) {
    std::vector<Row> rows;
    Children(database, users, rows);
    std::size_t granted = 0;
    const auto rights = database.Open(
        {"Select * from tblSettings where Section like 'Rights.%' and sKey like '%'"});
    for (; !rights->Eof(); rights->MoveNext()) {
        const auto section = data::ToText(rights->Get("Section")),
                   key = data::ToText(rights->Get("sKey"));
        granted += !section.empty() && !key.empty() && data::ToText(rights->Get("Value")) == "True";
    }
    SendMessageW(view, WM_SETREDRAW, FALSE, 0);
    TreeView_DeleteAllItems(view);
    HTREEITEM group = nullptr;
    std::vector<HTREEITEM> open;
    for (const auto& row : rows) {
        auto text = platform::win32::ToWide(row.text);
        TVINSERTSTRUCTW insert{};
        insert.hParent = row.group || !group ? TVI_ROOT : group;
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
        insert.item.pszText = text.data();
        const auto item = reinterpret_cast<HTREEITEM>(
            SendMessageW(view, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
        if (row.group) open.push_back(group = item);
    }
    for (const auto item : open) TreeView_Expand(view, item, TVE_EXPAND);
    SendMessageW(view, WM_SETREDRAW, TRUE, 0);
    return granted;
}

} // namespace

int main() {
    OleInitialize(nullptr);
    const auto& machine = platform::TheWorkstation();
    const auto database = Installation();
    const auto users = std::to_string(model::FindUserTree(machine, model::Store(database)).users);
    controls::ctlRights editor(machine);
    controls::forms::win32::FormWindow window(editor.Form(), machine);
    const HWND frame = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 800, 600,
                                       nullptr, nullptr, nullptr, nullptr);
    if (!window.Create(frame, {0, 0, 780, 560})) return 1;
    editor.SetDbConnection(database);
    const HWND view = window.WindowOf("treUsers");
    std::size_t granted = 0;
    const auto times = bench::Measure([&] { editor.Refresh(); },
                                      [&] { granted = Bare(*database, users, view); }, 5);
    editor.Refresh();
    const auto shown = TreeView_GetCount(view);
    if (shown != groups + groups * usersOfGroup ||
        granted != std::size_t{26} * groups * usersOfGroup) {
        std::printf("%u names shown, %zu rights\n", static_cast<unsigned>(shown), granted);
        return 1;
    }
    return bench::AtMost("2,000 users with 26 rights / bare statements", times, 2) ? 0 : 1;
}
