// Page files made by other people's programs, and what those programs read in ours.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "imaging/PageFile.h"
#include "platform/Workstation.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::tests {

class PageFiles : public testing::Test {
protected:
    // In the test's folder; "" when it worked.
    std::string Run(const std::string& command) const {
        const std::string log = FileOf("log").string();
        const std::string all = "cd '" + FakeWorkstation::Native(folder.Folder()).string() +
                                "' && { " + command + "; } >'" + log + "' 2>&1";
        return std::system(all.c_str()) == 0 ? "" : command + ": " + Bytes("log");
    }
    std::string Bytes(const std::string& name) const {
        std::ifstream file(FileOf(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(FileOf(name), std::ios::binary) << bytes;
    }
    imaging::PageFile Open(const std::string& name) const {
        return imaging::PageFile(files, folder.Path(name));
    }
    // What ImageMagick sees on a page, from 0, three bytes an element, upright and over white.
    std::string Seen(const std::string& name, int page = 0) const {
        EXPECT_EQ(Run("convert -quiet '" + name + "[" + std::to_string(page) +
                      "]' -auto-orient -background white -alpha remove -colorspace sRGB -depth 8 "
                      "RGB:seen"),
                  "");
        return Bytes("seen");
    }

    std::filesystem::path FileOf(const std::string& name) const {
        return FakeWorkstation::Native(folder.Path(name));
    }

    FakeWorkstation folder;
    platform::Files& files = platform::TheWorkstation().files;
};

// Three bytes an element.
inline std::string Colours(const imaging::PageBitmap& bitmap) {
    std::string colours;
    for (std::uint32_t y = 0; y < bitmap.height; ++y)
        for (std::uint32_t x = 0; x < bitmap.width; ++x) {
            const std::uint8_t* row = bitmap.Row(y);
            switch (bitmap.format) {
            case imaging::PixelFormat::bits1:
                colours.append(3, row[x / 8] & 0x80 >> x % 8 ? '\xFF' : '\0');
                break;
            case imaging::PixelFormat::grey8: colours.append(3, static_cast<char>(row[x])); break;
            default: colours.append(reinterpret_cast<const char*>(row) + std::size_t{x} * 3, 3);
            }
        }
    return colours;
}

// The largest difference; 256 where the sizes differ.
inline int Difference(const std::string& one, const std::string& other) {
    if (one.size() != other.size()) return 256;
    int most = 0;
    for (std::size_t i = 0; i < one.size(); ++i)
        most = std::max(most, std::abs(static_cast<unsigned char>(one[i]) -
                                       static_cast<unsigned char>(other[i])));
    return most;
}

} // namespace kavidex::tests
