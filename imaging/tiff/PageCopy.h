// Lays out pages of other files for a new one: their compressed data as it is, every tag with its
// value, unknown ones byte for byte, and only the places that they point to told anew.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "imaging/tiff/Source.h"

namespace kavidex::imaging::tiff {

// A value of a tag, in the byte order of the file that is written.
struct NewValue {
    std::uint16_t type = 0;
    std::uint64_t count = 0;
    std::string bytes;
};

// Values put in place of the page's own; one of count 0 takes the tag away.
using Overrides = std::map<std::uint16_t, NewValue>;

NewValue BytesValue(std::string bytes, std::uint16_t type = types::byte);
NewValue ShortsValue(const std::vector<std::uint16_t>& numbers, Order order);

// What stands at a place of the new file: bytes of a source, or bytes made here.
struct Chunk {
    std::uint64_t at = 0, size = 0;
    Source* source = nullptr; // null: `made`
    std::uint64_t from = 0;
    std::uint32_t swapUnit = 1; // bytes turned round on the way where it is more than 1
    std::size_t made = 0;       // index into PageCopy::made
};

// One page, ready to be written at the place it was laid out for.
struct PageCopy {
    std::vector<Chunk> chunks; // without gap or overlap, in the order of their places
    std::vector<std::string> made;
    std::uint64_t end = 0; // the place behind it, even
};

// Whether the page's samples would read differently in a file of this byte order, so that its data
// cannot be copied as it is.
bool NeedsReencoding(Source& source, const Directory& page, Order order);

// Where the pixel data comes from another source than the other tags (a page encoded anew), `data`
// and `dataPage` name it; its tags count before those of `page`.
struct PageToCopy {
    Source* source = nullptr;
    Directory page;
    Source* data = nullptr;
    Directory dataPage;
    Overrides overrides;
};

// `at`: the place of its directory, which is even. `isLast` or the next page follows at `end`.
PageCopy LayOut(const PageToCopy& page, const Layout& target, std::uint64_t at, bool isLast);

} // namespace kavidex::imaging::tiff
