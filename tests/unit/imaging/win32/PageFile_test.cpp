// The libraries as they are built for Windows.
#include "imaging/PageFile.h"

#include <gtest/gtest.h>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "tests/fakes/SmallTiff.h"

namespace kavidex::tests {
namespace {

// 16 by 2: black with a white half in the second row, uncompressed.
std::string OnePage() {
    return TiffOf({{256, 4, 1, 16},
                   {257, 4, 1, 2},
                   {258, 4, 1, 1},
                   {259, 4, 1, 1},
                   {262, 4, 1, 1},
                   {273, 4, 1, 8 + 2 + 9 * 12 + 4},
                   {277, 4, 1, 1},
                   {278, 4, 1, 2},
                   {279, 4, 1, 4}},
                  std::string("\0\0\0\xFF", 4));
}

TEST(PagesOnWindows, EveryCompressionIsInTheLibraries) {
    platform::Files& files = platform::TheWorkstation().files;
    const std::string path = platform::JoinPath(files.TemporaryFolder(), "kavidex-broken.tif");
    std::string bytes = OnePage();
    // None of them decodes those bytes; a codec that is missing says that it is.
    for (const int compression : {4, 5, 7, 8, 32773}) {
        bytes[8 + 2 + 3 * 12 + 8] = static_cast<char>(compression & 0xFF);
        bytes[8 + 2 + 3 * 12 + 9] = static_cast<char>(compression >> 8);
        files.WriteAll(path, bytes);
        try {
            imaging::PageFile(files, path).Decode(1);
        } catch (const platform::Error& error) {
            EXPECT_EQ(std::string(error.what()).find("not configured"), std::string::npos)
                << error.what();
            EXPECT_EQ(error.Number(), platform::errors::invalidData);
        }
    }
    files.Remove(path);
}

} // namespace
} // namespace kavidex::tests
