// The interface ids of the ADODB-compatible objects, as the type library has them, and the private
// ones by which these objects know each other.
#pragma once

#include <windows.h>

#include "com/dispatch/Native.h"

namespace kavidex::com::adodb {

constexpr IID IdNumber(unsigned char number) {
    return {0x6f1d2a40, 0x3b7c, 0x4e55, {0x9c, 0x21, 0x5a, 0x0e, 0x4b, 0x8d, 0x70, number}};
}

inline constexpr IID iidConnection = IdNumber(0x01), iidRecordset = IdNumber(0x02),
                     iidFields = IdNumber(0x03), iidField = IdNumber(0x04),
                     iidCommand = IdNumber(0x05), iidParameters = IdNumber(0x06),
                     iidParameter = IdNumber(0x07), iidProperties = IdNumber(0x08),
                     iidProperty = IdNumber(0x09), iidErrors = IdNumber(0x0a),
                     iidError = IdNumber(0x0b);

inline const IID iidConnectionObject = ModuleIid(0x81), iidCommandObject = ModuleIid(0x82),
                 iidParameterObject = ModuleIid(0x83);

} // namespace kavidex::com::adodb
