#include "imaging/tiff/Source.h"

#include <algorithm>
#include <cstring>

#include "platform/Error.h"
#include "platform/Files.h"

namespace kavidex::imaging::tiff {

namespace {

constexpr std::size_t windowSize = std::size_t{64} * 1024;
constexpr std::size_t mostPages = 65535;
constexpr std::uint64_t mostEntries = 4096;

} // namespace

const Entry* Directory::Find(std::uint16_t tag) const {
    for (const Entry& entry : entries)
        if (entry.tag == tag) return &entry;
    return nullptr;
}

std::uint64_t Entry::Size() const {
    constexpr std::uint64_t beyondAnyFile = std::uint64_t{1} << 56;
    return count >= beyondAnyFile ? beyondAnyFile : count * SizeOf(type).size;
}

Source::Source(platform::Files& files, std::string_view path) : Source(files.Reader(path), path) {}

Source::Source(std::unique_ptr<platform::FileReader> reader, std::string_view name)
    : lclName(name), lclReader(std::move(reader)), lclSize(lclReader->Size()) {
    ReadHeader();
}

Source::~Source() = default;

void Source::Damaged(const std::string& what) const {
    throw platform::Error(platform::errors::invalidData,
                          "Cannot read \"" + lclName + "\": " + what);
}

bool Source::IsInside(std::uint64_t offset, std::uint64_t size) const {
    return offset <= lclSize && size <= lclSize - offset;
}

void Source::CheckInside(std::uint64_t offset, std::uint64_t size) const {
    if (!IsInside(offset, size)) Damaged("it is damaged: it points past its end");
}

std::size_t Source::ReadSome(std::uint64_t offset, void* room, std::size_t size) {
    if (offset >= lclSize) return 0;
    size = static_cast<std::size_t>(std::min<std::uint64_t>(size, lclSize - offset));
    if (offset >= lclWindowAt && offset + size <= lclWindowAt + lclWindow.size()) {
        std::memcpy(room, lclWindow.data() + (offset - lclWindowAt), size);
        return size;
    }
    if (size >= windowSize) return lclReader->Read(offset, room, size);
    lclWindow.resize(windowSize);
    lclWindow.resize(lclReader->Read(offset, lclWindow.data(), windowSize));
    lclWindowAt = offset;
    size = std::min(size, lclWindow.size());
    std::memcpy(room, lclWindow.data(), size);
    return size;
}

void Source::Read(std::uint64_t offset, void* room, std::size_t size) {
    CheckInside(offset, size);
    if (ReadSome(offset, room, size) != size) Damaged("it became shorter while it was read");
}

void Source::ReadHeader() {
    std::uint8_t header[16] = {};
    if (lclSize == 0) Damaged("it is empty");
    const std::size_t got = ReadSome(0, header, sizeof header);
    const bool little = header[0] == 'I' && header[1] == 'I';
    if (got < 8 || (!little && (header[0] != 'M' || header[1] != 'M')))
        Damaged("it is no TIFF file");
    lclForm.order = little ? Order::little : Order::big;
    const std::uint64_t version = GetNumber(header + 2, 2, lclForm.order);
    lclForm.big = version == 43;
    if (version != 42 && !lclForm.big) Damaged("it is no TIFF file");
    if (lclForm.big && (got < 16 || GetNumber(header + 4, 2, lclForm.order) != 8))
        Damaged("its header is damaged");
    lclNext = lclForm.big ? GetNumber(header + 8, 8, lclForm.order)
                          : GetNumber(header + 4, 4, lclForm.order);
    if (lclNext == 0) Damaged("it has no pages");
}

Directory Source::ReadDirectory(std::uint64_t offset) {
    Directory directory;
    directory.offset = offset;
    std::uint8_t number[8] = {};
    Read(offset, number, lclForm.CountSize());
    const std::uint64_t count = GetNumber(number, lclForm.CountSize(), lclForm.order);
    if (count == 0 || count > mostEntries) Damaged("the directory of a page is damaged");
    std::vector<std::uint8_t> bytes(lclForm.DirectorySize(count));
    // A file cut short behind the last entry still has the page.
    const std::size_t needed = bytes.size() - lclForm.OffsetSize();
    CheckInside(offset, needed);
    if (ReadSome(offset, bytes.data(), bytes.size()) < needed)
        Damaged("it became shorter while it was read");
    const std::uint8_t* at = bytes.data() + lclForm.CountSize();
    for (std::uint64_t i = 0; i < count; ++i, at += lclForm.EntrySize()) {
        Entry entry;
        entry.tag = static_cast<std::uint16_t>(GetNumber(at, 2, lclForm.order));
        entry.type = static_cast<std::uint16_t>(GetNumber(at + 2, 2, lclForm.order));
        entry.count = GetNumber(at + 4, lclForm.OffsetSize(), lclForm.order);
        std::memcpy(entry.field.data(), at + 4 + lclForm.OffsetSize(), lclForm.OffsetSize());
        directory.entries.push_back(entry);
    }
    directory.next = GetNumber(at, lclForm.OffsetSize(), lclForm.order);
    return directory;
}

bool Source::WalkTo(std::size_t page) {
    while (lclPages.size() < page && lclNext != 0) {
        if (!lclSeen.insert(lclNext).second) Damaged("its pages run in a circle");
        if (lclPages.size() == mostPages) Damaged("it has too many pages");
        std::uint8_t number[8] = {};
        Read(lclNext, number, lclForm.CountSize());
        const std::uint64_t count = GetNumber(number, lclForm.CountSize(), lclForm.order);
        if (count == 0 || count > mostEntries) Damaged("the directory of a page is damaged");
        const std::uint64_t end = lclNext + lclForm.DirectorySize(count) - lclForm.OffsetSize();
        CheckInside(lclNext, end - lclNext);
        std::memset(number, 0, sizeof number);
        ReadSome(end, number, lclForm.OffsetSize());
        lclPages.push_back(lclNext);
        lclNext = GetNumber(number, lclForm.OffsetSize(), lclForm.order);
    }
    return lclPages.size() >= page;
}

int Source::PageCount() {
    WalkTo(mostPages + 1);
    return static_cast<int>(lclPages.size());
}

std::uint64_t Source::PageOffset(int page) {
    if (page < 1 || !WalkTo(static_cast<std::size_t>(page)))
        throw platform::Error(platform::errors::invalidArgument,
                              "\"" + lclName + "\" has no page " + std::to_string(page));
    return lclPages[static_cast<std::size_t>(page - 1)];
}

Directory Source::Page(int page) {
    if (page <= lclLastPage) lclTaken = 0;
    lclLastPage = page;
    return ReadDirectory(PageOffset(page));
}

void Source::Take(std::uint64_t size) {
    constexpr std::uint64_t times = 16, atLeast = 1 << 20;
    lclTaken += size;
    if (lclTaken > atLeast && lclTaken / times > lclSize)
        Damaged("its pages claim more data than it holds");
}

std::uint64_t Source::PlaceOf(const Entry& entry) const {
    return GetNumber(entry.field.data(), lclForm.OffsetSize(), lclForm.order);
}

bool Source::Holds(const Entry& entry) const {
    return IsInline(entry) || IsInside(PlaceOf(entry), entry.Size());
}

std::uint64_t Source::ValueOffset(const Entry& entry) {
    const std::uint64_t offset = PlaceOf(entry);
    CheckInside(offset, entry.Size());
    return offset;
}

std::string Source::Value(const Entry& entry) {
    const std::uint64_t size = entry.Size();
    if (IsInline(entry))
        return {reinterpret_cast<const char*>(entry.field.data()), static_cast<std::size_t>(size)};
    const std::uint64_t offset = ValueOffset(entry);
    if (size > mostValueBytes) Damaged("a value of a page is too large");
    std::string bytes(static_cast<std::size_t>(size), '\0');
    Read(offset, bytes.data(), bytes.size());
    return bytes;
}

std::vector<std::uint64_t> Source::Numbers(const Entry& entry) {
    const TypeSize type = SizeOf(entry.type);
    std::vector<std::uint64_t> numbers;
    if (type.size == 0 || type.size != type.unit) Damaged("a number of a page is damaged");
    const std::string bytes = Value(entry);
    numbers.reserve(static_cast<std::size_t>(entry.count));
    for (std::size_t at = 0; at < bytes.size(); at += type.unit)
        numbers.push_back(GetNumber(bytes.data() + at, type.unit, lclForm.order));
    return numbers;
}

std::uint64_t Source::Number(const Directory& directory, std::uint16_t tag,
                             std::uint64_t otherwise) {
    const Entry* entry = directory.Find(tag);
    if (!entry || entry->count == 0) return otherwise;
    const TypeSize type = SizeOf(entry->type);
    if (type.size == 0 || type.size != type.unit) Damaged("a number of a page is damaged");
    if (IsInline(*entry)) return GetNumber(entry->field.data(), type.unit, lclForm.order);
    std::uint8_t bytes[8] = {};
    Read(ValueOffset(*entry), bytes, type.unit);
    return GetNumber(bytes, type.unit, lclForm.order);
}

double Source::Rational(const Directory& directory, std::uint16_t tag) {
    const Entry* entry = directory.Find(tag);
    if (!entry || entry->count == 0) return 0;
    if (entry->type != types::rational && entry->type != types::srational)
        return entry->type == types::short16 || entry->type == types::long32
                   ? static_cast<double>(Number(directory, tag, 0))
                   : 0;
    char bytes[8] = {};
    if (IsInline(*entry))
        std::memcpy(bytes, entry->field.data(), sizeof bytes);
    else
        Read(ValueOffset(*entry), bytes, sizeof bytes);
    const auto over = static_cast<double>(GetNumber(bytes, 4, lclForm.order));
    const auto under = static_cast<double>(GetNumber(bytes + 4, 4, lclForm.order));
    return under > 0 ? over / under : 0;
}

} // namespace kavidex::imaging::tiff
