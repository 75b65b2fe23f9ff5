#include "data/win32/Convert.h"

#include <cmath>
#include <cstdio>
#include <optional>

#include "data/Error.h"
#include "platform/win32/Late.h"

namespace kavidex::data::win32 {

namespace {

using platform::win32::Variant;

bool IsDate(AdoType type) {
    return type == AdoType::Date || type == AdoType::DBDate || type == AdoType::DBTime ||
           type == AdoType::DBTimeStamp;
}

std::optional<VARTYPE> NumberType(AdoType type) {
    switch (type) {
    case AdoType::SmallInt: return VT_I2;
    case AdoType::Integer: return VT_I4;
    case AdoType::UnsignedTinyInt: return VT_UI1;
    case AdoType::Boolean: return VT_BOOL;
    case AdoType::Single: return VT_R4;
    case AdoType::Double: return VT_R8;
    case AdoType::Currency: return VT_CY;
    default: return {};
    }
}

Variant DateOf(const std::string& text) {
    SYSTEMTIME time = {};
    unsigned year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    const int parts = std::sscanf(text.c_str(), "%4u-%2u-%2u%*[ T]%2u:%2u:%2u", &year, &month, &day,
                                  &hour, &minute, &second);
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_DATE;
    if (parts < 3) {
        if (std::sscanf(text.c_str(), "%2u:%2u:%2u", &hour, &minute, &second) < 2)
            return {text}; // no date: the text itself tells more than an error
        value.date = (hour * 3600 + minute * 60 + second) / 86400.0;
        return Variant::Attach(value);
    }
    time.wYear = static_cast<WORD>(year);
    time.wMonth = static_cast<WORD>(month);
    time.wDay = static_cast<WORD>(day);
    time.wHour = static_cast<WORD>(hour);
    time.wMinute = static_cast<WORD>(minute);
    time.wSecond = static_cast<WORD>(second);
    if (!SystemTimeToVariantTime(&time, &value.date)) return {text};
    return Variant::Attach(value);
}

Variant Whole(std::int64_t number) {
    if (number >= INT32_MIN && number <= INT32_MAX) return {static_cast<std::int32_t>(number)};
    VARIANT value;
    VariantInit(&value);
    platform::win32::Check(VarDecFromI8(number, &value.decVal), "Kavidex.Value");
    value.vt = VT_DECIMAL; // shares its bytes with decVal: set last
    return Variant::Attach(value);
}

// The number as the column's own type, or in its natural type when it does not fit there.
Variant Fitted(Variant number, AdoType type) {
    const auto wanted = NumberType(type);
    if (!wanted) return number;
    Variant fitted;
    const HRESULT result =
        VariantChangeType(fitted.Address(), const_cast<VARIANT*>(&number.Get()), 0, *wanted);
    return SUCCEEDED(result) ? fitted : number;
}

std::string DateText(DATE date) {
    SYSTEMTIME time = {};
    if (!VariantTimeToSystemTime(date, &time))
        throw Error(DISP_E_OVERFLOW, "The date is out of range.", "Kavidex.Value");
    char text[32];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", time.wYear, time.wMonth,
                  time.wDay, time.wHour, time.wMinute, time.wSecond);
    return text;
}

bool IsWhole(AdoType type) {
    switch (type) {
    case AdoType::SmallInt:
    case AdoType::Integer:
    case AdoType::TinyInt:
    case AdoType::UnsignedTinyInt:
    case AdoType::UnsignedSmallInt:
    case AdoType::UnsignedInt:
    case AdoType::BigInt:
    case AdoType::UnsignedBigInt: return true;
    default: return false;
    }
}

Value FromDecimal(const Variant& value, AdoType type) {
    const double number = value.ToDouble();
    // Rounded once to a double, 2^63 would be out of range again: the decimal itself is converted.
    const bool fits = number > -9.2e18 && number < 9.2e18;
    if (fits && (IsWhole(type) || number == std::floor(number))) return value.ToInt64();
    return number;
}

} // namespace

Variant ToVariant(const Value& value, AdoType type) {
    if (IsNull(value)) return Variant::Null();
    if (const auto* flag = std::get_if<bool>(&value)) return Fitted(*flag, type);
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return Fitted(Whole(*whole), type);
    if (const auto* number = std::get_if<double>(&value)) return Fitted(*number, type);
    if (const auto* bytes = std::get_if<Bytes>(&value)) return platform::win32::ByteArray(*bytes);
    const std::string& text = std::get<std::string>(value);
    return IsDate(type) ? DateOf(text) : Variant(text);
}

Value FromVariant(const VARIANT& given, AdoType type) {
    Variant value(given);
    if (value.Type() == VT_DISPATCH) value = value.As(VT_VARIANT);
    switch (value.Type()) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR: return {};
    case VT_BOOL: return value.ToBool();
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_I8:
    case VT_UI8: return value.ToInt64();
    case VT_R4:
    case VT_R8: return value.ToDouble();
    case VT_CY:
    case VT_DECIMAL: return FromDecimal(value, type);
    case VT_DATE: return DateText(value.Get().date);
    case VT_BSTR: return value.ToText();
    default: break;
    }
    if (value.Type() == (VT_ARRAY | VT_UI1)) return platform::win32::BytesOf(value.Get());
    throw Error(DISP_E_TYPEMISMATCH, "This kind of value cannot be stored in a column.",
                "Kavidex.Value");
}

} // namespace kavidex::data::win32
