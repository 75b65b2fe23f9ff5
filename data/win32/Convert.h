// Database values to and from Automation's, as ADO gives them for each of its types.
#pragma once

#include "data/Value.h"
#include "platform/win32/Variant.h"

namespace kavidex::data::win32 {

// Null gives VT_NULL; dates VT_DATE; whole numbers the type of the column, or a decimal beyond 32
// bits; bytes an array of VT_UI1.
platform::win32::Variant ToVariant(const Value& value, AdoType type = AdoType::Variant);

// Empty and missing count as null. Dates become "yyyy-mm-dd hh:mm:ss"; decimals a whole number
// where `type` is a whole type or nothing is lost, else a floating one.
Value FromVariant(const VARIANT& value, AdoType type = AdoType::Variant);

} // namespace kavidex::data::win32
