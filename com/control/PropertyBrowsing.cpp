#include "com/control/PropertyBrowsing.h"

#include <string_view>
#include <vector>

#include "com/dispatch/ErrorBoundary.h"
#include "com/dispatch/Resolve.h"
#include "platform/win32/Late.h"

namespace kavidex::com {

namespace {

// By the name of the property, whichever control has it.
constexpr struct Choice {
    const wchar_t* property;
    std::int32_t value;
    const wchar_t* name;
} choices[] = {
    {L"BackStyle", 0, L"0 - Transparent"}, {L"BackStyle", 1, L"1 - Opaque"},
    {L"BorderStyle", 0, L"0 - None"},      {L"BorderStyle", 1, L"1 - Fixed Single"},
    {L"Language", 0, L"0 - Nederlands"},   {L"Language", 1, L"1 - English"},
    {L"Language", 2, L"2 - Deutsch"},      {L"Language", 3, L"3 - Français"},
    {L"OLEDropMode", 0, L"0 - None"},      {L"OLEDropMode", 1, L"1 - Manual"},
    {L"OLEDropMode", 2, L"2 - Automatic"},
};

std::vector<const Choice*> ChoicesOf(Automation& object, DISPID id) {
    std::vector<const Choice*> found;
    for (const Choice& choice : choices)
        if (IdOfMember(object.Members(), choice.property) == id) found.push_back(&choice);
    return found;
}

LPOLESTR Copied(std::wstring_view text) {
    auto* copy = static_cast<LPOLESTR>(CoTaskMemAlloc((text.size() + 1) * sizeof(OLECHAR)));
    if (!copy) throw std::bad_alloc();
    text.copy(copy, text.size());
    copy[text.size()] = 0;
    return copy;
}

} // namespace

HRESULT STDMETHODCALLTYPE PropertyBrowsing::GetDisplayString(DISPID id, BSTR* text) {
    if (!text) return E_POINTER;
    *text = nullptr;
    return Guard(Browsed().Members().source, IID_IPerPropertyBrowsing, [&]() -> HRESULT {
        const auto names = ChoicesOf(Browsed(), id);
        if (names.empty()) return S_FALSE; // the browser shows the value itself
        DISPPARAMS none{};
        const auto value = Resolve(Browsed(), id, DISPATCH_PROPERTYGET, none).ToInt32();
        for (const Choice* choice : names)
            if (choice->value == value) *text = SysAllocString(choice->name);
        return *text ? S_OK : S_FALSE;
    });
}

HRESULT STDMETHODCALLTYPE PropertyBrowsing::MapPropertyToPage(DISPID, CLSID* page) {
    if (!page) return E_POINTER;
    *page = CLSID_NULL;
    return PERPROP_E_NOPAGEAVAILABLE;
}

HRESULT STDMETHODCALLTYPE PropertyBrowsing::GetPredefinedStrings(DISPID id, CALPOLESTR* names,
                                                                 CADWORD* cookies) {
    if (!names || !cookies) return E_POINTER;
    *names = {};
    *cookies = {};
    return Guard(Browsed().Members().source, IID_IPerPropertyBrowsing, [&]() -> HRESULT {
        const auto found = ChoicesOf(Browsed(), id);
        if (found.empty()) return S_FALSE;
        const auto count = static_cast<ULONG>(found.size());
        names->pElems = static_cast<LPOLESTR*>(CoTaskMemAlloc(count * sizeof(LPOLESTR)));
        cookies->pElems = static_cast<DWORD*>(CoTaskMemAlloc(count * sizeof(DWORD)));
        if (!names->pElems || !cookies->pElems) throw std::bad_alloc();
        for (const Choice* choice : found) {
            names->pElems[names->cElems++] = Copied(choice->name);
            cookies->pElems[cookies->cElems++] = static_cast<DWORD>(choice->value);
        }
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE PropertyBrowsing::GetPredefinedValue(DISPID id, DWORD cookie,
                                                               VARIANT* value) {
    if (!value) return E_POINTER;
    return Guard(Browsed().Members().source, IID_IPerPropertyBrowsing, [&]() -> HRESULT {
        for (const Choice* choice : ChoicesOf(Browsed(), id))
            if (static_cast<DWORD>(choice->value) == cookie) {
                *value = Variant(choice->value).Detach();
                return S_OK;
            }
        return E_INVALIDARG;
    });
}

} // namespace kavidex::com
