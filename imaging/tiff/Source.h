// A TIFF file that is read: its directories and its bytes, without decoding. What it says about
// itself is believed only as far as the file's size allows.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "imaging/tiff/Bytes.h"
#include "imaging/tiff/Tags.h"

namespace kavidex::platform {
class FileReader;
class Files;
} // namespace kavidex::platform

namespace kavidex::imaging::tiff {

// Larger values are copied, and not read into memory.
constexpr std::uint64_t mostValueBytes = 64 << 20;

struct Entry {
    std::uint16_t tag = 0, type = 0;
    std::uint64_t count = 0;
    std::array<std::uint8_t, 8> field{}; // the value, or where it lies, as the file has it

    std::uint64_t Size() const; // of the value; 0 for a type that nobody has defined
};

struct Directory {
    std::uint64_t offset = 0, next = 0; // 0: none
    std::vector<Entry> entries;         // as the file has them

    const Entry* Find(std::uint16_t tag) const; // null when absent
};

// Every failing call throws platform::Error: errors::invalidData for a file that is damaged or no
// TIFF file.
class Source {
public:
    Source(platform::Files& files, std::string_view path);
    Source(std::unique_ptr<platform::FileReader> reader, std::string_view name);
    ~Source();

    const std::string& Name() const { return lclName; }
    const Layout& Form() const { return lclForm; }
    std::uint64_t Size() const { return lclSize; }

    int PageCount();
    // Pages from 1. Only the directories before the page are passed, and those once.
    std::uint64_t PageOffset(int page);
    Directory Page(int page);
    Directory ReadDirectory(std::uint64_t offset);

    // Where the entry's value lies; the size is told to be inside the file.
    std::uint64_t ValueOffset(const Entry& entry);
    bool IsInline(const Entry& entry) const { return entry.Size() <= lclForm.OffsetSize(); }
    bool Holds(const Entry& entry) const;  // false: it is said to lie past the file's end
    std::string Value(const Entry& entry); // as the file has it
    std::vector<std::uint64_t> Numbers(const Entry& entry);
    // The first number of the entry; `otherwise` where it is absent.
    std::uint64_t Number(const Directory& directory, std::uint16_t tag, std::uint64_t otherwise);
    double Rational(const Directory& directory, std::uint16_t tag); // 0 where absent

    void Read(std::uint64_t offset, void* room, std::size_t size); // all of it
    std::size_t ReadSome(std::uint64_t offset, void* room, std::size_t size);
    // Counts data that is copied from here, by pages that come in order. Pages that share theirs
    // get a copy each: a file in which thousands claim the same bytes would fill the disk.
    void Take(std::uint64_t size);
    void CheckInside(std::uint64_t offset, std::uint64_t size) const;

    [[noreturn]] void Damaged(const std::string& what) const;

private:
    void ReadHeader();
    bool IsInside(std::uint64_t offset, std::uint64_t size) const;
    std::uint64_t PlaceOf(const Entry& entry) const;
    bool WalkTo(std::size_t page); // false when the file ends before

    std::string lclName;
    std::unique_ptr<platform::FileReader> lclReader;
    std::uint64_t lclSize = 0;
    Layout lclForm;
    std::vector<std::uint64_t> lclPages; // offsets known so far
    std::unordered_set<std::uint64_t> lclSeen;
    std::uint64_t lclNext = 0; // of the page after those
    int lclLastPage = 0;
    std::uint64_t lclTaken = 0; // since the pages began anew
    std::vector<char> lclWindow;
    std::uint64_t lclWindowAt = 0;
};

} // namespace kavidex::imaging::tiff
