#include "platform/win32/Late.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <utility>

#include <objbase.h>

#include "platform/Error.h"

namespace kavidex::platform::win32 {

namespace {

std::string CallName(const wchar_t* name) { return name && *name ? FromWide(name) : "Invoke"; }

// Not every system has texts for these.
constexpr std::pair<HRESULT, const char*> dispatchTexts[] = {
    {DISP_E_TYPEMISMATCH, "Type mismatch"},
    {DISP_E_OVERFLOW, "Overflow"},
    {DISP_E_BADVARTYPE, "Bad variable type"},
    {DISP_E_BADINDEX, "Invalid index"},
    {DISP_E_MEMBERNOTFOUND, "Member not found"},
    {DISP_E_UNKNOWNNAME, "Unknown name"},
    {DISP_E_BADPARAMCOUNT, "Wrong number of arguments"},
    {DISP_E_PARAMNOTFOUND, "Unknown argument"},
    {DISP_E_PARAMNOTOPTIONAL, "Argument not optional"},
};

[[noreturn]] void Raise(HRESULT result, EXCEPINFO& info, const wchar_t* name) {
    if (result != DISP_E_EXCEPTION)
        throw Error(result, CallName(name) + ": " + HresultText(result), "Kavidex.Late");
    if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
    Bstr source, description, help; // the receiver of an EXCEPINFO owns its texts
    *source.Put() = info.bstrSource;
    *description.Put() = info.bstrDescription;
    *help.Put() = info.bstrHelpFile;
    // A number in wCode is a Basic error number; Basic's facility makes an HRESULT of it.
    const HRESULT number = info.scode   ? info.scode
                           : info.wCode ? static_cast<HRESULT>(0x800A0000u | info.wCode)
                                        : E_FAIL;
    std::string text = description.Text();
    if (text.empty()) text = CallName(name) + ": " + HresultText(number);
    throw Error(number, text, source.Text());
}

} // namespace

std::string HresultText(HRESULT result) {
    wchar_t* buffer = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, static_cast<DWORD>(result), 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    std::wstring_view text(buffer ? buffer : L"", length);
    while (!text.empty() && (text.back() == L'\r' || text.back() == L'\n' || text.back() == L' '))
        text.remove_suffix(1);
    std::string words = FromWide(text);
    LocalFree(buffer);
    if (!words.empty()) return words;
    for (const auto& [known, meaning] : dispatchTexts)
        if (known == result) return meaning;
    char number[16];
    std::snprintf(number, sizeof number, "0x%08lX", static_cast<unsigned long>(result));
    return number;
}

void Check(HRESULT result, std::string_view source) {
    if (SUCCEEDED(result)) return;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) == S_OK && info) {
        Bstr description, from;
        info->GetDescription(description.Put());
        info->GetSource(from.Put());
        if (const std::string text = description.Text(); !text.empty())
            throw Error(result, text, from.Text());
    }
    throw Error(result, HresultText(result), std::string(source));
}

Late Late::Create(std::string_view progId) {
    CLSID clsid;
    HRESULT result = CLSIDFromProgID(ToWide(progId).c_str(), &clsid);
    ComPtr<IDispatch> object;
    if (SUCCEEDED(result))
        result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER,
                                  IID_IDispatch, reinterpret_cast<void**>(object.Put()));
    if (FAILED(result))
        throw Error(result, std::string(progId) + ": " + HresultText(result), "Kavidex.Late");
    return Late(std::move(object));
}

Late Late::TryCreate(std::string_view progId) {
    try {
        return Create(progId);
    } catch (const Error&) {
        return {};
    }
}

std::optional<DISPID> Late::IdOf(const wchar_t* name) const {
    if (!lclObject)
        throw Error(static_cast<std::int32_t>(0x800A005B),
                    CallName(name) + ": the object is not set.", "Kavidex.Late");
    for (const auto& [known, id] : lclIds)
        if (known == name || std::wcscmp(known, name) == 0) return id;
    DISPID id = DISPID_UNKNOWN;
    LPOLESTR names[1] = {const_cast<LPOLESTR>(name)};
    if (FAILED(lclObject->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) return {};
    lclIds.emplace_back(name, id);
    return id;
}

DISPID Late::NeedId(const wchar_t* name) const {
    if (const auto id = IdOf(name)) return *id;
    throw Error(DISP_E_UNKNOWNNAME, "The object has no member " + CallName(name) + ".",
                "Kavidex.Late");
}

std::string Late::TypeName() const {
    ComPtr<ITypeInfo> type;
    Bstr name;
    if (!lclObject || FAILED(lclObject->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.Put())) || !type ||
        FAILED(type->GetDocumentation(MEMBERID_NIL, name.Put(), nullptr, nullptr, nullptr)))
        return {};
    // The default interface of a class bears the class's name behind a sign of its own.
    const std::string text = name.Text();
    return text.starts_with("_") ? text.substr(1) : text;
}

bool Late::Has(const wchar_t* name) const { return lclObject && IdOf(name); }

Variant Late::Get(const wchar_t* name, Arguments arguments) const {
    return Invoke(NeedId(name), DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments, name);
}

Variant Late::Property(const wchar_t* name) const {
    return Invoke(NeedId(name), DISPATCH_PROPERTYGET, {}, name);
}

Variant Late::Call(const wchar_t* name, Arguments arguments) const {
    return Invoke(NeedId(name), DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments, name);
}

void Late::Put(const wchar_t* name, Arguments arguments) const {
    Invoke(NeedId(name), DISPATCH_PROPERTYPUT, arguments, name);
}

void Late::PutRef(const wchar_t* name, Arguments arguments) const {
    Invoke(NeedId(name), DISPATCH_PROPERTYPUTREF, arguments, name);
}

Late Late::Child(const wchar_t* name, Arguments arguments) const {
    Late child(Get(name, arguments).ToDispatch());
    if (child) return child;
    throw Error(static_cast<std::int32_t>(0x800A005B), CallName(name) + " is nothing.",
                "Kavidex.Late");
}

Variant Late::Invoke(DISPID id, WORD kind, std::span<const Variant> arguments,
                     const wchar_t* name) const {
    // Automation takes arguments last first. The copies share contents with ours, which outlive
    // the call.
    std::vector<VARIANT> reversed;
    reversed.reserve(arguments.size());
    for (std::size_t i = arguments.size(); i-- > 0;) reversed.push_back(arguments[i].Get());
    DISPID putName = DISPID_PROPERTYPUT;
    const bool put = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters = {reversed.data(), put ? &putName : nullptr,
                             static_cast<UINT>(reversed.size()), put ? 1u : 0u};
    EXCEPINFO info = {};
    UINT badArgument = 0;
    Variant result;
    const HRESULT outcome =
        lclObject->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters,
                          put ? nullptr : result.Address(), &info, &badArgument);
    if (FAILED(outcome)) Raise(outcome, info, name);
    return result;
}

std::vector<Variant> Enumerate(const ComPtr<IDispatch>& collection) {
    const Variant made =
        Late(collection)
            .Invoke(DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}, L"_NewEnum");
    ComPtr<IEnumVARIANT> walker;
    if (made.IsObject() && made.Get().punkVal)
        walker = ComPtr<IUnknown>(made.Get().punkVal).Query<IEnumVARIANT>();
    if (!walker)
        throw Error(DISP_E_TYPEMISMATCH, "The object is not a collection.", "Kavidex.Late");
    std::vector<Variant> elements;
    Variant element;
    while (walker->Next(1, element.Put(), nullptr) == S_OK) elements.push_back(std::move(element));
    return elements;
}

} // namespace kavidex::platform::win32
