// Globally unique identifiers from the operating system.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace kavidex::platform {

using GuidBytes = std::array<std::uint8_t, 16>; // in the order of the text form

class Guids {
public:
    virtual ~Guids() = default;
    virtual std::optional<GuidBytes> New() = 0; // null when the system could not make one
};

} // namespace kavidex::platform
