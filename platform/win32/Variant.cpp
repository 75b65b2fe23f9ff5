#include "platform/win32/Variant.h"

#include <cstring>
#include <new>
#include <type_traits>

#include "platform/Error.h"
#include "platform/text.h"
#include "platform/win32/Late.h"

namespace kavidex::platform::win32 {

namespace {

constexpr LCID neutral = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
constexpr const char* source = "Kavidex.Variant";

// Unlocks the data of an array on every way out.
template <class Element>
class Access {
public:
    explicit Access(SAFEARRAY* array) : lclArray(array) {
        void* data = nullptr;
        Check(SafeArrayAccessData(array, &data), source);
        lclData = static_cast<Element*>(data);
    }
    ~Access() { SafeArrayUnaccessData(lclArray); }
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;
    Element& operator[](std::size_t index) const { return lclData[index]; }
    Element* Data() const { return lclData; }

private:
    SAFEARRAY* lclArray;
    Element* lclData = nullptr;
};

SAFEARRAY* ArrayIn(const VARIANT& value, UINT dimensions) {
    SAFEARRAY* array = nullptr;
    if (value.vt & VT_ARRAY)
        array = value.vt & VT_BYREF ? *value.pparray : value.parray;
    else if (value.vt == (VT_BYREF | VT_VARIANT))
        return ArrayIn(*value.pvarVal, dimensions);
    if (!array || SafeArrayGetDim(array) != dimensions)
        throw Error(DISP_E_TYPEMISMATCH, "An array was expected.", source);
    return array;
}

std::size_t Extent(SAFEARRAY* array, UINT dimension) {
    LONG low = 0, high = -1;
    Check(SafeArrayGetLBound(array, dimension, &low), source);
    Check(SafeArrayGetUBound(array, dimension, &high), source);
    return high < low ? 0 : static_cast<std::size_t>(high - low + 1);
}

VARTYPE ElementType(SAFEARRAY* array) {
    VARTYPE type = VT_EMPTY;
    Check(SafeArrayGetVartype(array, &type), source);
    return type;
}

Variant Owned(VARTYPE type, SAFEARRAY* array) {
    if (!array) throw std::bad_alloc();
    VARIANT value;
    VariantInit(&value);
    value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    value.parray = array;
    return Variant::Attach(value);
}

} // namespace

// wchar_t and char16_t are both UTF-16 units here; they are copied, not aliased.
std::wstring ToWide(std::string_view utf8) {
    const std::u16string wide = ToUtf16(utf8);
    return {wide.begin(), wide.end()};
}

std::string FromWide(std::wstring_view wide) {
    return ToUtf8(std::u16string(wide.begin(), wide.end()));
}

std::string FromBstr(BSTR text) {
    return text ? FromWide({text, SysStringLen(text)}) : std::string();
}

BSTR NewBstr(std::string_view utf8) {
    const std::wstring wide = ToWide(utf8);
    BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (!text) throw std::bad_alloc();
    return text;
}

Variant::Variant(const VARIANT& value) : Variant() {
    // VariantCopyInd follows one reference only; scripts hand over references to references.
    const VARIANT* from = &value;
    while (from->vt == (VT_BYREF | VT_VARIANT)) from = from->pvarVal;
    Check(VariantCopyInd(&lclValue, const_cast<VARIANT*>(from)), source);
}

Variant::Variant(const Variant& other) : Variant() {
    Check(VariantCopy(&lclValue, const_cast<VARIANT*>(&other.lclValue)), source);
}

Variant Variant::Reference(Variant& target) noexcept {
    Variant result;
    result.Tag(VT_BYREF | VT_VARIANT).pvarVal = target.Address();
    return result;
}

Variant Variant::Null() noexcept {
    Variant result;
    result.Tag(VT_NULL);
    return result;
}

Variant Variant::Missing() noexcept {
    Variant result;
    result.Tag(VT_ERROR).scode = DISP_E_PARAMNOTFOUND;
    return result;
}

Variant Variant::Big(std::int64_t value) noexcept {
    if (value >= INT32_MIN && value <= INT32_MAX) return {static_cast<std::int32_t>(value)};
    return {static_cast<double>(value)};
}

Variant Variant::Attach(VARIANT value) noexcept {
    Variant result;
    result.lclValue = value;
    return result;
}

VARIANT Variant::Detach() noexcept {
    VARIANT result = lclValue;
    VariantInit(&lclValue);
    return result;
}

bool Variant::IsMissing() const noexcept {
    return Type() == VT_ERROR && lclValue.scode == DISP_E_PARAMNOTFOUND;
}

bool Variant::IsNumber() const noexcept {
    switch (Type()) {
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL: return true;
    default: return false;
    }
}

Variant Variant::As(VARTYPE type) const {
    if (Type() == type) return *this;
    if (Type() == VT_DISPATCH && lclValue.pdispVal && type != VT_UNKNOWN)
        return Late(ComPtr<IDispatch>(lclValue.pdispVal))
            .Invoke(DISPID_VALUE, DISPATCH_PROPERTYGET | DISPATCH_METHOD, {}, L"the default member")
            .As(type);
    Variant result;
    Check(VariantChangeTypeEx(&result.lclValue, const_cast<VARIANT*>(&lclValue), neutral,
                              VARIANT_ALPHABOOL, type),
          source);
    return result;
}

std::string Variant::ToText() const {
    if (IsEmpty() || IsNull()) return {};
    if (IsText()) return FromBstr(lclValue.bstrVal);
    return FromBstr(As(VT_BSTR).lclValue.bstrVal);
}

std::int32_t Variant::ToInt32() const {
    return IsEmpty() || IsNull() ? 0 : static_cast<std::int32_t>(As(VT_I4).lclValue.lVal);
}

std::int64_t Variant::ToInt64() const {
    return IsEmpty() || IsNull() ? 0 : As(VT_I8).lclValue.llVal;
}

double Variant::ToDouble() const { return IsEmpty() || IsNull() ? 0 : As(VT_R8).lclValue.dblVal; }

bool Variant::ToBool() const {
    return !IsEmpty() && !IsNull() && As(VT_BOOL).lclValue.boolVal != VARIANT_FALSE;
}

ComPtr<IDispatch> Variant::ToDispatch() const {
    if (IsEmpty() || IsNull() || IsMissing()) return {};
    if (Type() == VT_DISPATCH) return ComPtr<IDispatch>(lclValue.pdispVal);
    if (Type() == VT_UNKNOWN) {
        if (!lclValue.punkVal) return {};
        if (auto object = ComPtr<IUnknown>(lclValue.punkVal).Query<IDispatch>()) return object;
    }
    throw Error(DISP_E_TYPEMISMATCH, "An object was expected.", source);
}

bool StoreByRef(const VARIANT& target, const Variant& value) {
    if (!(target.vt & VT_BYREF)) return false;
    if (target.vt == (VT_BYREF | VT_VARIANT)) {
        // A variable handed through several calls arrives as a reference to a reference.
        if (target.pvarVal->vt & VT_BYREF) return StoreByRef(*target.pvarVal, value);
        Variant copy(value);
        VariantClear(target.pvarVal);
        *target.pvarVal = copy.Detach();
        return true;
    }
    const VARTYPE type = static_cast<VARTYPE>(target.vt & ~VT_BYREF);
    Variant copy = value.As(type);
    switch (type) {
    case VT_BSTR:
        SysFreeString(*target.pbstrVal);
        *target.pbstrVal = copy.Detach().bstrVal;
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (*target.ppunkVal) (*target.ppunkVal)->Release();
        *target.ppunkVal = copy.Detach().punkVal;
        break;
    case VT_I1:
    case VT_UI1: *target.pbVal = copy.Get().bVal; break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL: *target.piVal = copy.Get().iVal; break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4: *target.plVal = copy.Get().lVal; break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_DATE:
    case VT_CY: *target.pllVal = copy.Get().llVal; break;
    default:
        throw Error(DISP_E_BADVARTYPE, "This kind of by-reference argument is not served.", source);
    }
    return true;
}

Variant ArrayOf(const std::vector<Variant>& elements) {
    Variant result = Owned(
        VT_VARIANT, SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(elements.size())));
    Access<VARIANT> data(result.Get().parray);
    for (std::size_t i = 0; i < elements.size(); ++i) data[i] = Variant(elements[i]).Detach();
    return result;
}

