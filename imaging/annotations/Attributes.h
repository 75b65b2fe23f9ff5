// The fields of a mark inside its stored bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "imaging/annotations/Mark.h"

namespace kavidex::imaging::annotations {

inline constexpr std::size_t attributesSize = 164;

// `body` holds at least attributesSize bytes.
void ReadAttributes(std::string_view body, Mark& mark);
std::string NewAttributes(const Mark& mark, std::uint32_t now);
// Writes those fields that differ between the two; false when none does.
bool PatchAttributes(std::string& body, const Mark& before, const Mark& after);
void SetBounds(std::string& body, const Box& bounds);
void SetChanged(std::string& body, std::uint32_t now);

// Blocks. Reading fills what is there; a block too short leaves the mark as it was.
void ReadPoints(std::string_view data, Mark& mark);
std::string PointData(const std::vector<Point>& points);
void ReadText(std::string_view data, Mark& mark);
// `bytes` in the code page of the font.
std::string TextData(std::string_view bytes, std::int32_t orientation, std::uint32_t creationScale);
// Orientation and scale alone; false when neither differs.
bool PatchTextPlace(std::string& data, const Mark& before, const Mark& after);
std::string PlacementData(std::int32_t rotation);

// The mark's text in a character set that holds it, which the font gets. Throws platform::Error
// when there is none, or when the text is too long for its kind.
std::string EncodeText(Mark& mark);

} // namespace kavidex::imaging::annotations
