// Numbers as a TIFF file holds them, in either byte order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kavidex::imaging::tiff {

enum class Order : std::uint8_t { little, big };

// Of a file: its byte order, and whether it is a BigTIFF (64-bit offsets).
struct Layout {
    Order order = Order::little;
    bool big = false;

    std::size_t HeaderSize() const { return big ? 16 : 8; }
    std::size_t OffsetSize() const { return big ? 8 : 4; }
    std::size_t CountSize() const { return big ? 8 : 2; } // of a directory's entries
    std::size_t EntrySize() const { return big ? 20 : 12; }
    std::size_t DirectorySize(std::size_t entries) const {
        return CountSize() + entries * EntrySize() + OffsetSize();
    }
};

inline std::uint64_t GetNumber(const void* at, std::size_t size, Order order) {
    const auto* bytes = static_cast<const std::uint8_t*>(at);
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number = number << 8 | bytes[order == Order::big ? i : size - 1 - i];
    return number;
}

inline void PutNumber(void* at, std::uint64_t number, std::size_t size, Order order) {
    auto* bytes = static_cast<std::uint8_t*>(at);
    for (std::size_t i = 0; i < size; ++i, number >>= 8)
        bytes[order == Order::big ? size - 1 - i : i] = static_cast<std::uint8_t>(number);
}

inline void AppendNumber(std::string& text, std::uint64_t number, std::size_t size, Order order) {
    text.resize(text.size() + size);
    PutNumber(text.data() + text.size() - size, number, size, order);
}

// Turns each run of `unit` bytes round; fewer than 2 stay.
inline void SwapUnits(char* bytes, std::size_t size, std::size_t unit) {
    if (unit < 2) return;
    for (std::size_t at = 0; at + unit <= size; at += unit)
        for (std::size_t i = 0; i < unit / 2; ++i) {
            const char kept = bytes[at + i];
            bytes[at + i] = bytes[at + unit - 1 - i];
            bytes[at + unit - 1 - i] = kept;
        }
}

} // namespace kavidex::imaging::tiff
