// A small host without a window: opens a dossier, adds a file, and prints the events that the
// binder control raises meanwhile. Uses nothing but the Windows headers.
//   show_events DATABASE STORE KEY [FILE...]
#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>

#include <cstdio>
#include <initializer_list>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

void Demand(HRESULT result, const char* step) {
    if (FAILED(result)) throw std::runtime_error(step);
}

// A VARIANT that frees itself.
struct Value : VARIANT {
    Value() { VariantInit(this); }
    Value(const wchar_t* text) : Value() { vt = VT_BSTR, bstrVal = SysAllocString(text); }
    Value(long number) : Value() { vt = VT_I4, lVal = number; }
    Value(bool flag) : Value() { vt = VT_BOOL, boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE; }
    Value(IDispatch* object) : Value() {
        vt = VT_DISPATCH, pdispVal = object;
        if (object) object->AddRef();
    }
    Value(const Value& other) : Value() { VariantCopy(this, const_cast<Value*>(&other)); }
    Value& operator=(const Value&) = delete;
    ~Value() { VariantClear(this); }
};

// Calls a member by name, as a script does; `arguments` in the order of the declaration.
Value Invoke(IDispatch* object, const wchar_t* name, WORD kind, std::vector<Value> arguments = {}) {
    DISPID id = 0;
    LPOLESTR text = const_cast<LPOLESTR>(name);
    Demand(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_INVARIANT, &id), "no such member");
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF))
        parameters.rgdispidNamedArgs = &put, parameters.cNamedArgs = 1;
    Value result;
    EXCEPINFO failure{};
    const HRESULT code =
        object->Invoke(id, IID_NULL, LOCALE_INVARIANT, kind, &parameters,
                       kind == DISPATCH_METHOD ? &result : nullptr, &failure, nullptr);
    if (code == DISP_E_EXCEPTION && failure.bstrDescription)
        std::wprintf(L"%ls\n", failure.bstrDescription);
    Demand(code, "a call failed");
    return result;
}

Value Create(const wchar_t* progId) {
    CLSID clsid;
    Value object;
    Demand(CLSIDFromProgID(progId, &clsid), "the library is not registered");
    Demand(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                            reinterpret_cast<void**>(&object.pdispVal)),
           "the class cannot be created");
    object.vt = VT_DISPATCH;
    return object;
}

// Receives every event of a control's default event interface and prints name and arguments.
class EventPrinter final : public IDispatch {
public:
    explicit EventPrinter(IDispatch* control) {
        IProvideClassInfo2* info = nullptr;
        Demand(control->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&info)),
               "no class information");
        info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &lclInterface);
        ITypeInfo* own = nullptr;
        ITypeLib* library = nullptr;
        UINT index = 0;
        Demand(info->GetClassInfo(&own), "no type information");
        Demand(own->GetContainingTypeLib(&library, &index), "no type library");
        Demand(library->GetTypeInfoOfGuid(lclInterface, &lclEvents), "no event interface");
        library->Release(), own->Release(), info->Release();

        IConnectionPointContainer* points = nullptr;
        Demand(control->QueryInterface(IID_IConnectionPointContainer,
                                       reinterpret_cast<void**>(&points)),
               "no events");
        Demand(points->FindConnectionPoint(lclInterface, &lclPoint), "no connection point");
        points->Release();
        Demand(lclPoint->Advise(this, &lclCookie), "the control refuses a listener");
    }
    void Stop() {
        lclPoint->Unadvise(lclCookie);
        lclPoint->Release();
        lclEvents->Release();
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == lclInterface;
        *object = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    // Lives on the caller's stack, longer than the connection.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                     VARIANT*, EXCEPINFO*, UINT*) override {
        BSTR name = nullptr;
        UINT count = 0;
        if (FAILED(lclEvents->GetNames(id, &name, 1, &count))) return DISP_E_MEMBERNOTFOUND;
        std::wprintf(L"event %ls", name);
        SysFreeString(name);
        for (UINT i = parameters->cArgs; i-- > 0;) { // the last argument comes first
            Value text;
            if (SUCCEEDED(VariantChangeType(&text, &parameters->rgvarg[i], 0, VT_BSTR)))
                std::wprintf(L" | %ls", text.bstrVal);
        }
        std::wprintf(L"\n");
        return S_OK;
    }

private:
    IID lclInterface{};
    ITypeInfo* lclEvents = nullptr;
    IConnectionPoint* lclPoint = nullptr;
    DWORD lclCookie = 0;
};

Value ArrayOf(wchar_t** names, int count) {
    Value array;
    array.vt = VT_ARRAY | VT_VARIANT;
    array.parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(count));
    for (LONG i = 0; i < count; ++i) {
        Value name(names[i]);
        SafeArrayPutElement(array.parray, &i, &name);
    }
    return array;
}

void Run(int count, wchar_t** words) {
    const Value database = Create(L"Kavidex.EmbeddedDatabase");
    const Value connection =
        Invoke(database.pdispVal, L"OpenOrCreate", DISPATCH_METHOD, {words[1]});
    const Value control = Create(L"Kavidex.ctrlCorrespondence");
    IDispatch* binder = control.pdispVal;
    EventPrinter printer(binder);
    Invoke(binder, L"DbConnection", DISPATCH_PROPERTYPUTREF, {connection});

    const Value settings = Create(L"Kavidex.clsSettings");
    Invoke(settings.pdispVal, L"DbConnection", DISPATCH_PROPERTYPUTREF, {connection});
    Invoke(settings.pdispVal, L"SetSetting", DISPATCH_METHOD,
           {L"Storage", L"DocumentPath", words[2]});

    const Value opened = Invoke(binder, L"OpenOrCreate", DISPATCH_METHOD,
                                {words[3], L"Shown by its events", L"", L"", L""});
    std::wprintf(L"OpenOrCreate %ld\n", opened.lVal);
    if (count > 4) {
        const Value added = Invoke(binder, L"AddFiles", DISPATCH_METHOD,
                                   {ArrayOf(words + 4, count - 4), L"", 0L, false, true});
        std::wprintf(L"AddFiles %ld\n", added.lVal);
    }
    Invoke(binder, L"CloseObject", DISPATCH_METHOD);
    printer.Stop();
}

} // namespace

int wmain(int count, wchar_t** words) {
    if (count < 4) {
        std::wprintf(L"show_events DATABASE STORE KEY [FILE...]\n");
        return 2;
    }
    if (FAILED(CoInitialize(nullptr))) return 3;
    int code = 0;
    try {
        Run(count, words);
        std::wprintf(L"done: show_events\n");
    } catch (const std::exception& error) {
        std::printf("failed: %s\n", error.what());
        code = 1;
    }
    CoUninitialize();
    return code;
}
