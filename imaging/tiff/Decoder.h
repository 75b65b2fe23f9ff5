// Decodes a page row by row.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "imaging/tiff/Samples.h"

namespace kavidex::imaging::tiff {

// At most this much memory for one page, whatever it claims.
constexpr std::size_t mostMemory = std::size_t{256} << 20;

// Rows in the format samples.Shown() tells, from the top as stored.
using RowSink = std::function<void(const std::uint8_t* row)>;

// Hands over the rows that can be read and tells the first complaint, or empty when the page is
// whole. Throws platform::Error where not one row can be read, or it would take too much memory:
// `held` is what the receiver of the rows needs.
std::string DecodeRows(Source& source, const Directory& page, const Samples& samples,
                       std::size_t held, const RowSink& sink);

// All samples of a page in one piece, pixel by pixel, as stored: to encode them anew. Empty where
// they cannot be had that way, or not without loss.
std::vector<std::uint8_t> DecodeSamples(Source& source, const Directory& page,
                                        const Samples& samples);

} // namespace kavidex::imaging::tiff
