#include "mail/CompoundFile.h"

#include <algorithm>

#include "platform/Bytes.h"
#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::mail {

namespace {

using platform::ReadLittle;

constexpr std::uint32_t lastRegular = 0xFFFFFFF9, none = 0xFFFFFFFF;
constexpr std::size_t headerSize = 512, entrySize = 128, firstFatSlots = 109;

struct Entry {
    std::string name;
    std::uint8_t kind = 0; // 1 storage, 2 stream, 5 root
    std::uint32_t left = none, right = none, child = none, start = none;
    std::uint64_t size = 0;
};

// Chains of sectors; every walk is bounded by the number of sectors that the file can hold.
class Sectors {
public:
    explicit Sectors(std::string bytes);

    std::string Chain(std::uint32_t start, std::size_t most) const;
    std::string MiniChain(std::uint32_t start, std::size_t most) const;
    const std::vector<Entry>& Entries() const { return lclEntries; }
    std::optional<std::string> Content(const Entry& entry, std::size_t most) const;

private:
    std::string_view Sector(std::uint32_t number) const;
    void ReadFat();
    void ReadDirectory(std::uint32_t start);

    std::string lclBytes;
    std::size_t lclSectorSize = 512, lclMiniSize = 64, lclMiniLimit = 4096;
    std::vector<std::uint32_t> lclFat, lclMiniFat;
    std::vector<Entry> lclEntries;
    std::string lclMini;
};

[[noreturn]] void Refuse() {
    throw platform::Error(platform::errors::fail, "The file is no compound file, or is damaged");
}

std::string NameOf(std::string_view entry) {
    const std::size_t length = std::min<std::size_t>(ReadLittle<std::uint16_t>(entry, 64), 64);
    std::u16string name;
    for (std::size_t i = 0; i + 3 < length; i += 2)
        name += static_cast<char16_t>(ReadLittle<std::uint16_t>(entry, i));
    return platform::ToUtf8(name);
}

Sectors::Sectors(std::string bytes) : lclBytes(std::move(bytes)) {
    constexpr std::string_view signature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";
    if (lclBytes.size() < headerSize || !lclBytes.starts_with(signature)) Refuse();
    const unsigned sectorShift = ReadLittle<std::uint16_t>(lclBytes, 30),
                   miniShift = ReadLittle<std::uint16_t>(lclBytes, 32);
    if ((sectorShift != 9 && sectorShift != 12) || miniShift != 6) Refuse();
    lclSectorSize = std::size_t{1} << sectorShift;
    lclMiniLimit = ReadLittle<std::uint32_t>(lclBytes, 56);
    ReadFat();
    ReadDirectory(ReadLittle<std::uint32_t>(lclBytes, 48));
    if (lclEntries.empty() || lclEntries[0].kind != 5) Refuse();
    const std::string mini = Chain(ReadLittle<std::uint32_t>(lclBytes, 60), lclBytes.size());
    for (std::size_t i = 0; i + 4 <= mini.size(); i += 4)
        lclMiniFat.push_back(ReadLittle<std::uint32_t>(mini, i));
    lclMini = Chain(lclEntries[0].start, lclBytes.size());
}

// Empty behind the end; the last one may be cut.
std::string_view Sectors::Sector(std::uint32_t number) const {
    const std::uint64_t at = (std::uint64_t{number} + 1) * lclSectorSize;
    if (at >= lclBytes.size()) return {};
    return std::string_view(lclBytes).substr(static_cast<std::size_t>(at), lclSectorSize);
}

void Sectors::ReadFat() {
    const auto add = [&](std::uint32_t number) {
        const std::string_view sector = Sector(number);
        for (std::size_t i = 0; i + 4 <= sector.size(); i += 4)
            lclFat.push_back(ReadLittle<std::uint32_t>(sector, i));
    };
    for (std::size_t i = 0; i < firstFatSlots; ++i)
        if (const auto number = ReadLittle<std::uint32_t>(lclBytes, 76 + 4 * i);
            number <= lastRegular)
            add(number);
    // More of its sectors are named in a list of their own; the whole never outgrows the file.
    std::uint32_t list = ReadLittle<std::uint32_t>(lclBytes, 68);
    const std::size_t mostSectors = lclBytes.size() / lclSectorSize + 1;
    for (std::size_t steps = 0; list <= lastRegular && steps < mostSectors; ++steps) {
        const std::string_view sector = Sector(list);
        if (sector.size() < lclSectorSize) return;
        for (std::size_t i = 0; i + 8 <= sector.size() && lclFat.size() * 4 <= lclBytes.size();
             i += 4)
            if (const auto number = ReadLittle<std::uint32_t>(sector, i); number <= lastRegular)
                add(number);
        list = ReadLittle<std::uint32_t>(sector, lclSectorSize - 4);
    }
}

void Sectors::ReadDirectory(std::uint32_t start) {
    const std::string directory = Chain(start, lclBytes.size());
    for (std::size_t at = 0; at + entrySize <= directory.size(); at += entrySize) {
        const std::string_view raw = std::string_view(directory).substr(at, entrySize);
        Entry entry;
        entry.name = NameOf(raw);
        entry.kind = static_cast<std::uint8_t>(raw[66]);
        entry.left = ReadLittle<std::uint32_t>(raw, 68);
        entry.right = ReadLittle<std::uint32_t>(raw, 72);
        entry.child = ReadLittle<std::uint32_t>(raw, 76);
        entry.start = ReadLittle<std::uint32_t>(raw, 116);
        // Older writers leave rubbish in the upper half.
        entry.size = ReadLittle<std::uint32_t>(raw, 120);
        lclEntries.push_back(std::move(entry));
    }
}

std::string Sectors::Chain(std::uint32_t start, std::size_t most) const {
    std::string result;
    std::size_t steps = 0;
    for (std::uint32_t at = start; at <= lastRegular && result.size() < most; at = lclFat[at]) {
        const std::string_view sector = Sector(at);
        if (sector.empty() || steps++ > lclFat.size()) break;
        result += sector.substr(0, most - result.size());
        if (at >= lclFat.size()) break;
    }
    return result;
}

std::string Sectors::MiniChain(std::uint32_t start, std::size_t most) const {
    std::string result;
    std::size_t steps = 0;
    for (std::uint32_t at = start; at < lclMiniFat.size() && result.size() < most;
         at = lclMiniFat[at]) {
        const std::size_t place = std::size_t{at} * lclMiniSize;
        if (place >= lclMini.size() || steps++ > lclMiniFat.size()) break;
        result += lclMini.substr(place, std::min(lclMiniSize, most - result.size()));
    }
    return result;
}

std::optional<std::string> Sectors::Content(const Entry& entry, std::size_t most) const {
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(entry.size, most));
    std::string content =
        entry.size < lclMiniLimit ? MiniChain(entry.start, size) : Chain(entry.start, size);
    if (content.size() < size) return std::nullopt; // part of it is gone
    return content;
}

