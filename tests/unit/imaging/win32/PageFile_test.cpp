// The libraries as they are built for Windows, and Windows' own ways with open files.
#include "imaging/PageFile.h"

#include <gtest/gtest.h>

#include "imaging/PageOperations.h"
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

TEST(PagesOnWindows, FilesWithNamesOfAnyAlphabetAreReadAndReplaced) {
    platform::Files& files = platform::TheWorkstation().files;
    const std::string folder = platform::JoinPath(files.TemporaryFolder(), "kavidex pages");
    files.CreateDirectories(folder);
    const std::string one = platform::JoinPath(folder, "dóssiër 漢ж.tif"),
                      two = platform::JoinPath(folder, "και.tif");
    files.WriteAll(one, OnePage());
    if (files.FileExists(two)) files.Remove(two);
    imaging::StapleFiles(files, {one, one, one}, two);
    imaging::RotatePage(files, two, 2, imaging::Turn::Right);
    imaging::DeletePages(files, two, {1});
    {
        imaging::PageFile pages(files, two);
        ASSERT_EQ(pages.Count(), 2);
        const imaging::PageBitmap turned = pages.Decode(1), plain = pages.Decode(2);
        EXPECT_EQ(turned.width, 2u);
        EXPECT_EQ(turned.height, 16u);
        EXPECT_EQ(plain.bytes, (std::vector<std::uint8_t>{0, 0, 0, 0xFF}));
        // The second row's white half now stands on the left, below.
        EXPECT_EQ(turned.Row(0)[0] & 0xC0, 0);
        EXPECT_EQ(turned.Row(15)[0] & 0xC0, 0x80);
    }
    files.Remove(one);
    const auto split = imaging::SplitPages(
        files, two, [&](int page) { return two + "." + std::to_string(page) + ".tif"; });
    EXPECT_EQ(imaging::CountPages(files, split[1]), 1);
    for (const std::string& path : split) files.Remove(path);
    files.Remove(two);
    EXPECT_TRUE(files.List(folder, "*").empty()) << "no temporary file stays";
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
