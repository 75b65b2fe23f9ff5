#include "platform/win32/WindowsClipboard.h"

#include <windows.h>

#include <ole2.h>

#include "platform/Error.h"
#include "platform/win32/DataObject.h"
#include "platform/win32/ExchangeFormats.h"
#include "platform/win32/Late.h"

namespace kavidex::platform::win32 {

namespace {

constexpr int tries = 8;
constexpr DWORD pauseMilliseconds = 25;

// A host that has not done so itself.
struct OleScope {
    HRESULT result = OleInitialize(nullptr);
    ~OleScope() {
        if (SUCCEEDED(result)) OleUninitialize();
    }
};

// Other programs hold the clipboard for a moment at every change.
template <class Step>
void Demand(Step step) {
    HRESULT result = step();
    for (int i = 1; i < tries && result == CLIPBRD_E_CANT_OPEN; ++i) {
        Sleep(pauseMilliseconds);
        result = step();
    }
    if (result == CLIPBRD_E_CANT_OPEN)
        throw Error(errors::clipboardHeld, "The clipboard is held open by another program");
    if (FAILED(result))
        throw Error(static_cast<std::int32_t>(result),
                    "The clipboard cannot be used: " + HresultText(result));
}

} // namespace

bool WindowsClipboard::HasFiles() { return IsClipboardFormatAvailable(CF_HDROP); }
bool WindowsClipboard::HasText() {
    return IsClipboardFormatAvailable(CF_UNICODETEXT) || IsClipboardFormatAvailable(CF_TEXT);
}
bool WindowsClipboard::HasOwn() { return IsClipboardFormatAvailable(Formats().own); }

ExchangeData WindowsClipboard::Read() {
    const OleScope ole;
    // Asked for at the start: a source that answers each format by itself hides who holds it.
    Demand([] {
        if (!OpenClipboard(nullptr)) return CLIPBRD_E_CANT_OPEN;
        CloseClipboard();
        return S_OK;
    });
    ComPtr<IDataObject> data;
    Demand([&] { return OleGetClipboard(data.Put()); });
    return ReadExchange(*data);
}

void WindowsClipboard::Write(const ExchangeData& data) {
    const OleScope ole;
    const auto object = MakeDataObject(data);
    Demand([&] { return OleSetClipboard(object.Get()); });
    Demand([] { return OleFlushClipboard(); });
}

} // namespace kavidex::platform::win32
