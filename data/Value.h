// One database value and its ADO type number.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace kavidex::data {

using Bytes = std::vector<std::uint8_t>;

// Null, yes/no, whole number, floating number, text (UTF-8; dates as yyyy-mm-dd hh:mm:ss), bytes.
using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string, Bytes>;

// ADO's DataTypeEnum, by its own numbers.
enum class AdoType : int {
    Empty = 0,
    SmallInt = 2,
    Integer = 3,
    Single = 4,
    Double = 5,
    Currency = 6,
    Date = 7,
    BStr = 8,
    Boolean = 11,
    Variant = 12,
    Decimal = 14,
    TinyInt = 16,
    UnsignedTinyInt = 17,
    UnsignedSmallInt = 18,
    UnsignedInt = 19,
    BigInt = 20,
    UnsignedBigInt = 21,
    Guid = 72,
    Binary = 128,
    Char = 129,
    WChar = 130,
    Numeric = 131,
    DBDate = 133,
    DBTime = 134,
    DBTimeStamp = 135,
    VarNumeric = 139,
    VarChar = 200,
    LongVarChar = 201,
    VarWChar = 202,
    LongVarWChar = 203,
    VarBinary = 204,
    LongVarBinary = 205
};

inline bool IsNull(const Value& value) { return std::holds_alternative<std::monostate>(value); }

// As Basic converts: null gives an empty text, yes/no "True"/"False", numbers their decimal text
// with a full stop.
std::string ToText(const Value& value);
// Texts by their leading number, null 0, true -1; beyond the range of the type: the nearest end.
std::int64_t ToInt64(const Value& value);
std::int32_t ToInt32(const Value& value);
double ToDouble(const Value& value);
// Null and 0 are false, any other number true; texts as Basic reads them ("True", "-1", "0").
bool ToBool(const Value& value);

} // namespace kavidex::data
