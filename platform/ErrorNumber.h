// The number of an error as a user and a host's code know it.
#pragma once

#include <cstdint>

namespace kavidex::platform {

namespace errors {
constexpr std::int32_t invalidPropertyValue = 380;
}

// Run-time errors of automation travel as results of its own facility: 3021 as 0x800A0BCD. They
// read as the number itself; any other result stays as it is.
constexpr std::int32_t ShownNumber(std::int32_t number) {
    const auto bits = static_cast<std::uint32_t>(number);
    return bits >> 16 == 0x800A ? static_cast<std::int32_t>(bits & 0xFFFF) : number;
}

} // namespace kavidex::platform
