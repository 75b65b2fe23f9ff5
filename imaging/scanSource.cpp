#include "imaging/scanSource.h"

#include <cstddef>
#include <cstdint>

#include "platform/text.h"

namespace kavidex::imaging {

namespace {

class Tiff {
public:
    explicit Tiff(std::string_view bytes) : lclBytes(bytes), lclBig(bytes.starts_with("MM")) {}

    bool IsTiff() const { return (lclBig || lclBytes.starts_with("II")) && Number(2, 2) == 42; }
    std::uint32_t Number(std::size_t at, std::size_t size) const {
        std::uint32_t number = 0;
        if (at > lclBytes.size() || lclBytes.size() - at < size) return 0;
        for (std::size_t i = 0; i < size; ++i) {
            const auto place = 8 * (lclBig ? size - 1 - i : i);
            number |= static_cast<std::uint32_t>(static_cast<unsigned char>(lclBytes[at + i]))
                      << place;
        }
        return number;
    }
    // The text of a tag of the first page.
    std::string Text(std::uint32_t tag) const {
        constexpr std::size_t entry = 12, longest = 255;
        const std::size_t directory = Number(4, 4), count = Number(directory, 2);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t at = directory + 2 + i * entry;
            if (at >= lclBytes.size()) break;
            if (Number(at, 2) != tag || Number(at + 2, 2) != 2) continue;
            const std::size_t length = Number(at + 4, 4);
            const std::size_t start = length > 4 ? Number(at + 8, 4) : at + 8;
            if (start >= lclBytes.size() || length > lclBytes.size() - start) return {};
            const auto text = lclBytes.substr(start, length < longest ? length : longest);
            return platform::Trim(text.substr(0, text.find('\0')));
        }
        return {};
    }

private:
    std::string_view lclBytes;
    bool lclBig;
};

} // namespace

std::string ScanSource(std::string_view bytes) {
    const Tiff tiff(bytes);
    if (!tiff.IsTiff()) return {};
    const std::string maker = tiff.Text(271), model = tiff.Text(272);
    // Models often begin with their maker's name.
    if (model.starts_with(maker) && !model.empty()) return model;
    const std::string scanner = platform::Trim(maker + " " + model);
    return scanner.empty() ? tiff.Text(305) : scanner;
}

} // namespace kavidex::imaging
