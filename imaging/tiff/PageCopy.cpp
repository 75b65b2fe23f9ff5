#include "imaging/tiff/PageCopy.h"

#include <algorithm>
#include <optional>

namespace kavidex::imaging::tiff {

namespace {

constexpr int deepestDirectory = 3;
constexpr int mostDirectories = 64;

// Tags whose values are places of data, and the tag that tells how much lies there.
struct Pointer {
    std::uint16_t places, sizes;
};
constexpr Pointer pointers[] = {{tags::stripOffsets, tags::stripByteCounts},
                                {tags::tileOffsets, tags::tileByteCounts},
                                {tags::jpegInterchange, tags::jpegInterchangeLength},
                                {tags::jpegQTables, 0},
                                {tags::jpegDcTables, 0},
                                {tags::jpegAcTables, 0}};

// What describes the pixel data: of a page encoded anew they come from its new directory.
constexpr std::uint16_t dataTags[] = {
    tags::imageWidth,   tags::imageLength,  tags::compression,     tags::fillOrder,
    tags::stripOffsets, tags::rowsPerStrip, tags::stripByteCounts, tags::planarConfig,
    tags::t4Options,    tags::t6Options,    tags::predictor,       tags::tileWidth,
    tags::tileLength,   tags::tileOffsets,  tags::tileByteCounts};

bool IsDataTag(std::uint16_t tag) {
    return std::find(std::begin(dataTags), std::end(dataTags), tag) != std::end(dataTags);
}

bool IsDirectoryPointer(const Entry& entry) {
    return entry.type == types::ifd || entry.type == types::ifd64 || entry.tag == tags::subIfds ||
           entry.tag == tags::exifIfd || entry.tag == tags::gpsIfd || entry.tag == tags::interopIfd;
}

const Pointer* PointerOf(std::uint16_t tag) {
    for (const Pointer& pointer : pointers)
        if (pointer.places == tag) return &pointer;
    return nullptr;
}

// Part of a source that a pointer leads to.
struct Part {
    std::uint64_t from = 0, size = 0, at = 0;
};

// One entry of the directory in the making.
struct Item {
    std::uint16_t tag = 0, type = 0;
    std::uint64_t count = 0;
    std::string value; // in the target's order; empty where it is copied from `entry`
    const Entry* entry = nullptr;
    Source* source = nullptr;
    std::vector<Part> parts;      // of a pointer to data
    std::vector<Directory> below; // of a pointer to directories
    std::size_t valueChunk = 0;
    std::uint64_t valueAt = 0;

    std::uint64_t Size() const { return count * SizeOf(type).size; }
};

class Builder {
public:
    Builder(const Layout& target, std::uint64_t at) : lclTarget(target) { lclCopy.end = at; }

    std::uint64_t AddDirectory(std::vector<Item> items, std::uint32_t sampleUnit, int depth,
                               std::optional<bool> isLast);
    std::vector<Item> ItemsOf(Source& source, const Directory& directory,
                              const Overrides& overrides, bool withData, bool withOther, int depth);
    PageCopy Take() { return std::move(lclCopy); }

private:
    Item MakeItem(Source& source, const Directory& directory, const Entry& entry, int depth);
    void AddParts(Source& source, const Directory& directory, const Entry& entry,
                  const Pointer& pointer, Item& item);
    void AddSizes(const Directory& directory, const Pointer& pointer,
                  std::vector<Item>& items) const;
    void PlaceValue(Item& item);
    void PlaceParts(std::vector<Item>& items, Item& item, std::uint32_t sampleUnit);
    std::string Encode(const std::vector<Item>& items, std::uint64_t next) const;
    std::uint64_t Reserve(std::uint64_t size, Chunk chunk);
    std::size_t Make(std::uint64_t size, std::string bytes);
    std::uint64_t UnknownSize(Source& source, const Directory& directory, std::uint64_t from) const;