class ReadStorage : public Storage {
public:
    ReadStorage(std::shared_ptr<const Sectors> sectors, std::uint32_t entry)
        : lclSectors(std::move(sectors)) {
        CollectBelow(lclSectors->Entries()[entry].child);
    }

    std::optional<std::string> Stream(std::string_view name, std::size_t most) override {
        const auto found = Find(name, 2);
        return found ? lclSectors->Content(lclSectors->Entries()[*found], most) : std::nullopt;
    }

    std::unique_ptr<Storage> Folder(std::string_view name) override {
        const auto found = Find(name, 1);
        return found ? std::make_unique<ReadStorage>(lclSectors, *found) : nullptr;
    }

    std::vector<std::string> Folders() override {
        std::vector<std::string> names;
        for (const std::uint32_t i : lclBelow)
            if (lclSectors->Entries()[i].kind == 1) names.push_back(lclSectors->Entries()[i].name);
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    // The siblings form a tree, which a damaged file may tie into a knot: each is met once.
    void CollectBelow(std::uint32_t child) {
        const auto& entries = lclSectors->Entries();
        std::vector<bool> met(entries.size());
        std::vector<std::uint32_t> open{child};
        while (!open.empty()) {
            const std::uint32_t at = open.back();
            open.pop_back();
            if (at >= entries.size() || met[at]) continue;
            met[at] = true;
            lclBelow.push_back(at);
            open.push_back(entries[at].left);
            open.push_back(entries[at].right);
        }
    }

    std::optional<std::uint32_t> Find(std::string_view name, std::uint8_t kind) const {
        for (const std::uint32_t i : lclBelow) {
            const Entry& entry = lclSectors->Entries()[i];
            if (entry.kind == kind && platform::EqualNoCase(entry.name, name)) return i;
        }
        return std::nullopt;
    }

    std::shared_ptr<const Sectors> lclSectors;
    std::vector<std::uint32_t> lclBelow;
};

} // namespace

std::unique_ptr<Storage> ReadCompoundFile(std::string bytes) {
    return std::make_unique<ReadStorage>(std::make_shared<const Sectors>(std::move(bytes)), 0);
}

} // namespace kavidex::mail
