// Which scanner or program made an image, as the image itself says.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace kavidex::platform {
class FileReader;
class Files;
} // namespace kavidex::platform

namespace kavidex::imaging {

// Of a TIFF file: maker and model of the scanner (tags 271 and 272), or the program (305); empty
// when it tells neither, is damaged, or is no TIFF. Only the first page's tags are read. Throws
// platform::Error when the file cannot be read.
std::string ScanSource(platform::Files& files, std::string_view path);
std::string ScanSource(std::unique_ptr<platform::FileReader> reader);

} // namespace kavidex::imaging
