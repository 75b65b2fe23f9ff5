// The clipboard formats of the house, and blocks of memory in them.
#pragma once

#include <cstddef>
#include <string_view>

#include <windows.h>

#include <objidl.h>

namespace kavidex::platform::win32 {

struct ExchangeFormats {
    CLIPFORMAT own, descriptorsWide, descriptorsNarrow, contents, effect;
};
const ExchangeFormats& Formats(); // registered on first use

inline FORMATETC Wanted(CLIPFORMAT format, LONG index = -1, DWORD media = TYMED_HGLOBAL) {
    return {format, nullptr, DVASPECT_CONTENT, index, media};
}

// Null when memory is short.
HGLOBAL NewBlock(const void* bytes, std::size_t size);

// What a data object answers for one format. Throws platform::Error when it is the clipboard and
// another program holds it.
class Medium {
public:
    Medium(IDataObject& data, FORMATETC wanted);
    ~Medium();
    Medium(const Medium&) = delete;
    Medium& operator=(const Medium&) = delete;

    explicit operator bool() const { return lclHeld; }
    const STGMEDIUM& Get() const { return lclMedium; }
    // The block's bytes; empty when it is no block.
    std::string_view Bytes() const;

private:
    STGMEDIUM lclMedium{};
    bool lclHeld = false;
    void* lclBytes = nullptr;
};

} // namespace kavidex::platform::win32
