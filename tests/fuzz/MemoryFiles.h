// Files in memory, and TIFF files built from a fuzzer's input so that it gets past the header.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "imaging/MemoryReader.h"

namespace kavidex::fuzz {

// What is written is at hand.
class MemoryWriter : public platform::FileWriter {
public:
    explicit MemoryWriter(std::string& bytes) : lclBytes(bytes) { lclBytes.clear(); }
    void Write(std::string_view bytes) override { lclBytes.append(bytes); }
    void PutInPlace(bool, bool) override {}

private:
    std::string& lclBytes;
};

// Takes numbers from the front of the input.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size)
        : lclLeft(reinterpret_cast<const char*>(data), size) {}
    std::uint32_t Number(std::size_t bytes) {
        std::uint32_t number = 0;
        for (; bytes > 0 && !lclLeft.empty(); --bytes, lclLeft.remove_prefix(1))
            number = number << 8 | static_cast<std::uint8_t>(lclLeft[0]);
        return number;
    }
    std::string_view Rest() const { return lclLeft; }
    bool Empty() const { return lclLeft.empty(); }

private:
    std::string_view lclLeft;
};

// The input itself as a file, or one whose directories have sensible tags with values from the
// input, and the input as compressed data.
inline std::string MakeTiff(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::uint32_t kind = input.Number(1);
    if (kind % 4 == 0) return std::string(input.Rest());
    const bool big = kind & 4, intel = kind & 8;
    const std::uint32_t pages = 1 + (kind >> 4) % 3;
    std::string file;
    const auto put = [&](std::uint64_t number, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file += static_cast<char>(number >> 8 * (intel ? i : bytes - 1 - i));
    };
    file = intel ? "II" : "MM";
    put(big ? 43 : 42, 2);
    if (big) put(8, 2), put(0, 2);
    put(big ? 16 : 8, big ? 8 : 4);
    constexpr std::uint16_t optional[] = {254, 266, 274, 282, 284, 288, 292, 293,   297,   317,
                                          320, 322, 323, 324, 325, 330, 338, 339,   347,   512,
                                          513, 514, 519, 520, 521, 530, 532, 32932, 34665, 65000};
    constexpr std::uint16_t compressions[] = {1, 2, 3, 4, 5, 6, 7, 8, 32773, 32946, 32771, 32809};
    for (std::uint32_t page = 0; page < pages; ++page) {
        const std::uint32_t entries = input.Number(1) % 8;
        const std::uint64_t directory = file.size();
        const std::uint64_t length = (big ? 16 : 6) + (9 + entries) * (big ? 20 : 12);
        put(9 + entries, big ? 8 : 2);
        const auto entry = [&](std::uint32_t tag, std::uint32_t type, std::uint64_t count,
                               std::uint64_t value) {
            put(tag, 2);
            put(type, 2);
            put(count, big ? 8 : 4);
            // A short stands in front of its field.
            const int width = type == 3 && count == 1 ? 2 : big ? 8 : 4;
            put(value, width);
            put(0, (big ? 8 : 4) - width);
        };
        const std::uint32_t shape = input.Number(1);
        const std::uint32_t height = 1 + input.Number(1);
        entry(256, 3, 1, 1 + input.Number(shape & 64 ? 2 : 1));
        entry(257, 3, 1, height);
        entry(258, 3, 1, shape & 1 ? 1 : shape & 2 ? 8 : input.Number(1) % 33);
        entry(259, 3, 1, compressions[input.Number(1) % std::size(compressions)]);
        entry(262, 3, 1, shape & 4 ? input.Number(1) % 11 : shape % 3);
        entry(273, 4, 1, directory + length + input.Number(1) % 16);
        entry(277, 3, 1, shape & 8 ? 1 : shape & 16 ? 3 : input.Number(1) % 6);
        entry(278, 3, 1, shape & 32 ? height : input.Number(1));
        entry(279, 4, 1, input.Number(2));
        for (std::uint32_t i = 0; i < entries; ++i) {
            const std::uint32_t tag = optional[input.Number(1) % std::size(optional)];
            const std::uint32_t type = input.Number(1) % 19;
            const std::uint32_t count = input.Number(1);
            entry(tag, type, count, input.Number(2));
        }
        put(page + 1 < pages ? file.size() + (big ? 8 : 4) : 0, big ? 8 : 4);
    }
    return file.append(input.Rest());
}

} // namespace kavidex::fuzz
