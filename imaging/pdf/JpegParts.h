// A JPEG stream taken apart, as far as joining several into one needs it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::imaging {

struct JpegParts {
    std::string tables;  // segments before the frame, and between it and the scan
    std::string frame;   // the frame's segment, with its marker
    std::string scan;    // the scan's segment, with its marker
    std::string entropy; // what follows it, to the end of the image
    std::uint32_t width = 0, height = 0;
    unsigned components = 0, unitWidth = 8, unitHeight = 8;
    bool sequential = false, restarts = false, adobe = false;
    double xDpi = 0, yDpi = 0;
    int orientation = 1; // as TIFF numbers them: how a camera was held

    std::string Whole() const;
};

// `shared` are segments that belong before it. Null when it is no JPEG of 8 bits.
std::optional<JpegParts> ReadJpeg(std::string_view bytes, std::string_view shared);

// Strips of `rows` rows each, from the top, as one image. Null when they cannot be joined.
std::optional<std::string> JoinJpegs(const std::vector<JpegParts>& strips, std::uint32_t width,
                                     std::uint32_t height, std::uint32_t rows);

} // namespace kavidex::imaging