std::vector<Variant> ElementsOf(const VARIANT& value) {
    SAFEARRAY* array = ArrayIn(value, 1);
    LONG low = 0;
    Check(SafeArrayGetLBound(array, 1, &low), source);
    std::vector<Variant> elements(Extent(array, 1));
    const VARTYPE type = ElementType(array);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        LONG index = low + static_cast<LONG>(i);
        VARIANT element;
        VariantInit(&element);
        // SafeArrayGetElement writes into the union for plain types, over the VARIANT for variants.
        void* target = type == VT_VARIANT ? static_cast<void*>(&element) : &element.llVal;
        Check(SafeArrayGetElement(array, &index, target), source);
        if (type != VT_VARIANT) element.vt = type;
        elements[i] = Variant::Attach(element);
    }
    return elements;
}

Variant ByteArray(const std::vector<std::uint8_t>& bytes) {
    Variant result =
        Owned(VT_UI1, SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size())));
    if (!bytes.empty()) {
        Access<std::uint8_t> data(result.Get().parray);
        std::memcpy(data.Data(), bytes.data(), bytes.size());
    }
    return result;
}

std::vector<std::uint8_t> BytesOf(const VARIANT& value) {
    SAFEARRAY* array = ArrayIn(value, 1);
    if (ElementType(array) != VT_UI1)
        throw Error(DISP_E_TYPEMISMATCH, "An array of bytes was expected.", source);
    std::vector<std::uint8_t> bytes(Extent(array, 1));
    if (!bytes.empty()) {
        Access<std::uint8_t> data(array);
        std::memcpy(bytes.data(), data.Data(), bytes.size());
    }
    return bytes;
}

std::vector<std::vector<Variant>> ColumnsOf(const VARIANT& value) {
    SAFEARRAY* array = ArrayIn(value, 2);
    if (ElementType(array) != VT_VARIANT)
        throw Error(DISP_E_TYPEMISMATCH, "An array of variants was expected.", source);
    const std::size_t columns = Extent(array, 1), rows = Extent(array, 2);
    std::vector<std::vector<Variant>> result(columns, std::vector<Variant>(rows));
    if (columns == 0 || rows == 0) return result;
    Access<VARIANT> data(array); // the first dimension runs fastest
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < columns; ++column)
            result[column][row] = Variant(data[row * columns + column]);
    return result;
}

Variant TableOf(const std::vector<std::vector<Variant>>& columns, std::size_t rows) {
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(columns.size()), 0},
                                {static_cast<ULONG>(rows), 0}};
    Variant result = Owned(VT_VARIANT, SafeArrayCreate(VT_VARIANT, 2, bounds));
    if (columns.empty() || rows == 0) return result;
    Access<VARIANT> data(result.Get().parray);
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < columns.size(); ++column)
            data[row * columns.size() + column] = Variant(columns[column][row]).Detach();
    return result;
}

} // namespace kavidex::platform::win32
