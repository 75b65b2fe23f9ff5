// Shows the sample form: show_form [seconds] [page] [extra pixels it is made larger]; on page 0 the
// properties of a document.
#include <windows.h>

#include <ole2.h>

#include <cstdlib>

#include "controls/forms/Form.h"
#include "controls/forms/win32/WindowsForms.h"
#include "controls/tree/ctrlTree.h"
#include "controls/tree/frmProperties.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Workstation.h"
#include "tests/unit/controls/SampleForm.h"

using namespace kavidex;
using controls::forms::Item;

namespace {

int larger = 0;

void Fill(controls::forms::Form& form) {
    form["txtName"].SetText("Brief van Jansen");
    form["txtPath"].SetText("C:\\Documenten\\2026");
    form["cmbKind"].Select(2);
    form["picIcon"].SetIcon("closedtab");
    form["optList"].SetChecked(true);
    form["chkReadOnly"].SetChecked(true);
    form["prgDone"].SetProgress(3, 5);
    form["txtNote"].SetText("Eerste regel\nTweede regel");
    form["btnApply"].SetEnabled(false);
    form["treTypes"].SetItems({{1, {"Dossier"}, 0, "opentab", false, true},
                               {2, {"Brieven"}, 1, "closedtab", true},
                               {3, {"Facturen"}, 1, "closedtab"}});
    form["lstFiles"].SetItems({{1, {"Offerte 2026-114", "12 KB", "Brief"}, 0, ".txt"},
                               {2, {"Bevestiging afspraak", "8 KB", "Nota"}, 0, ".txt", true}});
    form["lstFiles"].Sort(0, false);
    form["lstFiles"].Select(1);
}

void ShowProperties(controls::forms::FormPresenter& forms) {
    const auto& machine = platform::TheWorkstation();
    controls::ctrlTree tree(machine);
    const auto database = data::EmbeddedDatabase::CreateInMemory();
    data::clsUpdateDb update(machine);
    update.SetDbConnection(database);
    update.fncUpdateDb();
    tree.SetDbConnection(database);
    tree.CreateNew("Dossier Jansen", "Brieven");
    const auto root = tree.Tree()->Item()->Id();
    controls::frmProperties properties(machine, database, nullptr);
    properties.fncFill({tree.Add(0, "txt", nullptr, 1, "Bevestiging van de afspraak", root)});
    forms.ShowModal(properties.Form());
}

void CALLBACK Grow(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    const HWND dialog = GetActiveWindow();
    RECT place;
    GetWindowRect(dialog, &place);
    SetWindowPos(dialog, nullptr, 0, 0, place.right - place.left + larger,
                 place.bottom - place.top + larger, SWP_NOMOVE | SWP_NOZORDER);
}

void CALLBACK Finish(HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(0); }

} // namespace

int main(int count, char** arguments) {
    const auto number = [&](int at, int otherwise) {
        return count > at ? std::atoi(arguments[at]) : otherwise;
    };
    OleInitialize(nullptr);
    const HWND host = CreateWindowExW(0, L"#32770", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20,
                                      20, 1100, 760, nullptr, nullptr, nullptr, nullptr);
    controls::forms::Form form(tests::sample::layout, platform::TheWorkstation());
    Fill(form);
    form["TabStrip1"].Select(number(2, 1));
    larger = number(3, 0);
    if (larger) SetTimer(nullptr, 0, 500, Grow);
    SetTimer(nullptr, 0, 1000U * static_cast<UINT>(number(1, 8)), Finish);
    controls::forms::win32::WindowsForms forms(platform::TheWorkstation(), [host] { return host; });
    if (number(2, 1) == 0) {
        ShowProperties(forms);
        return 0;
    }
    return forms.ShowModal(form) ? 0 : 1;
}
