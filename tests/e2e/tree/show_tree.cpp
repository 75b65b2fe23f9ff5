// Shows the tree control in a plain window, for a look at it: show_tree [seconds] [list] [pick]
// [many] [properties]; with many it holds five thousand documents.
#include <windows.h>

#include <ole2.h>

#include <cstdlib>
#include <set>
#include <string>

#include "controls/tree/ctrlTree.h"
#include "controls/tree/win32/MakeTreeWindow.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Workstation.h"

using namespace kavidex;

int main(int count, char** arguments) {
    const std::set<std::string> words(arguments + 1, arguments + count);
    OleInitialize(nullptr);
    const auto& machine = platform::TheWorkstation();
    controls::ctrlTree tree(machine);
    const auto database = data::EmbeddedDatabase::CreateInMemory();
    data::clsUpdateDb update(platform::TheWorkstation());
    update.SetDbConnection(database);
    update.fncUpdateDb();
    tree.SetDbConnection(database);
    tree.CreateNew("Dossier Jansen", "Brieven;Facturen;Gescande stukken;E-mail");
    const auto add = [&](const char* type, const char* name, std::int32_t parent) {
        return tree.Add(0, type, nullptr, 1, name, parent)->Id();
    };
    const auto root = tree.Tree()->Item()->Id();
    const auto letters = tree.GetItem(0, "Brieven")->Id();
    const auto scans = tree.GetItem(0, "Gescande stukken")->Id();
    add("doc", "Bevestiging afspraak", letters);
    const auto pdf = add("pdf", "Offerte 2026-114", letters);
    add("nnt", "Nieuwe notitie 15-11-2026 14:05", letters);
    add("tif", "Paspoort, 4 pagina's", scans);
    add("001", "Fax van 12 november", scans);
    add("msg", "Re: uw aanvraag", tree.GetItem(0, "E-mail")->Id());
    const auto group = add("usergroup", "Balie", root);
    add("user", "jansen", group);
    add("txt", "Ongesorteerd", root);
    constexpr const char* types[] = {"tif", "pdf", "msg", "docx", "xlsx", "zip", "nnt"};
    for (int i = 0; words.contains("many") && i < 5000; ++i)
        add(types[i % 7], ("Document " + std::to_string(i)).c_str(), i % 2 ? letters : scans);
    tree.SetFullExpand(true);
    tree.SetSelectItems(words.contains("pick"));
    tree.SetListMode(words.contains("list"));
    tree.SetShowNumberOfChildren(true);

    const HWND host = CreateWindowExW(0, L"#32770", L"Tree", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40,
                                      40, 760, 560, nullptr, nullptr, nullptr, nullptr);
    RECT area{};
    GetClientRect(host, &area);
    const auto window = controls::win32::MakeTreeWindow(tree, machine);
    window->Create(host, {0, 0, area.right * 2 / 3, area.bottom});
    tree.SetHighLightToItem(pdf);
    if (!words.contains("list")) tree.NodeToggled(scans);
    if (words.contains("properties")) {
        tree.NodeSelected(pdf);
        tree.ChooseMenu({"mnuProperties", 0, {}});
    }
    window->TakeFocus();
    const UINT_PTR timer = SetTimer(
        nullptr, 0, 1000U * (count > 1 ? std::strtoul(arguments[1], nullptr, 10) : 10U), nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_TIMER && message.wParam == timer) break;
        if (!window->TranslateKey(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (message.message == WM_PAINT) {
            // Beside it the same control as it draws itself without a window.
            HDC device = GetDC(host);
            window->Draw(device, {area.right * 2 / 3 + 10, 0, area.right, area.bottom / 2});
            ReleaseDC(host, device);
        }
    }
    return 0;
}
