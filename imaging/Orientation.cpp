#include "imaging/Orientation.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace kavidex::imaging {

namespace {

constexpr std::array<std::uint8_t, 256> ReversedBytes() {
    std::array<std::uint8_t, 256> reversed{};
    for (unsigned byte = 0; byte < 256; ++byte)
        for (unsigned bit = 0; bit < 8; ++bit)
            if (byte & 1u << bit) reversed[byte] |= static_cast<std::uint8_t>(0x80u >> bit);
    return reversed;
}
constexpr auto reversedBytes = ReversedBytes();

// Elements that are no whole bytes, a bit at a time; what is copied to is all 0.
void CopyBits(const std::uint8_t* from, std::uint64_t fromBit, std::uint8_t* to,
              std::uint64_t toBit, unsigned bits) {
    for (; bits > 0; --bits, ++fromBit, ++toBit)
        if (from[fromBit / 8] & 0x80u >> fromBit % 8)
            to[toBit / 8] = static_cast<std::uint8_t>(to[toBit / 8] | 0x80u >> toBit % 8);
}

void MirrorRow(std::uint8_t* row, const Elements& elements, std::vector<std::uint8_t>& room) {
    const std::size_t size = elements.BytesPerRow();
    if (elements.bits % 8 == 0) {
        const std::size_t step = elements.bits / 8;
        for (std::size_t left = 0, right = size - step; left < right; left += step, right -= step)
            std::swap_ranges(row + left, row + left + step, row + right);
    } else if (elements.bits == 1) {
        std::reverse(row, row + size);
        const unsigned shift = static_cast<unsigned>((8 - elements.width % 8) % 8);
        for (std::size_t i = 0; i < size; ++i) row[i] = reversedBytes[row[i]];
        for (std::size_t i = 0; shift && i < size; ++i)
            row[i] = static_cast<std::uint8_t>(row[i] << shift |
                                               (i + 1 < size ? row[i + 1] >> (8 - shift) : 0));
    } else {
        room.assign(size, 0);
        for (std::uint32_t x = 0; x < elements.width; ++x)
            CopyBits(row, std::uint64_t{x} * elements.bits, room.data(),
                     std::uint64_t{elements.width - 1 - x} * elements.bits, elements.bits);
        std::copy(room.begin(), room.end(), row);
    }
}

// Eight rows of eight bits, columns made rows.
std::uint64_t TransposedBlock(std::uint64_t x) {
    std::uint64_t t = (x ^ (x >> 7)) & 0x00AA00AA00AA00AAull;
    x = x ^ t ^ (t << 7);
    t = (x ^ (x >> 14)) & 0x0000CCCC0000CCCCull;
    x = x ^ t ^ (t << 14);
    t = (x ^ (x >> 28)) & 0x00000000F0F0F0F0ull;
    return x ^ t ^ (t << 28);
}

void TransposeBits(const Elements& from, Elements& to) {
    const std::size_t fromRow = from.BytesPerRow(), toRow = to.BytesPerRow();
    for (std::uint32_t y = 0; y < from.height; y += 8) {
        const std::uint32_t rows = std::min<std::uint32_t>(8, from.height - y);
        for (std::size_t column = 0; column < fromRow; ++column) {
            std::uint64_t block = 0;
            for (std::uint32_t i = 0; i < rows; ++i)
                block |= std::uint64_t{from.bytes[(y + i) * fromRow + column]} << (56 - 8 * i);
            if (block == 0) continue;
            block = TransposedBlock(block);
            const auto columns = std::min<std::size_t>(8, from.width - column * 8);
            for (std::size_t i = 0; i < columns; ++i)
                to.bytes[(column * 8 + i) * toRow + y / 8] =
                    static_cast<std::uint8_t>(block >> (56 - 8 * i));
        }
    }
}

void TransposeBytes(const Elements& from, Elements& to) {
    constexpr std::uint32_t tile = 32; // both sides of it stay in the processor's cache
    const std::size_t step = from.bits / 8, fromRow = from.BytesPerRow(), toRow = to.BytesPerRow();
    for (std::uint32_t top = 0; top < from.height; top += tile)
        for (std::uint32_t left = 0; left < from.width; left += tile)
            for (std::uint32_t y = top; y < std::min(top + tile, from.height); ++y)
                for (std::uint32_t x = left; x < std::min(left + tile, from.width); ++x)
                    std::memcpy(&to.bytes[x * toRow + y * step],
                                &from.bytes[y * fromRow + x * step], step);
}

Elements Transposed(const Elements& from) {
    Elements to{from.height, from.width, from.bits, {}};
    to.bytes.assign(to.BytesPerRow() * to.height, 0);
    if (from.bits == 1) {
        TransposeBits(from, to);
    } else if (from.bits % 8 == 0) {
        TransposeBytes(from, to);
    } else {
        for (std::uint32_t y = 0; y < from.height; ++y)
            for (std::uint32_t x = 0; x < from.width; ++x)
                CopyBits(&from.bytes[y * from.BytesPerRow()], std::uint64_t{x} * from.bits,
                         &to.bytes[x * to.BytesPerRow()], std::uint64_t{y} * from.bits, from.bits);
    }
    return to;
}

// What is done to the elements, in this order.
struct Steps {
    bool transpose, mirror, flip;
};
constexpr Steps steps[] = {{},
                           {false, false, false},
                           {false, true, false},
                           {false, true, true},
                           {false, false, true},
                           {true, false, false},
                           {true, true, false},
                           {true, true, true},
                           {true, false, true}};

} // namespace

Orientation Turned(Orientation orientation, Turn turn) {
    constexpr std::uint8_t toTheRight[] = {0, 6, 7, 8, 5, 2, 3, 4, 1};
    for (int i = 0; i < static_cast<int>(turn); ++i) orientation = toTheRight[orientation];
    return orientation;
}

Elements Oriented(Elements elements, Orientation orientation) {
    const Steps todo = steps[orientation];
    if (todo.transpose) elements = Transposed(elements);
    const std::size_t row = elements.BytesPerRow();
    std::vector<std::uint8_t> room;
    for (std::uint32_t y = 0; todo.mirror && row && y < elements.height; ++y)
        MirrorRow(&elements.bytes[y * row], elements, room);
    for (std::uint32_t y = 0; todo.flip && y < elements.height / 2; ++y)
        std::swap_ranges(&elements.bytes[y * row], &elements.bytes[y * row] + row,
                         &elements.bytes[(elements.height - 1 - y) * row]);
    return elements;
}

PageBitmap Oriented(PageBitmap bitmap, Orientation orientation) {
    if (orientation == 1) return bitmap;
    Elements turned =
        Oriented(Elements{bitmap.width, bitmap.height, static_cast<unsigned>(bitmap.format),
                          std::move(bitmap.bytes)},
                 orientation);
    bitmap.width = turned.width;
    bitmap.height = turned.height;
    bitmap.bytes = std::move(turned.bytes);
    if (SwapsSides(orientation)) std::swap(bitmap.xDpi, bitmap.yDpi);
    return bitmap;
}

} // namespace kavidex::imaging
