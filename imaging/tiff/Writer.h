// Writes a TIFF file from pages of others, front to back, one page in hand at a time.
#pragma once

#include <functional>
#include <optional>

#include "imaging/tiff/PageCopy.h"

namespace kavidex::platform {
class FileWriter;
} // namespace kavidex::platform

namespace kavidex::imaging::tiff {

// Gives the page that stands at `index`, from 0; it stays valid until the next call. What it points
// to must live as long.
using NextPage = std::function<PageToCopy(std::size_t index)>;

// False, and the writing stopped, where the file would outgrow the layout (4 GiB unless BigTIFF).
bool WritePages(platform::FileWriter& file, const Layout& layout, std::size_t count,
                const NextPage& page);

} // namespace kavidex::imaging::tiff
