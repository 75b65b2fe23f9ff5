#include "imaging/PageFile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include "imaging/RowScaler.h"
#include "imaging/tiff/Decoder.h"
#include "imaging/tiff/Resolution.h"
#include "platform/Error.h"
#include "platform/FileStreams.h"

namespace kavidex::imaging {

namespace {

using tiff::Directory;
using tiff::OrientationOf;
using tiff::Samples;
using tiff::Source;

PageFacts FactsOf(Source& source, const Directory& page, const Samples& samples) {
    PageFacts facts;
    facts.width = samples.width;
    facts.height = samples.height;
    const tiff::Resolution dpi = tiff::ResolutionOf(source, page);
    facts.xDpi = dpi.x;
    facts.yDpi = dpi.y;
    facts.orientation = OrientationOf(source, page);
    facts.format = samples.Shown();
    facts.compression = samples.compression;
    facts.bitsPerSample = samples.bits;
    facts.samplesPerPixel = samples.perPixel;
    facts.hasMarks = page.Find(tiff::tags::annotations) != nullptr;
    if (SwapsSides(facts.orientation)) {
        std::swap(facts.width, facts.height);
        std::swap(facts.xDpi, facts.yDpi);
    }
    return facts;
}

// What lies past the file's end is known by what the directory says of it, and what is too large by
// its begin.
template <class Add>
void AddValue(Source& source, const tiff::Entry& entry, Add add) {
    if (!source.Holds(entry)) {
        add({reinterpret_cast<const char*>(entry.field.data()), source.Form().OffsetSize()});
    } else if (source.IsInline(entry) || entry.Size() <= tiff::mostValueBytes) {
        add(source.Value(entry));
    } else {
        std::array<char, 4096> begin{};
        add({begin.data(), source.ReadSome(source.ValueOffset(entry), begin.data(), begin.size())});
    }
}

// Some of a page's data from all over it: pages of one size that are not compressed differ in
// nothing else. What a damaged page claims beyond the file's end is passed over.
template <class Add>
void SampleData(Source& source, const Directory& page, Add add) {
    namespace tags = tiff::tags;
    const auto find = [&page](std::uint16_t strips, std::uint16_t tiles) {
        const auto* entry = page.Find(strips);
        return entry ? entry : page.Find(tiles);
    };
    const auto* places = find(tags::stripOffsets, tags::tileOffsets);
    const auto* lengths = find(tags::stripByteCounts, tags::tileByteCounts);
    if (!places || !lengths) return;
    const auto from = source.Numbers(*places);
    auto sizes = source.Numbers(*lengths);
    sizes.resize(std::min(from.size(), sizes.size()));
    std::uint64_t total = 0;
    for (auto& size : sizes) total += size = std::min(size, source.Size());
    const bool plain = source.Number(page, tags::compression, 1) == tiff::compressions::none;
    const std::size_t spots = plain ? 16 : 4, length = plain ? 4096 : 512;
    std::array<char, 4096> room{};
    std::uint64_t begin = 0; // of a part, within all of the data
    std::size_t spot = 0;
    for (std::size_t i = 0; i < sizes.size(); begin += sizes[i++])
        for (; spot < spots && total / spots * spot < begin + sizes[i]; ++spot) {
            const auto at = std::max(total / spots * spot, begin) - begin;
            if (from[i] >= source.Size() || at >= source.Size() - from[i]) continue;
            const auto wanted = std::min<std::uint64_t>(length, sizes[i] - at);
            add({room.data(),
                 source.ReadSome(from[i] + at, room.data(), static_cast<std::size_t>(wanted))});
        }
}

void TellDamage(Source& source, const std::string& complaint, std::string* damage) {
    if (damage) *damage = complaint;
    if (!complaint.empty() && !damage) source.Damaged(complaint);
}

} // namespace

PageFile::PageFile(platform::Files& files, std::string_view path)
    : lclSource(std::make_unique<Source>(files, path)) {}

PageFile::PageFile(std::unique_ptr<platform::FileReader> reader, std::string_view name)
    : lclSource(std::make_unique<Source>(std::move(reader), name)) {}

PageFile::~PageFile() = default;

int PageFile::Count() { return lclSource->PageCount(); }

PageFacts PageFile::Facts(int page) {
    const Directory directory = lclSource->Page(page);
    return FactsOf(*lclSource, directory, tiff::ReadSamples(*lclSource, directory));
}

PageBitmap PageFile::Decode(int page, std::string* damage) {
    const Directory directory = lclSource->Page(page);
    const Samples samples = tiff::ReadSamples(*lclSource, directory);
    const PageFacts facts = FactsOf(*lclSource, directory, samples);
    const std::uint64_t row = PageBitmap::BytesPerRow(samples.Shown(), samples.width);
    // Turning it takes the same room once more.
    const std::uint64_t size = row * samples.height * (facts.orientation == 1 ? 1 : 2);
    if (size > tiff::mostMemory) lclSource->Damaged("a page is too large");
    PageBitmap bitmap =
        MakeBitmap(samples.Shown(), samples.width, samples.height, facts.xDpi, facts.yDpi);
    if (SwapsSides(facts.orientation)) std::swap(bitmap.xDpi, bitmap.yDpi);
    std::uint8_t* next = bitmap.bytes.data();
    const std::string complaint =
        tiff::DecodeRows(*lclSource, directory, samples, static_cast<std::size_t>(size),
                         [&](const std::uint8_t* bytes) {
                             std::memcpy(next, bytes, static_cast<std::size_t>(row));
                             next += row;
                         });
    TellDamage(*lclSource, complaint, damage);
    return Oriented(std::move(bitmap), facts.orientation);
}

PageBitmap PageFile::DecodeScaled(int page, std::uint32_t width, std::uint32_t height,
                                  std::string* damage) {
    const Directory directory = lclSource->Page(page);
    const Samples samples = tiff::ReadSamples(*lclSource, directory);
    const PageFacts facts = FactsOf(*lclSource, directory, samples);
    constexpr std::uint32_t largest = 32768;
    if (width == 0 || height == 0 || width > largest || height > largest ||
        std::uint64_t{width} * height * 6 > tiff::mostMemory)
        throw platform::Error(platform::errors::invalidArgument,
                              "A page cannot be shown at that size");
    const bool swaps = SwapsSides(facts.orientation);
    RowScaler scaler(samples.Shown(), 0, samples.width, samples.height, swaps ? height : width,
                     swaps ? width : height);
    const std::string complaint =
        tiff::DecodeRows(*lclSource, directory, samples, std::size_t{width} * height * 6,
                         [&](const std::uint8_t* row) { scaler.Row(row); });
    TellDamage(*lclSource, complaint, damage);
    PageBitmap result = Oriented(scaler.Take(), facts.orientation);
    result.xDpi = facts.xDpi * width / facts.width;
    result.yDpi = facts.yDpi * height / facts.height;
    return result;
}

std::optional<std::string> PageFile::Marks(int page) {
    const Directory directory = lclSource->Page(page);
    const tiff::Entry* entry = directory.Find(tiff::tags::annotations);
    if (!entry) return {};
    return lclSource->Value(*entry);
}

std::uint64_t PageFile::Fingerprint(int page) {
    // Where something lies, and what is written anew with every copy.
    static constexpr std::uint16_t places[] = {
        tiff::tags::stripOffsets,    tiff::tags::tileOffsets, tiff::tags::freeOffsets,
        tiff::tags::freeByteCounts,  tiff::tags::pageNumber,  tiff::tags::subIfds,
        tiff::tags::exifIfd,         tiff::tags::gpsIfd,      tiff::tags::interopIfd,
        tiff::tags::jpegInterchange, tiff::tags::jpegQTables, tiff::tags::jpegDcTables,
        tiff::tags::jpegAcTables,
    };
    std::uint64_t hash = 14695981039346656037U;
    const auto add = [&hash](std::string_view bytes) {
        for (const char c : bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    };
    const Directory directory = lclSource->Page(page);
    for (const auto& entry : directory.entries) {
        if (std::find(std::begin(places), std::end(places), entry.tag) != std::end(places))
            continue;
        add(std::to_string(entry.tag) + ":" + std::to_string(entry.count) + ":");
        AddValue(*lclSource, entry, add);
    }
    try {
        SampleData(*lclSource, directory, add);
    } catch (const platform::Error& error) {
        // Where its data lies cannot be told of a damaged page.
        if (error.Number() != platform::errors::invalidData) throw;
    }
    return hash;
}

PageSize FittingSize(const PageFacts& facts, std::uint32_t width, std::uint32_t height) {
    const double x = facts.xDpi > 0 ? facts.width / facts.xDpi : facts.width;
    const double y = facts.yDpi > 0 ? facts.height / facts.yDpi : facts.height;
    const double scale = std::min(width / std::max(x, 1e-9), height / std::max(y, 1e-9));
    const auto side = [](double length, std::uint32_t most) {
        return static_cast<std::uint32_t>(
            std::clamp(std::round(length), 1.0, static_cast<double>(std::max(most, 1u))));
    };
    return {side(x * scale, width), side(y * scale, height)};
}

PageBitmap Thumbnail(PageFile& file, int page, std::uint32_t width, std::uint32_t height) {
    const PageSize size = FittingSize(file.Facts(page), width, height);
    std::string damage; // what can be seen of a damaged page is shown
    return file.DecodeScaled(page, size.width, size.height, &damage);
}

} // namespace kavidex::imaging
