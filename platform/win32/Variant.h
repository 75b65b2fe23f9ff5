// Owned BSTR, VARIANT and SAFEARRAY values, and their way to and from the core's types.
// Conversions to and from text follow no locale: full stop as decimal separator, "True"/"False".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include <oleauto.h>

#include "platform/win32/ComPtr.h"

namespace kavidex::platform::win32 {

std::wstring ToWide(std::string_view utf8);
std::string FromWide(std::wstring_view wide);
std::string FromBstr(BSTR text); // null is the empty text
// The caller owns the result; throws std::bad_alloc.
[[nodiscard]] BSTR NewBstr(std::string_view utf8);

class Bstr {
public:
    Bstr() = default;
    explicit Bstr(std::string_view utf8) : lclText(NewBstr(utf8)) {}
    explicit Bstr(const wchar_t* wide) : lclText(SysAllocString(wide)) {}
    Bstr(Bstr&& other) noexcept : lclText(std::exchange(other.lclText, nullptr)) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(lclText, other.lclText);
        return *this;
    }
    ~Bstr() { SysFreeString(lclText); }

    BSTR Get() const noexcept { return lclText; }
    BSTR* Put() noexcept {
        SysFreeString(std::exchange(lclText, nullptr));
        return &lclText;
    }
    [[nodiscard]] BSTR Detach() noexcept { return std::exchange(lclText, nullptr); }
    std::string Text() const { return FromBstr(lclText); }

private:
    BSTR lclText = nullptr;
};

// A VARIANT with value semantics. Failing conversions throw platform::Error with the system's
// HRESULT (DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW).
class Variant {
public:
    Variant() noexcept { VariantInit(&lclValue); } // VT_EMPTY
    Variant(bool value) noexcept : Variant() {
        Tag(VT_BOOL).boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    Variant(std::int16_t value) noexcept : Variant() { Tag(VT_I2).iVal = value; }
    Variant(std::int32_t value) noexcept : Variant() { Tag(VT_I4).lVal = value; }
    Variant(long value) noexcept : Variant() { Tag(VT_I4).lVal = value; }
    Variant(double value) noexcept : Variant() { Tag(VT_R8).dblVal = value; }
    Variant(std::string_view utf8) : Variant() { Tag(VT_BSTR).bstrVal = NewBstr(utf8); }
    Variant(const std::string& utf8) : Variant(std::string_view(utf8)) {}
    Variant(const char* utf8) : Variant(std::string_view(utf8)) {}
    Variant(IDispatch* object) noexcept : Variant() {
        Tag(VT_DISPATCH).pdispVal = object;
        if (object) object->AddRef();
    }
    Variant(IUnknown* object) noexcept : Variant() {
        Tag(VT_UNKNOWN).punkVal = object;
        if (object) object->AddRef();
    }
    template <class Interface>
    Variant(const ComPtr<Interface>& object) noexcept : Variant(object.Get()) {}
    // A copy of what the value is, references followed (VariantCopyInd).
    Variant(const VARIANT& value);
    Variant(const Variant& other); // a reference stays a reference
    Variant(Variant&& other) noexcept : lclValue(other.lclValue) { VariantInit(&other.lclValue); }
    ~Variant() { VariantClear(&lclValue); }
    Variant& operator=(Variant other) noexcept {
        std::swap(lclValue, other.lclValue);
        return *this;
    }

    static Variant Null() noexcept;
    static Variant Missing() noexcept;               // an optional argument left out
    static Variant Big(std::int64_t value) noexcept; // VT_I4 where it fits, else VT_R8
    // An argument through which a callee gives a value back; `target` outlives the call.
    static Variant Reference(Variant& target) noexcept;
    // Takes the contents over without a copy.
    static Variant Attach(VARIANT value) noexcept;
    [[nodiscard]] VARIANT Detach() noexcept;

    const VARIANT& Get() const noexcept { return lclValue; }
    VARIANT* Address() noexcept { return &lclValue; }
    VARIANT* Put() noexcept {
        VariantClear(&lclValue);
        return &lclValue;
    }

    VARTYPE Type() const noexcept { return lclValue.vt; }
    bool IsEmpty() const noexcept { return Type() == VT_EMPTY; }
    bool IsNull() const noexcept { return Type() == VT_NULL; }
    bool IsMissing() const noexcept;
    bool IsObject() const noexcept { return Type() == VT_DISPATCH || Type() == VT_UNKNOWN; }
    bool IsArray() const noexcept { return (Type() & VT_ARRAY) != 0; }
    bool IsText() const noexcept { return Type() == VT_BSTR; }
    bool IsNumber() const noexcept;

    // Null and empty give the empty text, 0, false; an object gives its default property's value.
    std::string ToText() const;
    std::int32_t ToInt32() const;
    std::int64_t ToInt64() const;
    double ToDouble() const;
    bool ToBool() const;
    // Null for empty, null, Nothing and missing; throws for anything else that is no object.
    ComPtr<IDispatch> ToDispatch() const;
    // Converted to another VARTYPE as Automation does.
    Variant As(VARTYPE type) const;

private:
    VARIANT& Tag(VARTYPE type) noexcept {
        lclValue.vt = type;
        return lclValue;
    }

    VARIANT lclValue;
};

// Puts `value` where a by-reference argument points, converted to the type that it points at
// (VT_BYREF|VT_VARIANT takes any). False when `target` is no reference.
bool StoreByRef(const VARIANT& target, const Variant& value);

// One-dimensional arrays, of VARIANT for the host's scripts, of bytes for binary columns.
Variant ArrayOf(const std::vector<Variant>& elements);
std::vector<Variant> ElementsOf(const VARIANT& array); // any one-dimensional array
Variant ByteArray(const std::vector<std::uint8_t>& bytes);
std::vector<std::uint8_t> BytesOf(const VARIANT& array); // throws when it holds no bytes

// A 2-dimensional array of VARIANT as GetRows gives it, [column][row], read in one go.
std::vector<std::vector<Variant>> ColumnsOf(const VARIANT& array);
Variant TableOf(const std::vector<std::vector<Variant>>& columns, std::size_t rows);

} // namespace kavidex::platform::win32
