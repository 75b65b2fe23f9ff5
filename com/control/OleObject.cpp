#include "com/control/OleObject.h"

#include "com/control/ListEnumerator.h"

namespace kavidex::com {

namespace {

// What a container offers in the menu of the control.
OLEVERB Edit(const int&) {
    constexpr std::wstring_view name = L"&Edit";
    auto* text = static_cast<LPOLESTR>(CoTaskMemAlloc((name.size() + 1) * sizeof(OLECHAR)));
    if (text) text[name.copy(text, name.size())] = 0;
    return {OLEIVERB_PRIMARY, text, 0, OLEVERBATTRIB_NEVERDIRTIES | OLEVERBATTRIB_ONCONTAINERMENU};
}

using VerbEnumerator = ListEnumerator<IEnumOLEVERB, OLEVERB, int, Edit>;

} // namespace

HRESULT STDMETHODCALLTYPE OleObject::EnumVerbs(IEnumOLEVERB** verbs) {
    if (!verbs) return E_POINTER;
    return Guard("Kavidex", IID_IOleObject, [&] {
        *verbs = new VerbEnumerator({OLEIVERB_PRIMARY}, 0);
        return S_OK;
    });
}

} // namespace kavidex::com
