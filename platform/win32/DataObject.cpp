#include "platform/win32/DataObject.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <utility>
#include <vector>

#include <ole2.h>
#include <shlobj.h>

#include "platform/win32/Counted.h"
#include "platform/win32/ExchangeFormats.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

void Append(std::string& block, const void* bytes, std::size_t size) {
    block.append(static_cast<const char*>(bytes), size);
}

std::string WideBlock(const std::wstring& text) {
    std::string block;
    Append(block, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    return block;
}

std::string NarrowBlock(const std::wstring& text) {
    const int size = WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string block(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, block.data(), size, nullptr, nullptr);
    return block;
}

std::string FileList(const std::vector<std::string>& files) {
    DROPFILES head{};
    head.pFiles = sizeof head;
    head.fWide = TRUE;
    std::string block;
    Append(block, &head, sizeof head);
    for (const auto& file : files) block += WideBlock(ToWide(file));
    return block + std::string(sizeof(wchar_t), '\0');
}

std::string Descriptors(const std::vector<VirtualFile>& files) {
    std::string block;
    const UINT count = static_cast<UINT>(files.size());
    Append(block, &count, sizeof count);
    for (const auto& file : files) {
        FILEDESCRIPTORW row{};
        row.dwFlags = static_cast<DWORD>(FD_UNICODE) | FD_PROGRESSUI;
        ToWide(file.name).copy(row.cFileName, MAX_PATH - 1);
        Append(block, &row, sizeof row);
    }
    return block;
}

HRESULT CopyMedium(const STGMEDIUM& from, CLIPFORMAT format, STGMEDIUM& to) {
    to = {};
    to.tymed = from.tymed;
    switch (from.tymed) {
    case TYMED_HGLOBAL:
        to.hGlobal = static_cast<HGLOBAL>(OleDuplicateData(from.hGlobal, format, 0));
        return to.hGlobal ? S_OK : E_OUTOFMEMORY;
    case TYMED_ISTREAM: to.pstm = from.pstm; break;
    case TYMED_ISTORAGE: to.pstg = from.pstg; break;
    default: return DV_E_TYMED;
    }
    if (!to.pstm) return E_INVALIDARG;
    to.pstm->AddRef();
    return S_OK;
}

// As a stream where it is wanted: a block's size is not always that of its content.
HRESULT Give(std::string_view bytes, DWORD wanted, STGMEDIUM& medium) {
    const HGLOBAL block = NewBlock(bytes.data(), bytes.size());
    if (!block) return E_OUTOFMEMORY;
    ULARGE_INTEGER size{};
    size.QuadPart = bytes.size();
    if (!(wanted & TYMED_ISTREAM)) {
        medium.hGlobal = block;
        medium.tymed = TYMED_HGLOBAL;
    } else if (FAILED(CreateStreamOnHGlobal(block, TRUE, &medium.pstm))) {
        GlobalFree(block);
        return E_OUTOFMEMORY;
    } else {
        medium.pstm->SetSize(size);
        medium.tymed = TYMED_ISTREAM;
    }
    return S_OK;
}

class DataObject : public Counted<IDataObject> {
public:
    DataObject(ExchangeData data, std::function<void()> asked)
        : lclFiles(std::move(data.virtualFiles)), lclMakeFiles(std::move(data.makeFiles)),
          lclAsked(std::move(asked)) {
        const auto& formats = Formats();
        if (data.hasFiles) {
            const DWORD copy = DROPEFFECT_COPY;
            Add(CF_HDROP, lclMakeFiles ? std::string() : FileList(data.files));
            Add(formats.effect, {reinterpret_cast<const char*>(&copy), sizeof copy});
        }
        if (data.hasText) {
            const auto wide = ToWide(data.text);
            Add(CF_UNICODETEXT, WideBlock(wide));
            Add(CF_TEXT, NarrowBlock(wide));
        }
        if (!data.own.empty()) Add(formats.own, data.own);
        if (lclFiles.empty()) return;
        Add(formats.descriptorsWide, Descriptors(lclFiles));
        lclOffers.push_back(
            {Wanted(formats.contents, -1, TYMED_ISTREAM | TYMED_HGLOBAL), {}, {}}); // of each
    }

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* wanted, STGMEDIUM* medium) override {
        if (!wanted || !medium) return E_POINTER;
        *medium = {};
        auto* offer = Find(*wanted);
        if (!offer) return DV_E_FORMATETC;
        if (offer->stored.tymed != TYMED_NULL)
            return CopyMedium(offer->stored, wanted->cfFormat, *medium);
        const bool text = wanted->cfFormat == CF_UNICODETEXT || wanted->cfFormat == CF_TEXT;
        if (const auto asked = text ? std::exchange(lclAsked, nullptr) : nullptr) asked();
        if (wanted->cfFormat == CF_HDROP)
            if (const auto make = std::exchange(lclMakeFiles, nullptr))
                offer->block = FileList(make());
        if (wanted->cfFormat != Formats().contents)
            return Give(offer->block, TYMED_HGLOBAL, *medium);
        try {
            return Give(lclFiles[static_cast<std::size_t>(wanted->lindex)].read(), wanted->tymed,
                        *medium);
        } catch (const std::exception&) {
            return STG_E_READFAULT;
        }
    }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* wanted) override {
        if (!wanted) return E_POINTER;
        return Find(*wanted) ? S_OK : DV_E_FORMATETC;
    }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC* format, STGMEDIUM* medium, BOOL release) override {
        if (!format || !medium) return E_POINTER;
        Offer offer{*format, {}, {}};
        offer.format.ptd = nullptr;
        if (release)
            offer.stored = *medium;
        else if (const HRESULT copied = CopyMedium(*medium, format->cfFormat, offer.stored);
                 FAILED(copied))
            return copied;
        offer.format.tymed = offer.stored.tymed;
        const auto same = [&](Offer& known) {
            const bool replaced =
                known.format.cfFormat == format->cfFormat && known.format.lindex == format->lindex;
            if (replaced) ReleaseStgMedium(&known.stored);
            return replaced;
        };
        lclOffers.erase(std::remove_if(lclOffers.begin(), lclOffers.end(), same), lclOffers.end());
        lclOffers.push_back(std::move(offer));
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override {
        if (!formats) return E_POINTER;
        *formats = nullptr;
        if (direction != DATADIR_GET) return E_NOTIMPL;
        std::vector<FORMATETC> list;
        for (const auto& offer : lclOffers) list.push_back(offer.format);
        // The shell's enumerator, found at run time since not every import library names it.
        using Function = HRESULT(WINAPI*)(UINT, const FORMATETC*, IEnumFORMATETC**);
        const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"shell32.dll"), "SHCreateStdEnumFmtEtc")));
        return function ? function(static_cast<UINT>(list.size()), list.data(), formats)
                        : E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC* result) override {
        if (result) result->ptd = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }

