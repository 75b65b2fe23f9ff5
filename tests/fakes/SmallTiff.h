// A small TIFF file: black-and-white pages without compression, each with a byte of its own.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kavidex::tests {

// A little-endian number behind the file so far.
inline void PutNumber(std::string& file, std::uint32_t value, int bytes) {
    for (; bytes > 0; --bytes, value >>= 8) file += static_cast<char>(value & 0xFF);
}

// One directory at the begin, whatever it claims (tag, type, count, value), and `rest` behind it.
inline std::string TiffOf(const std::vector<std::array<std::uint32_t, 4>>& entries,
                          const std::string& rest) {
    std::string file("II*\0\x08\0\0\0", 8);
    PutNumber(file, static_cast<std::uint32_t>(entries.size()), 2);
    for (const auto& [tag, type, count, value] : entries) {
        PutNumber(file, tag, 2), PutNumber(file, type, 2);
        PutNumber(file, count, 4), PutNumber(file, value, 4);
    }
    PutNumber(file, 0, 4);
    return file + rest;
}

inline std::string SmallTiff(const std::string& pages, std::uint32_t width = 8,
                             std::uint32_t height = 2) {
    const std::uint32_t size = width / 8 * height;
    std::string file("II*\0", 4);
    const auto number = [&](std::uint32_t value, int bytes) { PutNumber(file, value, bytes); };
    struct Entry {
        std::uint16_t tag, type;
        std::uint32_t value;
    };
    number(static_cast<std::uint32_t>(8 + size * pages.size()), 4); // the first directory
    for (const char page : pages) file.append(size, page);
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const Entry entries[] = {
            {256, 3, width}, {257, 3, height}, {258, 3, 1},
            {259, 3, 1},     {262, 3, 1},      {273, 4, static_cast<std::uint32_t>(8 + size * i)},
            {277, 3, 1},     {278, 3, height}, {279, 4, size}};
        number(std::size(entries), 2);
        for (const auto& [tag, type, value] : entries) {
            number(tag, 2);
            number(type, 2);
            number(1, 4);
            number(value, 4);
        }
        number(i + 1 < pages.size() ? static_cast<std::uint32_t>(file.size() + 4) : 0, 4);
    }
    return file;
}

} // namespace kavidex::tests
