#include "platform/win32/WindowsPrinters.h"

#include <commdlg.h>
#include <winspool.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/Error.h"
#include "platform/win32/Failure.h"
#include "platform/win32/GdiPrintJob.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

// Movable memory, as the dialog takes and gives it.
class Movable {
public:
    explicit Movable(std::string_view bytes = {}) {
        if (bytes.empty()) return;
        handle = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
        if (void* room = handle ? GlobalLock(handle) : nullptr) {
            std::memcpy(room, bytes.data(), bytes.size());
            GlobalUnlock(handle);
        }
    }
    ~Movable() {
        if (handle) GlobalFree(handle);
    }
    Movable(const Movable&) = delete;
    Movable& operator=(const Movable&) = delete;

    std::string Bytes() const {
        const void* room = handle ? GlobalLock(handle) : nullptr;
        if (!room) return {};
        std::string bytes(static_cast<const char*>(room), GlobalSize(handle));
        GlobalUnlock(handle);
        return bytes;
    }

    HGLOBAL handle = nullptr;
};

struct Names {
    std::wstring device, port;
};

Names NamesIn(const std::string& bytes) {
    DEVNAMES places;
    if (bytes.size() < sizeof places) return {};
    std::memcpy(&places, bytes.data(), sizeof places);
    const auto text = [&](WORD offset) {
        std::wstring found;
        for (std::size_t at = offset * sizeof(wchar_t); at + sizeof(wchar_t) <= bytes.size();
             at += sizeof(wchar_t)) {
            wchar_t letter;
            std::memcpy(&letter, bytes.data() + at, sizeof letter);
            if (letter == 0) break;
            found += letter;
        }
        return found;
    };
    return {text(places.wDeviceOffset), text(places.wOutputOffset)};
}

// What the driver can do itself is left to it: the pages go to the printer once.
void ShareCopies(PrintChoice& choice, const Names& names) {
    if (choice.settings.size() < sizeof(DEVMODEW)) return;
    auto& mode = *reinterpret_cast<DEVMODEW*>(choice.settings.data());
    const auto can = [&](WORD what) {
        return DeviceCapabilitiesW(names.device.c_str(), names.port.c_str(), what, nullptr, &mode);
    };
    const bool byPrinter = choice.copies > 1 && can(DC_COPIES) >= choice.copies &&
                           (!choice.collate || can(DC_COLLATE) > 0);
    mode.dmFields |= DM_COPIES;
    mode.dmCopies = static_cast<short>(byPrinter ? choice.copies : 1);
    if (!byPrinter) return;
    if (choice.collate) {
        mode.dmFields |= DM_COLLATE;
        mode.dmCollate = DMCOLLATE_TRUE;
    }
    choice.copies = 1;
}

} // namespace

std::optional<PrintChoice> WindowsPrinters::Ask(int pages) {
    Movable mode(lclMode), names(lclNames);
    PRINTDLGW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = Owner();
    dialog.hInstance = OwnModule();
    dialog.hDevMode = mode.handle;
    dialog.hDevNames = names.handle;
    dialog.nCopies = 1;
    dialog.Flags = PD_ALLPAGES | PD_COLLATE | PD_HIDEPRINTTOFILE | PD_NOSELECTION;
    if (pages > 1) {
        dialog.nMinPage = dialog.nFromPage = 1;
        dialog.nMaxPage = dialog.nToPage = static_cast<WORD>(std::min(pages, 0xFFFF));
    } else {
        dialog.Flags |= PD_NOPAGENUMS;
    }
    const bool chosen = PrintDlgW(&dialog);
    mode.handle = dialog.hDevMode; // the dialog gives others in their place
    names.handle = dialog.hDevNames;
    if (!chosen) {
        const DWORD cause = CommDlgExtendedError();
        if (cause == 0) return std::nullopt;
        if (!lclMode.empty()) { // the printer of last time may be gone
            lclMode.clear();
            lclNames.clear();
            return Ask(pages);
        }
        throw Error(errors::fail,
                    "The print dialog could not be shown (" + std::to_string(cause) + ")");
    }
    lclMode = mode.Bytes();
    lclNames = names.Bytes();
    const auto named = NamesIn(lclNames);
    PrintChoice choice;
    choice.printer = FromWide(named.device);
    choice.copies = std::max<int>(dialog.nCopies, 1);
    choice.collate = dialog.Flags & PD_COLLATE;
    if (dialog.Flags & PD_PAGENUMS) {
        choice.from = dialog.nFromPage;
        choice.to = dialog.nToPage;
    }
    choice.settings = lclMode;
    ShareCopies(choice, named);
    return choice;
}

std::unique_ptr<PrintJob> WindowsPrinters::Begin(const PrintChoice& choice,
                                                 std::string_view title) {
    return BeginGdiJob(choice, title);
}

} // namespace kavidex::platform::win32