    Layout lclTarget;
    PageCopy lclCopy;
    int lclDirectories = 0;
};

// Every place is even, as the format asks for directories and values.
std::uint64_t Builder::Reserve(std::uint64_t size, Chunk chunk) {
    chunk.at = lclCopy.end;
    chunk.size = size;
    lclCopy.chunks.push_back(chunk);
    lclCopy.end += size + size % 2;
    return chunk.at;
}

std::size_t Builder::Make(std::uint64_t size, std::string bytes) {
    Chunk chunk;
    chunk.made = lclCopy.made.size();
    lclCopy.made.push_back(std::move(bytes));
    Reserve(size, chunk);
    return chunk.made;
}

// Where no size is told: up to what the page is known to hold next, else to the file's end.
std::uint64_t Builder::UnknownSize(Source& source, const Directory& directory,
                                   std::uint64_t from) const {
    std::uint64_t end = source.Size();
    if (directory.offset > from) end = std::min(end, directory.offset);
    if (directory.next > from) end = std::min(end, directory.next);
    return end > from ? end - from : 0;
}

void Builder::AddParts(Source& source, const Directory& directory, const Entry& entry,
                       const Pointer& pointer, Item& item) {
    if (entry.count > mostParts) source.Damaged("a page has too many parts");
    const std::vector<std::uint64_t> places = source.Numbers(entry);
    std::vector<std::uint64_t> sizes;
    if (const Entry* told = pointer.sizes ? directory.Find(pointer.sizes) : nullptr) {
        if (told->count > mostParts) source.Damaged("a page has too many parts");
        sizes = source.Numbers(*told);
        if (sizes.size() < places.size()) source.Damaged("the size of a part of a page is missing");
    } else if (pointer.places == tags::jpegQTables) {
        sizes.assign(places.size(), 64);
    } else if (pointer.places == tags::jpegDcTables || pointer.places == tags::jpegAcTables) {
        // How many codes of each length, then the codes.
        for (const std::uint64_t place : places) {
            std::uint8_t lengths[16] = {};
            source.Read(place, lengths, sizeof lengths);
            std::uint64_t size = sizeof lengths;
            for (const std::uint8_t length : lengths) size += length;
            sizes.push_back(size);
        }
    }
    for (std::size_t i = 0; i < places.size(); ++i) {
        std::uint64_t size = sizes.empty() ? 0 : sizes[i];
        if (size == 0 && (sizes.empty() || pointer.places == tags::jpegInterchange)) {
            const std::uint64_t next = i + 1 < places.size() ? places[i + 1] : 0;
            size = UnknownSize(source, directory, places[i]);
            if (next > places[i]) size = std::min(size, next - places[i]);
        }
        if (size != 0) source.CheckInside(places[i], size);
        item.parts.push_back({size != 0 ? places[i] : 0, size, 0});
    }
}

Item Builder::MakeItem(Source& source, const Directory& directory, const Entry& entry, int depth) {
    Item item;
    item.tag = entry.tag;
    item.type = entry.type;
    item.count = entry.count;
    item.source = &source;
    if (const Pointer* pointer = PointerOf(entry.tag)) {
        AddParts(source, directory, entry, *pointer, item);
        item.type = lclTarget.big ? types::long64 : types::long32;
        return item;
    }
    // A pointer in other clothes than a number points nowhere: it is kept as it is.
    if (IsDirectoryPointer(entry) && SizeOf(entry.type).unit >= 4 &&
        SizeOf(entry.type).size == SizeOf(entry.type).unit) {
        if (depth == deepestDirectory || entry.count > mostDirectories)
            source.Damaged("its directories are too deep");
        for (const std::uint64_t place : source.Numbers(entry)) {
            if (++lclDirectories > mostDirectories) source.Damaged("its directories are too many");
            item.below.push_back(source.ReadDirectory(place));
        }
        const bool isIfd = entry.type == types::ifd || entry.type == types::ifd64;
        item.type = lclTarget.big ? (isIfd ? types::ifd64 : types::long64)
                                  : (isIfd ? types::ifd : types::long32);
        return item;
    }
    const std::size_t size =
        static_cast<std::size_t>(std::min<std::uint64_t>(entry.Size(), lclTarget.OffsetSize() + 1));
    if (SizeOf(entry.type).size == 0) {
        item.value.assign(entry.field.begin(), entry.field.end()); // what it means, nobody knows
    } else if (size <= lclTarget.OffsetSize()) {
        item.value = source.Value(entry);
        if (source.Form().order != lclTarget.order)
            SwapUnits(item.value.data(), item.value.size(), SizeOf(entry.type).unit);
    } else {
        source.CheckInside(source.IsInline(entry) ? 0 : source.ValueOffset(entry), entry.Size());
        item.entry = &entry;
    }
    return item;
}

std::vector<Item> Builder::ItemsOf(Source& source, const Directory& directory,
                                   const Overrides& overrides, bool withData, bool withOther,
                                   int depth) {
    std::vector<Item> items;
    for (const Entry& entry : directory.entries) {
        // Free room is told for the old file only.
        if (entry.tag == tags::freeOffsets || entry.tag == tags::freeByteCounts) continue;
        if (overrides.count(entry.tag) || !(IsDataTag(entry.tag) ? withData : withOther)) continue;
        // Told anew below: it may be missing or 0.
        if (entry.tag == tags::jpegInterchangeLength && directory.Find(tags::jpegInterchange))
            continue;
        items.push_back(MakeItem(source, directory, entry, depth));
    }
    for (const Pointer& pointer : pointers) AddSizes(directory, pointer, items);
    return items;
}

// Sizes that the page left for its reader to guess would be guessed differently in another file.
void Builder::AddSizes(const Directory& directory, const Pointer& pointer,
                       std::vector<Item>& items) const {
    const bool isStream = pointer.places == tags::jpegInterchange;
    if (pointer.sizes == 0 || (directory.Find(pointer.sizes) && !isStream)) return;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items[i].tag != pointer.places || items[i].parts.empty()) continue;
        Item sizes;
        sizes.tag = pointer.sizes;
        sizes.type = lclTarget.big ? types::long64 : types::long32;
        sizes.count = items[i].parts.size();
        for (const Part& part : items[i].parts)
            AppendNumber(sizes.value, part.size, lclTarget.OffsetSize(), lclTarget.order);
        items.push_back(std::move(sizes));
        return;
    }
}

