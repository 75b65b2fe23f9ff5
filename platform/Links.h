// Folders that lead to other ones: links, junctions, mounted volumes.
#pragma once

#include <cstdint>

namespace kavidex::platform::attributes {

// Beside `directory`, among what Files::Attributes answers.
constexpr std::uint32_t link = 1024;

} // namespace kavidex::platform::attributes
