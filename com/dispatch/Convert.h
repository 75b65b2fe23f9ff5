// One VARIANT and one C++ type: how a dispatch row's arguments come in and its result goes out.
// A type without a Convert here can be added beside its class.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "com/dispatch/ErrorBoundary.h"
#include "com/dispatch/Native.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Variant.h"

namespace kavidex::com {

using platform::win32::ComPtr;
using platform::win32::Variant;

// `type` is what the type library must say. From throws on a value that does not convert.
template <class T, class = void>
struct Convert;

template <>
struct Convert<Variant> {
    static constexpr VARTYPE type = VT_VARIANT;
    static Variant From(const Variant& value) { return value; }
    static Variant To(Variant value) { return value; }
};

template <>
struct Convert<std::string> {
    static constexpr VARTYPE type = VT_BSTR;
    static std::string From(const Variant& value) { return value.ToText(); }
    static Variant To(const std::string& value) { return {value}; }
};

template <>
struct Convert<std::string_view> { // as a result; Member.h holds the text of a parameter
    static constexpr VARTYPE type = VT_BSTR;
    static Variant To(std::string_view value) { return {value}; }
};

template <>
struct Convert<bool> {
    static constexpr VARTYPE type = VT_BOOL;
    static bool From(const Variant& value) { return value.ToBool(); }
    static Variant To(bool value) { return {value}; }
};

template <>
struct Convert<double> {
    static constexpr VARTYPE type = VT_R8;
    static double From(const Variant& value) { return value.ToDouble(); }
    static Variant To(double value) { return {value}; }
};

template <>
struct Convert<std::int16_t> {
    static constexpr VARTYPE type = VT_I2;
    static std::int16_t From(const Variant& value) { // beyond 16 bits: DISP_E_OVERFLOW
        return value.IsEmpty() || value.IsNull() ? std::int16_t{0} : value.As(VT_I2).Get().iVal;
    }
    static Variant To(std::int16_t value) { return {value}; }
};

// A number that is declared with 16 bits, where late-bound callers may give a larger one.
struct Short {
    std::int32_t value = 0;
};

template <>
struct Convert<Short> {
    static constexpr VARTYPE type = VT_I2;
    static Short From(const Variant& value) { return {value.ToInt32()}; }
};

template <>
struct Convert<std::int32_t> {
    static constexpr VARTYPE type = VT_I4;
    static std::int32_t From(const Variant& value) { return value.ToInt32(); }
    static Variant To(std::int32_t value) { return {value}; }
};

// Whole numbers of 64 bits go out as VT_I4 where they fit, else as a double: scripts know no VT_I8.
template <>
struct Convert<std::int64_t> {
    static constexpr VARTYPE type = VT_VARIANT;
    static std::int64_t From(const Variant& value) { return value.ToInt64(); }
    static Variant To(std::int64_t value) { return Variant::Big(value); }
};

template <class T>
struct Convert<T, std::enable_if_t<std::is_enum_v<T>>> {
    static constexpr VARTYPE type = VT_I4;
    static T From(const Variant& value) { return static_cast<T>(value.ToInt32()); }
    static Variant To(T value) { return {static_cast<std::int32_t>(value)}; }
};

// Null stands for Nothing, in both directions.
template <>
struct Convert<ComPtr<IDispatch>> {
    static constexpr VARTYPE type = VT_DISPATCH;
    static ComPtr<IDispatch> From(const Variant& value) { return value.ToDispatch(); }
    static Variant To(const ComPtr<IDispatch>& value) { return {value}; }
};

template <>
struct Convert<ComPtr<IUnknown>> { // enumerators
    static constexpr VARTYPE type = VT_UNKNOWN;
    static Variant To(const ComPtr<IUnknown>& value) { return {value}; }
};

// The COM face of a C++ object that is shared: specialise with
//     static ComPtr<IDispatch> Make(std::shared_ptr<T> object);
// before the first row that takes or returns one. The face answers INative with the same object.
template <class T>
struct FaceOf;

template <class T>
struct Convert<std::shared_ptr<T>> {
    static constexpr VARTYPE type = VT_DISPATCH;
    static std::shared_ptr<T> From(const Variant& value) {
        const ComPtr<IDispatch> object = value.ToDispatch();
        if (!object) return nullptr;
        auto native = NativeOf<T>(object.Get());
        if (!native) throw Refusal{DISP_E_TYPEMISMATCH};
        return native;
    }
    static Variant To(std::shared_ptr<T> value) {
        return value ? Variant(FaceOf<T>::Make(std::move(value)))
                     : Variant(static_cast<IDispatch*>(nullptr));
    }
};

// A by-reference argument: holds what came in, and goes back to the caller when the call succeeds.
// The type library says VARIANT* for it, as scripts hand variables over.
template <class T>
struct ByRef {
    T value{};
};

} // namespace kavidex::com
