// Pages that claim more than they have: a message, and soon.
#include <array>
#include <ctime>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "imaging/MemoryReader.h"
#include "imaging/PageFile.h"
#include "imaging/PlanWriter.h"
#include "platform/Error.h"
#include "tests/fakes/SmallTiff.h"

namespace kavidex::tests {
namespace {

struct Claim {
    const char* what;
    std::vector<std::array<std::uint32_t, 4>> entries; // tag, type, count, value
    bool shown, copied; // what is copied can be turned, by its orientation at least
};

struct NoWriter : platform::FileWriter {
    void Write(std::string_view) override {}
    void PutInPlace(bool, bool) override {}
};

std::vector<Claim> Claims() {
    const auto page = [](std::uint32_t width, std::uint32_t height, std::uint32_t bits,
                         std::uint32_t compression, std::uint32_t size) {
        return std::vector<std::array<std::uint32_t, 4>>{
            {256, 4, 1, width},       {257, 4, 1, height}, {258, 3, 1, bits},
            {259, 3, 1, compression}, {262, 3, 1, 1},      {273, 4, 1, 300},
            {277, 3, 1, 1},           {278, 4, 1, height}, {279, 4, 1, size}};
    };
    const auto with = [](auto entries, std::array<std::uint32_t, 4> more) {
        entries.push_back(more);
        return entries;
    };
    return {
        {"no size", page(0, 0, 1, 1, 10), false, true},
        {"sides beyond measure", page(0xFFFFFFFF, 0xFFFFFFFF, 1, 4, 10), false, true},
        {"more than there is", page(30000, 30000, 8, 1, 2000), false, true},
        {"a fax of a square kilometre", page(1 << 20, 1 << 20, 1, 4, 2000), false, true},
        {"a large fax of nothing", page(32000, 32000, 1, 4, 2000), false, true},
        {"a large fax of nothing, old", page(32000, 32000, 1, 3, 2000), false, true},
        {"deflated nothing", page(20000, 20000, 8, 8, 2000), false, true},
        {"strip behind the end", page(100, 100, 8, 1, 0x7FFFFFFF), false, false},
        {"tags behind the end", with(page(9, 9, 8, 1, 81), {65000, 1, 0x00FFFFFF, 9}), true, false},
        {"a resolution behind the end", with(page(9, 9, 8, 1, 81), {282, 5, 1, 0x7FFFFFFF}), true,
         false},
        {"a directory within itself", with(page(9, 9, 8, 1, 81), {330, 4, 1, 8}), true, false},
        {"a million strips",
         {{256, 4, 1, 9},
          {257, 4, 1, 900000},
          {259, 3, 1, 1},
          {273, 4, 900000, 300},
          {278, 4, 1, 1},
          {279, 4, 900000, 300}},
         false,
         false}};
}

TEST(HostilePages, AreRefusedSoon) {
    for (const Claim& claim : Claims()) {
        SCOPED_TRACE(claim.what);
        const std::clock_t start = std::clock();
        const auto open = [&](const std::string&) {
            return std::make_unique<imaging::MemoryReader>(
                TiffOf(claim.entries, std::string(3000, 0)));
        };
        imaging::PageFile file(open(""), "hostile");
        const auto works = [](const auto& work) {
            try {
                work();
                return true;
            } catch (const platform::Error& error) {
                EXPECT_EQ(error.Number(), platform::errors::invalidData) << error.what();
                return false;
            }
        };
        EXPECT_EQ(works([&] { file.Decode(1); }), claim.shown);
        EXPECT_EQ(works([&] { file.DecodeScaled(1, 100, 100); }), claim.shown);
        // Or no page of its file could be taken out, not even this one.
        EXPECT_TRUE(works([&] { file.Fingerprint(1); }));
        imaging::PlanWriter writer(open);
        const auto write = [&](imaging::Turn turn) {
            imaging::PlannedPage page;
            page.turn = turn;
            writer.Write({page}, [] { return std::make_unique<NoWriter>(); });
        };
        EXPECT_EQ(works([&] { write(imaging::Turn::None); }), claim.copied);
        EXPECT_EQ(works([&] { write(imaging::Turn::Right); }), claim.copied);
        EXPECT_LT(std::clock() - start, 4 * CLOCKS_PER_SEC) << "a second each";
    }
}

} // namespace
} // namespace kavidex::tests
