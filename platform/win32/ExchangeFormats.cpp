#include "platform/win32/ExchangeFormats.h"

#include <cstring>

#include <ole2.h>
#include <shlobj.h>

#include "platform/Error.h"
#include "platform/Exchange.h"

namespace kavidex::platform::win32 {

const ExchangeFormats& Formats() {
    const auto number = [](const wchar_t* name) {
        return static_cast<CLIPFORMAT>(RegisterClipboardFormatW(name));
    };
    static const ExchangeFormats formats{number(L"Kavidex Items"), number(CFSTR_FILEDESCRIPTORW),
                                         number(L"FileGroupDescriptor"), number(CFSTR_FILECONTENTS),
                                         number(CFSTR_PREFERREDDROPEFFECT)};
    return formats;
}

HGLOBAL NewBlock(const void* bytes, std::size_t size) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
    void* target = block ? GlobalLock(block) : nullptr;
    if (!target) return nullptr;
    std::memcpy(target, bytes, size);
    GlobalUnlock(block);
    return block;
}

Medium::Medium(IDataObject& data, FORMATETC wanted) {
    const HRESULT result = data.GetData(&wanted, &lclMedium);
    if (result == CLIPBRD_E_CANT_OPEN)
        throw Error(errors::clipboardHeld, "The clipboard is held open by another program");
    lclHeld = SUCCEEDED(result);
    if (lclHeld && lclMedium.tymed == TYMED_HGLOBAL && lclMedium.hGlobal)
        lclBytes = GlobalLock(lclMedium.hGlobal);
}

Medium::~Medium() {
    if (lclBytes) GlobalUnlock(lclMedium.hGlobal);
    if (lclHeld) ReleaseStgMedium(&lclMedium);
}

std::string_view Medium::Bytes() const {
    if (!lclBytes) return {};
    return {static_cast<const char*>(lclBytes), GlobalSize(lclMedium.hGlobal)};
}

} // namespace kavidex::platform::win32
