#include "Container.h"

#include <algorithm>

namespace kavidex::tests {

Container::Container() {
    window = CreateWindowW(L"STATIC", L"container", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 400,
                           300, nullptr, nullptr, nullptr, nullptr);
}

Container::~Container() {
    Drop();
    DestroyWindow(window);
    EXPECT_EQ(references, 1) << "the control kept its site";
}

void Container::Take(const ComPtr<IDispatch>& object, bool show) {
    control = object;
    auto ole = As<IOleObject>(IID_IOleObject);
    ASSERT_TRUE(ole);
    ASSERT_EQ(ole->SetClientSite(this), S_OK);
    ASSERT_EQ(As<IPersistStreamInit>(IID_IPersistStreamInit)->InitNew(), S_OK);
    IID source{};
    ASSERT_EQ(As<IProvideClassInfo2>(IID_IProvideClassInfo2)
                  ->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source),
              S_OK);
    Connect(source, static_cast<IDispatch*>(this));
    Connect(IID_IPropertyNotifySink, static_cast<IPropertyNotifySink*>(this));
    if (show) {
        ASSERT_EQ(ole->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, window, &place), S_OK);
    }
}

void Container::Connect(REFIID iid, IUnknown* sink) {
    ComPtr<IConnectionPoint> point;
    DWORD cookie = 0;
    ASSERT_EQ(As<IConnectionPointContainer>(IID_IConnectionPointContainer)
                  ->FindConnectionPoint(iid, point.Put()),
              S_OK);
    ASSERT_EQ(point->Advise(sink, &cookie), S_OK);
    lclConnections.emplace_back(std::move(point), cookie);
}

void Container::Drop() {
    if (!control) return;
    for (auto& [point, cookie] : lclConnections) EXPECT_EQ(point->Unadvise(cookie), S_OK);
    lclConnections.clear();
    auto ole = As<IOleObject>(IID_IOleObject);
    ole->Close(OLECLOSE_NOSAVE);
    ole->SetClientSite(nullptr);
    ole = nullptr;
    control = nullptr;
}

HWND Container::ControlWindow() const {
    HWND handle = nullptr;
    As<IOleInPlaceObject>(IID_IOleInPlaceObject)->GetWindow(&handle);
    return handle;
}

std::size_t Container::Count(const std::string& call) const {
    return static_cast<std::size_t>(std::count(log.begin(), log.end(), call));
}

HRESULT STDMETHODCALLTYPE Container::QueryInterface(REFIID iid, void** object) {
    if (iid == IID_IUnknown || iid == IID_IOleClientSite)
        *object = static_cast<IOleClientSite*>(this);
    else if (iid == IID_IOleInPlaceSite || iid == IID_IOleWindow)
        *object = static_cast<IOleInPlaceSite*>(this);
    else if (iid == IID_IOleControlSite)
        *object = static_cast<IOleControlSite*>(this);
    else if (iid == IID_IPropertyNotifySink)
        *object = static_cast<IPropertyNotifySink*>(this);
    else if (iid == IID_IDispatch)
        *object = static_cast<IDispatch*>(this);
    else
        return *object = nullptr, E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Container::GetWindowContext(IOleInPlaceFrame** frame,
                                                      IOleInPlaceUIWindow** document,
                                                      LPRECT position, LPRECT clip,
                                                      LPOLEINPLACEFRAMEINFO) {
    AddRef();
    *frame = this;
    *document = nullptr;
    *position = *clip = place;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Container::Invoke(DISPID id, REFIID, LCID, WORD flags,
                                            DISPPARAMS* parameters, VARIANT* result, EXCEPINFO*,
                                            UINT*) {
    if (id == DISPID_AMBIENT_UIDEAD && result) {
        result->vt = VT_BOOL;
        result->boolVal = uiDead ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    if (!(flags & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
    std::vector<Variant> arguments;
    for (UINT i = parameters->cArgs; i-- > 0;) arguments.emplace_back(parameters->rgvarg[i]);
    events.emplace_back(id, std::move(arguments));
    if (onEvent) onEvent(id, *parameters);
    return S_OK;
}

} // namespace kavidex::tests
