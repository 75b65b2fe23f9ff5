// Shows the viewer in a plain window: show_viewer KIND [seconds [COMMAND...]]. KIND is list, note,
// mail, page, program, missing, elsewhere, nothing, external, or the path of a file. COMMAND is a
// button or a menu entry of the viewer, or marks, which draws some.
#include <windows.h>

#include <ole2.h>

#include <cstdlib>
#include <string_view>

#include "controls/viewer/NoteFile.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "controls/viewer/win32/ExternalWindowWin32.h"
#include "controls/viewer/win32/MakeViewerWindow.h"
#include "tests/e2e/viewer/Archive.h"

using namespace kavidex;

namespace {

constexpr char noteText[] =
    "Belde over \"100 %\" dekking.\r\nTerugbellen v\xC3\xB3\xC3\xB3r vrijdag.";

void ShowKind(controls::ctlViewer& viewer, controls::ctrlExtViewer& external,
              tests::Archive& archive, std::string_view kind) {
    using std::string;
    if (kind == "list") {
        for (const char* type : {"tif", "pdf", "doc", "nnt", "txt"})
            archive.Document(type, string("Stuk van type ") + type, "x");
        archive.Document("msg", "Mail van de schadedienst", "x", "Schadedienst");
        viewer.ShowList(archive.folder);
        viewer.Views().list.List().HeadingClicked(0);
    } else if (kind == "note") {
        viewer.ShowItem(archive.Document(
            "nnt", "Notitie",
            controls::WriteNote("Gemaakt door: 'jansen' Op: '15-11-2026' om '14:05:09'",
                                noteText)));
    } else if (kind == "mail") {
        viewer.ShowItem(archive.Document("msg", "Mail", "x"));
    } else if (kind == "page") {
        viewer.ShowItem(archive.Document("htm", "Pagina van de verzekeraar", "<p>Pagina</p>"));
    } else if (kind == "program") {
        viewer.ShowItem(archive.Document("vbs", "Script", "MsgBox 1"));
    } else if (kind == "missing") {
        viewer.ShowItem(archive.Document("pdf", "Weg", ""));
    } else if (kind == "elsewhere") {
        viewer.ShowElsewhere(archive.Document("pdf", "Offerte", "x"),
                             "Dit document wordt in een eigen venster getoond.");
    } else if (kind == "external") {
        external.ShowItem(archive.Document("txt", "Bevestiging van de afspraak", "x"));
    } else if (kind != "nothing") {
        auto& files = platform::TheWorkstation().files;
        viewer.ShowItem(archive.Document(platform::Extension(kind), platform::FileName(kind),
                                         files.ReadAll(kind)));
    }
}

void DrawMarks(controls::ImageView& pages) {
    using controls::MarkTool;
    auto& canvas = pages.Canvas();
    auto& editor = pages.Editor();
    int x = canvas.Geometry().OriginX() + 30, y = canvas.Geometry().OriginY() + 60;
    editor.SetStamp("Akkoord 15-11-2026");
    for (const auto tool : {MarkTool::HollowRectangle, MarkTool::FilledRectangle,
                            MarkTool::Highlighter, MarkTool::Line, MarkTool::Stamp}) {
        editor.SetTool(tool);
        canvas.PointerDown(x, y);
        canvas.PointerMoved(x + 120, y + 24);
        canvas.PointerUp(x + 120, y + 24);
        x += 24;
        y += 48;
    }
    editor.SetTool(MarkTool::Select);
}

void Do(controls::ctlViewer& viewer, std::string_view command) {
    if (command == "marks")
        DrawMarks(viewer.Views().image);
    else if (command.starts_with("mnu"))
        viewer.MenuChosen({std::string(command), 0, {}});
    else
        viewer.ButtonClicked(command);
}

void CALLBACK Finish(HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(0); }

} // namespace

int main(int count, char** arguments) {
    OleInitialize(nullptr);
    const auto& machine = platform::TheWorkstation();
    tests::Archive archive(machine, machine.files.TemporaryFolder() + "kavidex-store-" +
                                        std::to_string(GetTickCount()));
    controls::ctlViewer viewer(machine);
    viewer.SetDbConnection(archive.database);
    controls::ctrlExtViewer external(machine);
    external.SetDbConnection(archive.database);
    external.SetWindowMaker(controls::win32::ExternalWindows(machine));
    const HWND host = CreateWindowExW(0, L"#32770", L"Viewer", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40,
                                      40, 1000, 640, nullptr, nullptr, nullptr, nullptr);
    RECT area{};
    GetClientRect(host, &area);
    const auto window = controls::win32::MakeViewerWindow(viewer, machine);
    window->Create(host, area);
    SetTimer(nullptr, 0, 1000U * (count > 2 ? std::strtoul(arguments[2], nullptr, 10) : 10U),
             Finish);
    ShowKind(viewer, external, archive, count > 1 ? arguments[1] : "nothing");
    viewer.SetAnnotationsPopupShown(true);
    for (int i = 3; i < count; ++i) Do(viewer, arguments[i]);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (window->TranslateKey(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
