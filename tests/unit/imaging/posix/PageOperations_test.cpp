// Pages joined, split, moved, deleted and turned: nothing is lost, and other programs agree.
#include "imaging/PageOperations.h"

#include <algorithm>

#include "imaging/annotations/Annotations.h"
#include "imaging/tiff/Source.h"
#include "platform/Error.h"
#include "tests/fakes/FaultyFiles.h"
#include "tests/unit/imaging/posix/Tools.h"

namespace kavidex::tests {
namespace {

using imaging::Turn;
using imaging::tiff::Source;

// The compressed data of a page, as it lies in the file.
std::string Strips(Source& source, int page) {
    const auto directory = source.Page(page);
    const bool tiled = directory.Find(322) != nullptr;
    const auto places = source.Numbers(*directory.Find(tiled ? 324 : 273));
    const auto sizes = source.Numbers(*directory.Find(tiled ? 325 : 279));
    std::string data;
    for (std::size_t i = 0; i < places.size(); ++i) {
        std::string strip(sizes[i], '\0');
        source.Read(places[i], strip.data(), strip.size());
        data += std::to_string(sizes[i]) + ":" + strip;
    }
    return data;
}

std::string Tag(Source& source, int page, std::uint16_t tag) {
    const auto directory = source.Page(page);
    const auto* entry = directory.Find(tag);
    return entry ? source.Value(*entry) : "(none)";
}

class PageOperations : public PageFiles {
protected:
    // Four pages of different kinds, the second with a tag nobody knows and with annotations.
    void SetUp() override {
        ASSERT_EQ(
            Run("convert -size 170x121 -seed 5 plasma:fractal -depth 8 -compress none rgb.tif && "
                "convert rgb.tif -monochrome -compress group4 bits.tif && "
                "tiffcp -c g4 -r 16 bits.tif 1.tif && tiffcp -c lzw:2 -r 20 rgb.tif 2.tif && "
                "tiffcp -c jpeg -r 16 rgb.tif 3.tif && tiffcp -t -w 32 -l 32 -c zip rgb.tif 4.tif"),
            "");
        imaging::annotations::Annotations marks;
        imaging::annotations::Mark mark;
        mark.type = imaging::annotations::MarkType::FilledRectangle;
        mark.bounds = {10, 20, 60, 50};
        marks.Add(mark, 1600000000);
        lclMarks = marks.Bytes();
        auto pages = imaging::PagesOf(files, folder.Path("2.tif"));
        pages[0].marks = lclMarks;
        imaging::WritePages(files, pages, folder.Path("2.tif"));
    }
    std::vector<std::string> Paths(const std::vector<std::string>& names) const {
        std::vector<std::string> paths;
        for (const std::string& name : names) paths.push_back(folder.Path(name));
        return paths;
    }
    void Staple(const std::vector<std::string>& names, const char* target) const {
        imaging::StapleFiles(files, Paths(names), folder.Path(target));
    }
    // Which of the four each page of the file is, in compressed data and annotations.
    std::string Order(const char* name) const {
        Source source(files, folder.Path(name));
        std::string order;
        for (int page = 1; page <= source.PageCount(); ++page) {
            char found = '?';
            for (char one = '1'; one <= '4'; ++one) {
                Source single(files, folder.Path(std::string(1, one) + ".tif"));
                if (Strips(single, 1) == Strips(source, page) &&
                    Tag(single, 1, 32932) == Tag(source, page, 32932) &&
                    Tag(single, 1, 347) == Tag(source, page, 347))
                    found = one;
            }
            order += found;
        }
        return order;
    }
    std::string lclMarks;
};

TEST_F(PageOperations, CopyCompressedDataAndAnnotationsAsTheyAre) {
    const std::string t = folder.Path("t.tif");
    Staple({"1.tif", "2.tif", "3.tif"}, "t.tif");
    EXPECT_EQ(Order("t.tif"), "123");
    imaging::AppendPages(files, t, Paths({"4.tif", "1.tif"}));
    EXPECT_EQ(Order("t.tif"), "12341");
    imaging::MovePage(files, t, 4, 1);
    EXPECT_EQ(Order("t.tif"), "41231");
    imaging::MovePage(files, t, 2, 4);
    EXPECT_EQ(Order("t.tif"), "42311");
    imaging::DeletePages(files, t, {4, 1});
    EXPECT_EQ(Order("t.tif"), "231");
    imaging::ExtractPages(files, t, {3, 1}, folder.Path("x.tif"));
    EXPECT_EQ(Order("x.tif"), "12");
    const auto split = imaging::SplitPages(
        files, t, [&](int page) { return folder.Path("s" + std::to_string(page) + ".tif"); });
    ASSERT_EQ(split, Paths({"s1.tif", "s2.tif", "s3.tif"}));
    EXPECT_EQ(Order("s1.tif") + Order("s2.tif") + Order("s3.tif"), "231");
    for (const char* pair : {"s1.tif 2.tif", "s3.tif 1.tif"})
        EXPECT_EQ(Run(std::string("tiffcmp ") + pair + " && tiffinfo -D -s t.tif"), "");

    // What would leave nothing, or is not there, is refused, and nothing changes.
    const std::string before = Bytes("t.tif");
    EXPECT_THROW(imaging::DeletePages(files, t, {1, 2, 3}), platform::Error);
    EXPECT_THROW(imaging::DeletePages(files, t, {4}), platform::Error);
    EXPECT_THROW(imaging::MovePage(files, t, 1, 4), platform::Error);
    EXPECT_THROW(Staple({"1.tif"}, "t.tif"), platform::Error) << "a staple replaces no file";
    EXPECT_THROW(imaging::SplitPages(files, t,
                                     [&](int page) {
                                         return folder.Path(
                                             page == 3 ? "1.tif" : "new" + std::to_string(page));
                                     }),
                 platform::Error);
    EXPECT_FALSE(files.FileExists(folder.Path("new1")));
    EXPECT_EQ(Bytes("t.tif"), before);
}

TEST_F(PageOperations, JoinFilesOfBothByteOrdersAndSizes) {
    ASSERT_EQ(Run("convert rgb.tif -depth 16 -compress none -endian MSB m16.tif && "
                  "convert rgb.tif -depth 16 -compress lzw -endian MSB z16.tif && "
                  "tiffcp -B -c g4 bits.tif m1.tif && tiffcp -8 -c zip rgb.tif big.tif && "
                  "tiffset -s 315 'An artist of some length' m1.tif && "
                  "tiffset -s 297 0 1 m1.tif"),
              "");
    Staple({"1.tif", "m1.tif", "m16.tif", "z16.tif"}, "t.tif");
    EXPECT_EQ(Bytes("t.tif").substr(0, 2), "II");
    Staple({"m1.tif", "t.tif", "big.tif"}, "u.tif");
    EXPECT_EQ(Bytes("u.tif").substr(0, 4), std::string("MM\0+", 4)) << "a BigTIFF now";
    const char* pages[] = {"m1.tif", "1.tif", "m1.tif", "m16.tif", "z16.tif", "big.tif"};
    for (int page = 0; page < 6; ++page)
        EXPECT_EQ(Difference(Seen("u.tif", page), Seen(pages[page])), 0) << page;
    EXPECT_EQ(Run("tiffinfo u.tif | grep -c 'Artist: An artist of some length' | grep -q 2 && "
                  "tiffinfo u.tif | grep -q 'Page Number: 2-6'"),
              "");
    Source joined(files, folder.Path("u.tif")), single(files, folder.Path("1.tif"));
    EXPECT_EQ(Strips(joined, 2), Strips(single, 1)) << "in the other byte order too";
}

TEST_F(PageOperations, TurnWithoutLoss) {
    ASSERT_EQ(Run("convert rgb.tif -depth 16 -compress lzw -endian MSB 5.tif && "
                  "convert rgb.tif -colors 14 -type palette -compress zip 6.tif && "
                  "tiffcp -c g3:2d bits.tif 7.tif && tiffset -s 274 6 1.tif && "
                  "tiffcp -p separate -c packbits rgb.tif 8.tif && "
                  "convert rgb.tif -colorspace gray -depth 2 -compress lzw 9.tif && "
                  "for i in 1 2 3 4 5 6 7 8 9; do tiffset -s 282 200 $i.tif; tiffset -s 283 100 "
                  "$i.tif; done"),
              "");
    for (char one = '1'; one <= '9'; ++one) {
        const std::string name = std::string(1, one) + ".tif", path = folder.Path(name);
        SCOPED_TRACE(name);
        const int compression = Open(name).Facts(1).compression;
        const std::string
            before = Seen(name),
            wanted = "convert -quiet " + name +
                     " -auto-orient -background white -alpha remove -colorspace sRGB -depth 8 ";
        ASSERT_EQ(Run(wanted + "-rotate 90 RGB:right && " + wanted + "-rotate 180 RGB:half"), "");
        const double x = Open(name).Facts(1).xDpi;
        const auto seen = [&](const std::string& as) {
            // ImageMagick misreads JPEG pages that do not stand upright.
            if (one != '3') {
                EXPECT_EQ(Difference(Seen(name), as), 0);
            }
            EXPECT_LE(Difference(Colours(Open(name).Decode(1)), as),
                      one == '6' || one == '3' ? 1 : 0);
        };
        imaging::RotatePage(files, path, 1, Turn::Right);
        seen(Bytes("right"));
        EXPECT_NEAR(Open(name).Facts(1).yDpi, x, 0.01) << "the sides' resolutions go with them";
        EXPECT_EQ(Open(name).Facts(1).compression, compression);
        EXPECT_EQ(Open(name).Facts(1).orientation, one == '3' ? 6 : 1);
        imaging::RotatePage(files, path, 1, Turn::Right);
        seen(Bytes("half"));
        imaging::RotatePage(files, path, 1, Turn::Left);
        imaging::RotatePage(files, path, 1, Turn::Left);
        seen(before);
        EXPECT_EQ(Run("tiffinfo -D " + name), "");
    }
    // Its annotations came round with the page.
    EXPECT_EQ(Open("2.tif").Marks(1), lclMarks);
    imaging::RotatePage(files, folder.Path("2.tif"), 1, Turn::Right);
    const imaging::annotations::Annotations turned(*Open("2.tif").Marks(1));
    EXPECT_EQ(turned.At(0).bounds.left, 121 - 50);
    EXPECT_EQ(turned.At(0).bounds.top, 10);
}

// Whatever fails, the document is the old one or the new one, and nothing else stays behind.
TEST_F(PageOperations, TurnADamagedPageWithoutTouchingWhatItHas) {
    auto bytes = files.ReadAll(folder.Path("2.tif"));
    {
        Source source(files, folder.Path("2.tif"));
        const auto place = source.Numbers(*source.Page(1).Find(273)).back();
        for (int i = 0; i < 8; ++i) bytes[place + 20 + i] = '\x5A';
    }
    files.WriteAll(folder.Path("2.tif"), bytes);
    Source before(files, folder.Path("2.tif"));
    imaging::RotatePage(files, folder.Path("2.tif"), 1, Turn::Right);
    Source after(files, folder.Path("2.tif"));
    EXPECT_EQ(Strips(after, 1), Strips(before, 1));
    EXPECT_EQ(after.Number(after.Page(1), 274, 1), 6U) << "it is shown turned";
}

TEST_F(PageOperations, AFailureLeavesTheDocumentAsItWas) {
    Staple({"1.tif", "2.tif", "3.tif", "4.tif"}, "t.tif");
    const std::string before = Bytes("t.tif"), path = folder.Path("t.tif");
    const auto names = [&] { return files.List(folder.Folder(), "*"); };
    const auto there = names();
    FaultyFiles faulty(files);
    int failures = 0;
    for (int n = 1;; ++n) {
        faulty.FailAt(n);
        try {
            imaging::MovePage(faulty, path, 1, 4);
            break;
        } catch (const platform::Error&) {
            ++failures;
        }
        ASSERT_EQ(Bytes("t.tif"), before);
        ASSERT_EQ(names(), there);
    }
    EXPECT_GE(failures, 5);
    EXPECT_EQ(Order("t.tif"), "2341");
    files.SetAttributes(path, platform::attributes::readOnly);
    EXPECT_THROW(imaging::DeletePages(files, path, {1}), platform::Error);
    files.SetAttributes(path, platform::attributes::normal);
    Write("bad.tif", Bytes("1.tif").substr(0, 700));
    EXPECT_THROW(imaging::AppendPages(files, path, {folder.Path("bad.tif")}), platform::Error);
    EXPECT_EQ(Order("t.tif"), "2341");
    auto after = there;
    after.push_back("bad.tif");
    std::sort(after.begin(), after.end());
    EXPECT_EQ(names().size(), after.size());
}

} // namespace
} // namespace kavidex::tests
