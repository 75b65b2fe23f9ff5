// The parts of the viewer's stage. What is shown decides which of them show; where none does, the
// stage asks to select a document. The image part holds the thumbnails too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace kavidex::controls {

enum class Part : std::uint8_t { Image, Grid, MailHeader, Note, Browser, Facts, Text, Elsewhere };
inline constexpr std::size_t partCount = 8;

class PartSet {
public:
    constexpr PartSet() = default;
    constexpr PartSet(std::initializer_list<Part> parts) {
        for (const Part part : parts) lclBits |= Bit(part);
    }

    constexpr bool Has(Part part) const { return (lclBits & Bit(part)) != 0; }
    constexpr bool Empty() const { return lclBits == 0; }
    constexpr bool operator==(const PartSet&) const = default;

private:
    static constexpr std::uint32_t Bit(Part part) { return 1U << static_cast<unsigned>(part); }

    std::uint32_t lclBits = 0;
};

} // namespace kavidex::controls