void Builder::PlaceValue(Item& item) {
    const std::uint64_t size = item.Size();
    if (SizeOf(item.type).size == 0 || size <= lclTarget.OffsetSize()) return;
    item.valueAt = lclCopy.end;
    if (!item.entry) {
        item.valueChunk = Make(size, std::move(item.value));
        return;
    }
    Chunk chunk;
    chunk.source = item.source;
    chunk.from = item.source->ValueOffset(*item.entry);
    if (item.source->Form().order != lclTarget.order) chunk.swapUnit = SizeOf(item.type).unit;
    Reserve(size, chunk);
}

// Parts of an old JPEG page may lie inside its whole stream: they stay inside it.
void Builder::PlaceParts(std::vector<Item>& items, Item& item, std::uint32_t sampleUnit) {
    const Item* stream = nullptr;
    for (const Item& other : items)
        if (other.tag == tags::jpegInterchange && !other.parts.empty()) stream = &other;
    std::string value;
    for (Part& part : item.parts) {
        const Part* whole = stream && stream != &item ? &stream->parts[0] : nullptr;
        if (whole && part.from >= whole->from && part.from - whole->from < whole->size &&
            part.size <= whole->size - (part.from - whole->from)) {
            part.at = whole->at + (part.from - whole->from);
        } else if (part.size != 0) {
            Chunk chunk;
            chunk.source = item.source;
            chunk.from = part.from;
            chunk.swapUnit = sampleUnit;
            part.at = Reserve(part.size, chunk);
        }
        AppendNumber(value, part.at, lclTarget.OffsetSize(), lclTarget.order);
    }
    item.value = std::move(value);
}

std::string Builder::Encode(const std::vector<Item>& items, std::uint64_t next) const {
    std::string bytes;
    const Order order = lclTarget.order;
    AppendNumber(bytes, items.size(), lclTarget.CountSize(), order);
    for (const Item& item : items) {
        AppendNumber(bytes, item.tag, 2, order);
        AppendNumber(bytes, item.type, 2, order);
        AppendNumber(bytes, item.count, lclTarget.OffsetSize(), order);
        if (item.valueAt != 0) {
            AppendNumber(bytes, item.valueAt, lclTarget.OffsetSize(), order);
        } else {
            std::string field = item.value;
            field.resize(lclTarget.OffsetSize(), '\0');
            bytes += field;
        }
    }
    AppendNumber(bytes, next, lclTarget.OffsetSize(), order);
    return bytes;
}

