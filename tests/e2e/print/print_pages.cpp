// Prints the pages of a scanned document on a printer of its own whose port is a file: by
// themselves (job.ps), as the viewer's buttons print them (viewer.ps) and by their thumbnails
// (thumbs.ps).
//   print_pages PPD FOLDER DOCUMENT.tif
#include <windows.h>
#include <winspool.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "controls/print/PagePrinter.h"
#include "controls/print/TiffPages.h"
#include "controls/viewer/ViewerViews.h"
#include "platform/Error.h"
#include "platform/win32/WindowsFiles.h"
#include "platform/win32/WindowsPrinters.h"
#include "tests/e2e/viewer/Archive.h"
#include "tests/fakes/FakeViewerWindow.h"
#include "tests/fakes/FakeWorkstation.h"

namespace {

using namespace kavidex;

std::wstring Wide(const char* text) { return {text, text + std::char_traits<char>::length(text)}; }

void Need(bool done, const char* what) {
    if (done) return;
    std::printf("%s: error %lu\n", what, GetLastError());
    std::exit(2);
}

std::wstring AddDriver(const char* ppd) {
    wchar_t folder[MAX_PATH];
    DWORD needed = 0;
    Need(GetPrinterDriverDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(folder),
                                    sizeof folder, &needed),
         "the folder of drivers");
    CreateDirectoryW((std::wstring(folder) + L"\\3").c_str(), nullptr);
    const std::wstring data = std::wstring(folder) + L"\\3\\kavidex.ppd";
    Need(CopyFileW(Wide(ppd).c_str(), data.c_str(), FALSE), "the driver's data");
    std::wstring name = L"PS Driver", file = L"wineps.drv", path = data,
                 environment = sizeof(void*) == 8 ? L"Windows x64" : L"Windows NT x86";
    DRIVER_INFO_3W driver{};
    driver.cVersion = 3;
    driver.pName = name.data();
    driver.pEnvironment = environment.data();
    driver.pDriverPath = driver.pConfigFile = file.data();
    driver.pDataFile = path.data();
    Need(AddPrinterDriverW(nullptr, 3, reinterpret_cast<BYTE*>(&driver)), "the driver");
    return name;
}

void AddPrinterTo(const std::wstring& port, std::wstring driver, std::wstring name) {
    std::wstring processor = L"WinPrint", kind = L"RAW", file = port;
    PRINTER_INFO_2W printer{};
    printer.pPrinterName = name.data();
    printer.pPortName = file.data();
    printer.pDriverName = driver.data();
    printer.pPrintProcessor = processor.data();
    printer.pDatatype = kind.data();
    HANDLE handle = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&printer));
    Need(handle, "the printer");
    ClosePrinter(handle);
}

void RemovePrinter(std::wstring name) {
    PRINTER_DEFAULTSW rights{nullptr, nullptr, PRINTER_ALL_ACCESS};
    HANDLE handle = nullptr;
    if (!OpenPrinterW(name.data(), &handle, &rights)) return;
    DeletePrinter(handle);
    ClosePrinter(handle);
}

const platform::PrintChoice choice{"Kavidex test printer", 0, 0, 1, false, {}};

// The printers of Windows, with a user who takes that one and leaves the rest as it is offered.
class ChosenPrinter final : public platform::Printers {
public:
    int offered = -1; // pages, of the last job

    std::optional<platform::PrintChoice> Ask(int pages) override {
        offered = pages;
        return choice;
    }
    std::unique_ptr<platform::PrintJob> Begin(const platform::PrintChoice& on,
                                              std::string_view title) override {
        return lclPrinters.Begin(on, title);
    }

private:
    platform::win32::WindowsPrinters lclPrinters;
};

struct PrintingShell final : tests::FakeShell {
    ChosenPrinter chosen;
    platform::Printers& Printers() override { return chosen; }
};

void PrintByItself(const std::string& document) {
    platform::win32::WindowsFiles files;
    platform::win32::WindowsPrinters printers;
    controls::TiffPages pages(files, document, nullptr);
    const auto printed = controls::PrintPages(printers, choice, "Scanned pages", pages,
                                              [](int, int) { return true; });
    std::printf("printed %d pages%s\n", pages.Count(), printed.damage.c_str());
    try { // a printer that is gone is told, and nothing is printed
        RemovePrinter(Wide(choice.printer.c_str()));
        controls::PrintPages(printers, choice, "Again", pages, [](int, int) { return true; });
        std::puts("printed on no printer");
    } catch (const platform::Error& error) {
        std::printf("refused: %s\n", error.what());
    }
}

// A black mark on the first page, the second one turned, nothing of it saved; then the first and
// the third by their thumbnails, without marks. `printTo` has the next job go to that file.
template <class PrintTo>
void PrintFromViewer(const std::string& document, const PrintTo& printTo) {
    tests::FakeWorkstation fake;
    PrintingShell shell;
    const platform::Workstation machine{fake.registry, fake.files,    fake.clock, fake.user,
                                        fake.guids,    fake.messages, fake.busy,  shell,
                                        fake.log,      fake.clipboard};
    tests::Archive archive(machine, fake.Path("store"));
    controls::ctlViewer viewer(machine);
    tests::FakeViewerWindow window(viewer);
    viewer.SetDbConnection(archive.database);
    viewer.SetAnnotationsPopupShown(true);
    if (!viewer.ShowItem(archive.Document("tif", "Polis", fake.files.ReadAll(document))))
        throw platform::Error(platform::errors::fail, "the scan is not shown");
    auto& pages = viewer.Views().image;
    auto& canvas = pages.Canvas();
    canvas.SetRoom(800, 600, 16, 0);
    viewer.ButtonClicked("Toolbox");
    pages.Toolbox().ButtonClicked("FilledRectangle");
    const auto& room = canvas.Geometry();
    const auto across = [&](double part) {
        return room.OriginX() + static_cast<int>(room.ShownWidth() * part);
    };
    const auto down = [&](double part) {
        return room.OriginY() + static_cast<int>(room.ShownHeight() * part);
    };
    canvas.PointerDown(across(0.25), down(0.5));
    canvas.PointerMoved(across(0.75), down(0.75));
    canvas.PointerUp(across(0.75), down(0.75));
    viewer.SetNextPage();
    viewer.ButtonClicked("Rotate90R");
    printTo("viewer.ps");
    viewer.ButtonClicked("Print");
    std::printf("viewer: %d pages offered\n", shell.chosen.offered);

    viewer.ButtonClicked("Annotations");
    viewer.ButtonClicked("ThumbNails");
    pages.Thumbs().Clicked(1, false, false);
    pages.Thumbs().Clicked(3, true, false);
    printTo("thumbs.ps");
    viewer.MenuChosen({"mnuPrintThumbs", 0, {}});
    std::printf("thumbs: %d pages offered\n", shell.chosen.offered);
    for (const auto& message : fake.messages.shown) std::printf("told: %s\n", message.text.c_str());
}

} // namespace

int main(int count, char** arguments) {
    if (count < 4) return 2;
    const std::wstring name = Wide(choice.printer.c_str());
    const auto driver = AddDriver(arguments[1]);
    const auto printTo = [&](const std::string& file) {
        RemovePrinter(name);
        AddPrinterTo(Wide((arguments[2] + ("\\" + file)).c_str()), driver, name);
    };
    int rc = 0;
    try {
        printTo("job.ps");
        PrintByItself(arguments[3]);
        PrintFromViewer(arguments[3], printTo);
    } catch (const std::exception& error) {
        std::printf("failed: %s\n", error.what());
        rc = 1;
    }
    RemovePrinter(name);
    return rc;
}
