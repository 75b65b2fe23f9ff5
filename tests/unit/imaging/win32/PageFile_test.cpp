// The libraries as they are built for Windows, and Windows' own ways with open files.
#include "imaging/PageFile.h"

#include <gtest/gtest.h>

#include "imaging/PageOperations.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"

namespace kavidex::tests {
namespace {

// 16 by 2: black with a white half in the second row, uncompressed.
std::string OnePage() {
    std::string tiff("II*\0\x08\0\0\0", 8);
    const auto put = [&](std::uint32_t number, int size) {
        for (int i = 0; i < size; ++i) tiff += static_cast<char>(number >> 8 * i);
    };
    const std::uint32_t entries[][2] = {{256, 16}, {257, 2}, {258, 1},
                                        {259, 1},  {262, 1}, {273, 8 + 2 + 9 * 12 + 4},
                                        {277, 1},  {278, 2}, {279, 4}};
    put(9, 2);
    for (const auto& [tag, value] : entries) {
        put(tag, 2);
        put(4, 2);
        put(1, 4);
        put(value, 4);
    }
    put(0, 4);
    put(0xFF000000, 4);
    return tiff;
}

TEST(PagesOnWindows, FilesWithNamesOfAnyAlphabetAreReadAndReplaced) {
    platform::Files& files = platform::TheWorkstation().files;
    const std::string folder = platform::JoinPath(files.TemporaryFolder(), "kavidex pages");
    files.CreateDirectories(folder);
    const std::string one = platform::JoinPath(folder,
                                               "d\xC3\xB3ssi\xC3\xABr \xE6\xBC\xA2\xD0\xB6.tif"),
                      two = platform::JoinPath(folder, "\xCE\xBA\xCE\xB1\xCE\xB9.tif");
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