std::uint64_t Builder::AddDirectory(std::vector<Item> items, std::uint32_t sampleUnit, int depth,
                                    std::optional<bool> isLast) {
    std::stable_sort(items.begin(), items.end(),
                     [](const Item& one, const Item& other) { return one.tag < other.tag; });
    const std::uint64_t at = lclCopy.end;
    const std::size_t directory = Make(lclTarget.DirectorySize(items.size()), {});
    for (Item& item : items) PlaceValue(item);
    const auto place = [&](bool streams) {
        for (Item& item : items)
            if (!item.parts.empty() && (item.tag == tags::jpegInterchange) == streams)
                PlaceParts(items, item, sampleUnit);
    };
    place(true);
    place(false);
    for (Item& item : items)
        for (const Directory& below : item.below) {
            const std::uint64_t placed = AddDirectory(
                ItemsOf(*item.source, below, {}, true, true, depth + 1), 1, depth + 1, {});
            AppendNumber(item.value, placed, lclTarget.OffsetSize(), lclTarget.order);
        }
    for (Item& item : items)
        if (item.valueAt != 0 && !item.entry && !item.value.empty())
            lclCopy.made[item.valueChunk] = std::move(item.value);
    lclCopy.made[directory] = Encode(items, isLast.has_value() && !*isLast ? lclCopy.end : 0);
    return at;
}

std::uint64_t BitsPerSample(Source& source, const Directory& page) {
    return source.Number(page, tags::bitsPerSample, 1);
}

// Of the samples that a file keeps in its byte order.
std::uint32_t SampleUnit(Source& source, const Directory& page) {
    const std::uint64_t bits = BitsPerSample(source, page);
    const bool isJpeg = source.Number(page, tags::compression, 1) == compressions::jpeg ||
                        source.Number(page, tags::compression, 1) == compressions::oldJpeg;
    return !isJpeg && (bits == 16 || bits == 24 || bits == 32 || bits == 64)
               ? static_cast<std::uint32_t>(bits / 8)
               : 1;
}

} // namespace

NewValue BytesValue(std::string bytes, std::uint16_t type) {
    const std::uint64_t count = bytes.size();
    return {type, count, std::move(bytes)};
}

NewValue ShortsValue(const std::vector<std::uint16_t>& numbers, Order order) {
    NewValue value{types::short16, numbers.size(), {}};
    for (const std::uint16_t number : numbers) AppendNumber(value.bytes, number, 2, order);
    return value;
}

bool NeedsReencoding(Source& source, const Directory& page, Order order) {
    return source.Form().order != order && SampleUnit(source, page) > 1 &&
           source.Number(page, tags::compression, 1) != compressions::none;
}

PageCopy LayOut(const PageToCopy& page, const Layout& target, std::uint64_t at, bool isLast) {
    Builder builder(target, at);
    std::vector<Item> items =
        builder.ItemsOf(*page.source, page.page, page.overrides, page.data == nullptr, true, 0);
    Source& data = page.data ? *page.data : *page.source;
    const Directory& dataPage = page.data ? page.dataPage : page.page;
    if (page.data)
        for (Item& item : builder.ItemsOf(data, dataPage, page.overrides, true, false, 0))
            items.push_back(std::move(item));
    for (const auto& [tag, value] : page.overrides) {
        if (value.count == 0) continue;
        Item item;
        item.tag = tag;
        item.type = value.type;
        item.count = value.count;
        item.value = value.bytes;
        items.push_back(std::move(item));
    }
    const std::uint32_t unit = data.Form().order != target.order ? SampleUnit(data, dataPage) : 1;
    builder.AddDirectory(std::move(items), unit, 0, isLast);
    return builder.Take();
}

} // namespace kavidex::imaging::tiff