private:
    // A block of ours, a virtual file's content made when it is asked for, or what another stored.
    struct Offer {
        FORMATETC format;
        std::string block;
        STGMEDIUM stored;
    };

    ~DataObject() override {
        for (auto& offer : lclOffers) ReleaseStgMedium(&offer.stored);
    }

    void Add(CLIPFORMAT format, std::string block) {
        lclOffers.push_back({Wanted(format), std::move(block), {}});
    }
    Offer* Find(const FORMATETC& wanted) {
        const auto& contents = Formats().contents;
        const auto fits = [&](const Offer& offer) {
            if (offer.format.cfFormat != contents || offer.stored.tymed != TYMED_NULL)
                return offer.format.lindex == wanted.lindex;
            return wanted.lindex >= 0 && static_cast<std::size_t>(wanted.lindex) < lclFiles.size();
        };
        for (auto& offer : lclOffers)
            if (offer.format.cfFormat == wanted.cfFormat && (offer.format.tymed & wanted.tymed) &&
                offer.format.dwAspect == wanted.dwAspect && fits(offer))
                return &offer;
        return nullptr;
    }

    std::vector<VirtualFile> lclFiles;
    std::function<std::vector<std::string>()> lclMakeFiles;
    std::vector<Offer> lclOffers;
    std::function<void()> lclAsked;
};

} // namespace

ComPtr<IDataObject> MakeDataObject(ExchangeData data, std::function<void()> asked) {
    return ComPtr<IDataObject>::Attach(new DataObject(std::move(data), std::move(asked)));
}

} // namespace kavidex::platform::win32
