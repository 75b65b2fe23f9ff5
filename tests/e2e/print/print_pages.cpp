// Prints the pages of a scanned document on a printer of its own whose port is a file.
//   print_pages PPD OUTPUT.ps DOCUMENT.tif
#include <windows.h>
#include <winspool.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "controls/print/PagePrinter.h"
#include "controls/print/TiffPages.h"
#include "platform/Error.h"
#include "platform/win32/WindowsFiles.h"
#include "platform/win32/WindowsPrinters.h"

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

} // namespace

int main(int count, char** arguments) {
    if (count < 4) return 2;
    const std::wstring name = L"Kavidex test printer";
    RemovePrinter(name);
    AddPrinterTo(Wide(arguments[2]), AddDriver(arguments[1]), name);
    int rc = 0;
    try {
        platform::win32::WindowsFiles files;
        platform::win32::WindowsPrinters printers;
        controls::TiffPages pages(files, arguments[3], nullptr);
        const auto printed =
            controls::PrintPages(printers, {"Kavidex test printer", 0, 0, 1, false, {}},
                                 "Scanned pages", pages, [](int, int) { return true; });
        std::printf("printed %d pages%s\n", pages.Count(), printed.damage.c_str());
        try { // a printer that is gone is told, and nothing is printed
            RemovePrinter(name);
            controls::PrintPages(printers, {"Kavidex test printer", 0, 0, 1, false, {}}, "Again",
                                 pages, [](int, int) { return true; });
            std::puts("printed on no printer");
        } catch (const platform::Error& error) {
            std::printf("refused: %s\n", error.what());
        }
    } catch (const std::exception& error) {
        std::printf("failed: %s\n", error.what());
        rc = 1;
    }
    RemovePrinter(name);
    return rc;
}
