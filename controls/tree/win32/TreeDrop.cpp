#include "controls/tree/win32/TreeDrop.h"

#include <cstring>
#include <utility>

#include <shellapi.h>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

using platform::win32::ComPtr;
using platform::win32::Counted;

namespace {

FORMATETC Format(CLIPFORMAT format) {
    return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
}

class Medium {
public:
    Medium(IDataObject& data, CLIPFORMAT format) {
        FORMATETC wanted = Format(format);
        lclHeld = SUCCEEDED(data.GetData(&wanted, &lclMedium));
        if (lclHeld && lclMedium.tymed == TYMED_HGLOBAL) lclBytes = GlobalLock(lclMedium.hGlobal);
    }
    ~Medium() {
        if (lclBytes) GlobalUnlock(lclMedium.hGlobal);
        if (lclHeld) ReleaseStgMedium(&lclMedium);
    }
    Medium(const Medium&) = delete;
    Medium& operator=(const Medium&) = delete;

    const void* Bytes() const { return lclBytes; }
    std::size_t Size() const { return GlobalSize(lclMedium.hGlobal); }
    HDROP Files() const { return static_cast<HDROP>(lclMedium.hGlobal); }

private:
    STGMEDIUM lclMedium{};
    bool lclHeld = false;
    void* lclBytes = nullptr;
};

// The text, and nothing but the text, as the data of a drag.
class TextData : public Counted<IDataObject> {
public:
    explicit TextData(std::wstring text) : lclText(std::move(text)) {}
    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override {
        if (!format || !medium) return E_POINTER;
        if (QueryGetData(format) != S_OK) return DV_E_FORMATETC;
        const std::size_t size = (lclText.size() + 1) * sizeof(wchar_t);
        medium->tymed = TYMED_HGLOBAL;
        medium->pUnkForRelease = nullptr;
        medium->hGlobal = GlobalAlloc(GMEM_MOVEABLE, size);
        void* bytes = medium->hGlobal ? GlobalLock(medium->hGlobal) : nullptr;
        if (!bytes) return E_OUTOFMEMORY;
        std::memcpy(bytes, lclText.c_str(), size);
        GlobalUnlock(medium->hGlobal);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override {
        const bool known = format && format->cfFormat == CF_UNICODETEXT &&
                           (format->tymed & TYMED_HGLOBAL) && format->dwAspect == DVASPECT_CONTENT;
        return known ? S_OK : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* result) override {
        if (result) result->ptd = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override {
        if (!formats) return E_POINTER;
        *formats = nullptr;
        if (direction != DATADIR_GET) return E_NOTIMPL;
        FORMATETC format = Format(CF_UNICODETEXT);
        return CreateFormatEnumerator(1, &format, formats);
    }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }

private:
    static HRESULT CreateFormatEnumerator(UINT count, FORMATETC* formats, IEnumFORMATETC** result) {
        // The shell's enumerator, found at run time since not every import library names it.
        using Function = HRESULT(WINAPI*)(UINT, const FORMATETC*, IEnumFORMATETC**);
        const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"shell32.dll"), "SHCreateStdEnumFmtEtc")));
        return function ? function(count, formats, result) : E_NOTIMPL;
    }

    std::wstring lclText;
};

class Source : public Counted<IDropSource> {
public:
    HRESULT STDMETHODCALLTYPE QueryContinueDrag(BOOL escape, DWORD keys) override {
        if (escape) return DRAGDROP_S_CANCEL;
        return keys & MK_LBUTTON ? S_OK : DRAGDROP_S_DROP;
    }
    HRESULT STDMETHODCALLTYPE GiveFeedback(DWORD) override { return DRAGDROP_S_USEDEFAULTCURSORS; }
};

} // namespace

DropData ReadDropData(IDataObject& data) {
    DropData result;
    if (const Medium files(data, CF_HDROP); files.Bytes()) {
        result.hasFiles = true;
        const UINT count = DragQueryFileW(files.Files(), 0xFFFFFFFF, nullptr, 0);
        for (UINT i = 0; i < count; ++i) {
            std::wstring path(DragQueryFileW(files.Files(), i, nullptr, 0) + 1, L'\0');
            path.resize(
                DragQueryFileW(files.Files(), i, path.data(), static_cast<UINT>(path.size())));
            result.files.push_back(platform::win32::FromWide(path));
        }
    }
    if (const Medium text(data, CF_UNICODETEXT); text.Bytes()) {
        const auto* wide = static_cast<const wchar_t*>(text.Bytes());
        result.hasText = true;
        result.text = platform::win32::FromWide({wide, wcsnlen(wide, text.Size() / sizeof *wide)});
    } else if (const Medium narrow(data, CF_TEXT); narrow.Bytes()) {
        const auto* bytes = static_cast<const char*>(narrow.Bytes());
        const auto length = static_cast<int>(strnlen(bytes, narrow.Size()));
        std::wstring wide(static_cast<std::size_t>(length), L'\0');
        wide.resize(static_cast<std::size_t>(
            MultiByteToWideChar(CP_ACP, 0, bytes, length, wide.data(), length)));
        result.hasText = true;
        result.text = platform::win32::FromWide(wide);
    }
    return result;
}

DWORD DragText(const std::string& text) {
    const auto data = ComPtr<IDataObject>::Attach(new TextData(platform::win32::ToWide(text)));
    const auto source = ComPtr<IDropSource>::Attach(new Source);
    DWORD effect = DROPEFFECT_NONE;
    const HRESULT result =
        DoDragDrop(data.Get(), source.Get(), DROPEFFECT_MOVE | DROPEFFECT_COPY, &effect);
    return result == DRAGDROP_S_DROP ? effect : DROPEFFECT_NONE;
}

void TreeDropTarget::Report(DragState state, POINTL point, DWORD* effect) {
    const auto wanted =
        lclReceiver ? lclReceiver->DragMoved(state, lclData, {point.x, point.y}) : drop::none;
    if (effect) *effect &= static_cast<DWORD>(wanted);
}

HRESULT TreeDropTarget::DragEnter(IDataObject* data, DWORD, POINTL point, DWORD* effect) {
    lclData = data ? ReadDropData(*data) : DropData{};
    Report(DragState::Enter, point, effect);
    return S_OK;
}

HRESULT TreeDropTarget::DragOver(DWORD, POINTL point, DWORD* effect) {
    Report(DragState::Over, point, effect);
    return S_OK;
}

HRESULT TreeDropTarget::DragLeave() {
    Report(DragState::Leave, {}, nullptr);
    lclData = {};
    return S_OK;
}

HRESULT TreeDropTarget::Drop(IDataObject* data, DWORD, POINTL point, DWORD* effect) {
    const auto dropped = data ? ReadDropData(*data) : std::exchange(lclData, {});
    const auto done =
        lclReceiver ? lclReceiver->DragDropped(dropped, {point.x, point.y}) : drop::none;
    if (effect) *effect &= static_cast<DWORD>(done);
    lclData = {};
    return S_OK;
}

} // namespace kavidex::controls::win32
