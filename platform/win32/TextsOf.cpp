#include "platform/win32/TextsOf.h"

#include "platform/win32/Late.h"

namespace kavidex::platform::win32 {

namespace {

bool HasMember(const ComPtr<IDispatch>& object, DISPID id) {
    DISPPARAMS none{};
    Variant value;
    return SUCCEEDED(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT,
                                    DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, value.Address(),
                                    nullptr, nullptr));
}

// Not every engine gives its arrays an enumerator.
bool IsScriptArray(const ComPtr<IDispatch>& object) {
    return !HasMember(object, DISPID_NEWENUM) && Late(object).Has(L"length");
}

std::vector<Variant> ElementsOfScript(const ComPtr<IDispatch>& object) {
    std::vector<Variant> items;
    const auto count = Late(object).Property(L"length").ToInt32();
    for (std::int32_t i = 0; i < count; ++i) // a new caller each: it remembers names by address
        items.push_back(Late(object).Property(std::to_wstring(i).c_str()));
    return items;
}

} // namespace

std::optional<std::vector<std::string>> TextsOf(const Variant& given) {
    if (given.IsEmpty() || given.IsNull() || given.IsMissing()) return std::nullopt;
    std::vector<Variant> items;
    if (given.IsArray()) {
        items = ElementsOf(given.Get());
    } else if (given.IsObject()) {
        const auto object = given.ToDispatch();
        if (!object) return std::nullopt;
        items = IsScriptArray(object) ? ElementsOfScript(object) : Enumerate(object);
    } else {
        items.push_back(given);
    }
    std::vector<std::string> texts;
    for (const Variant& item : items) texts.push_back(item.ToText());
    return texts;
}

} // namespace kavidex::platform::win32
