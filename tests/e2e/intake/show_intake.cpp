// Shows the binder in a plain window as documents come in: show_intake KIND [seconds]. KIND is
// scan, new, letters, folder, attachment, delivery or refused. The stand-ins must be registered.
#include <windows.h>

#include <ole2.h>

#include <cstdlib>
#include <string_view>

#include "controls/binder/ctrlCorrespondence.h"
#include "controls/binder/win32/MakeBinderWindow.h"
#include "controls/intake/win32/WordGenerator.h"
#include "controls/tree/ctrlTree.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "mail/win32/OutlookSource.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "tests/fakes/SmallTiff.h"

using namespace kavidex;

namespace {

const platform::Workstation& machine = platform::TheWorkstation();
std::string_view kind;
controls::ctrlCorrespondence* shown = nullptr;

std::string Write(const std::string& path, const std::string& bytes) {
    machine.files.CreateDirectories(platform::FolderOf(path));
    machine.files.WriteAll(path, bytes);
    return path;
}

void Act(controls::ctrlCorrespondence& binder, const std::string& folder) {
    const auto root = binder.treCorr().Tree()->Item()->Id();
    const auto drop = [&](std::vector<std::string> files) {
        controls::DropData data;
        data.hasFiles = true;
        data.files = std::move(files);
        binder.treCorr().Dropped(data, root);
    };
    if (kind == "scan") {
        binder.ButtonClicked("Scan");
    } else if (kind == "new" || kind == "letters") {
        binder.treCorr().SetHighLightToItem(root);
        binder.ButtonClicked("New");
    } else if (kind == "folder") {
        Write(folder + "Scans\\key\\a.tif", tests::SmallTiff("a"));
        binder.fncCheckDocumentQueue({});
    } else if (kind == "delivery") {
        drop({folder + "Post"});
    } else if (kind == "refused") {
        std::vector<std::string> files;
        for (int i = 1; i < 12; ++i) files.push_back(folder + "weg " + std::to_string(i) + ".pdf");
        binder.AddFiles(files, "", 0, false, true);
    } else if (kind == "attachment") {
        controls::DropData data;
        data.hasText = true;
        data.text = "mail";
        binder.treCorr().Dropped(data, root);
    }
}

std::string folderOfAll;

void CALLBACK Begin(HWND window, UINT, UINT_PTR timer, DWORD) {
    KillTimer(window, timer);
    Act(*shown, folderOfAll);
}

void CALLBACK Finish(HWND, UINT, UINT_PTR, DWORD) { ExitProcess(0); }

} // namespace

int main(int count, char** arguments) {
    kind = count > 1 ? arguments[1] : "scan";
    OleInitialize(nullptr);
    folderOfAll =
        machine.files.TemporaryFolder() + "kavidex-intake-" + std::to_string(GetTickCount()) + "\\";
    const auto store = folderOfAll + "store";
    machine.files.CreateDirectories(store);
    for (const char* name : {"Uitnodiging.docx", "Bevestiging.dot", "Zaken\\Machtiging.dotx"})
        Write(folderOfAll + "sjablonen\\" + name, "x");
    Write(folderOfAll + "Post\\a.txt", "a");

    const auto database = data::EmbeddedDatabase::CreateInMemory();
    controls::ctrlCorrespondence binder(
        machine, nullptr, nullptr,
        {mail::win32::MakeMailSource(), controls::win32::MakeLetterGenerator});
    binder.SetDbConnection(database);
    data::clsSettings settings(machine);
    settings.SetDbConnection(database);
    settings.SetSetting("Storage", "DocumentPath", store);
    settings.SetSetting("Template", "Path", folderOfAll + "sjablonen");
    settings.SetSetting("DossierSettings", "ScanQueue", folderOfAll + "Scans");
    shown = &binder;
    const HWND host = CreateWindowExW(0, L"#32770", L"Intake", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40,
                                      40, 1000, 640, nullptr, nullptr, nullptr, nullptr);
    RECT area{};
    GetClientRect(host, &area);
    const auto window = controls::win32::MakeBinderWindow(binder, machine);
    window->Create(host, area);
    binder.OpenOrCreate("key", "Dossier van de heer Jansen", "Correspondentie;Polissen", "", "");
    binder.SetLayout(3);
    SetTimer(nullptr, 0, 300, Begin);
    SetTimer(nullptr, 0, 1000U * (count > 2 ? std::strtoul(arguments[2], nullptr, 10) : 10U),
             Finish);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (window->TranslateKey(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
