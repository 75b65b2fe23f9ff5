#include "imaging/annotations/Annotations.h"

#include <algorithm>
#include <charconv>

#include "imaging/annotations/Attributes.h"
#include "platform/Bytes.h"
#include "platform/Error.h"

namespace kavidex::imaging::annotations {

namespace {

namespace block {
constexpr std::string_view group = "OiGroup", index = "OiIndex", points = "OiAnoDat",
                           file = "OiFilNam", image = "OiDIB", text = "OiAnText";
} // namespace block

constexpr std::string_view ownGroup{"[Untitled]\0", 11};
constexpr std::size_t indexSize = 10;

std::string UpToNul(std::string_view data) { return std::string(data.substr(0, data.find('\0'))); }

std::optional<std::uint32_t> IndexIn(const Record* record) {
    if (!record) return std::nullopt;
    const std::string digits = UpToNul(record->data);
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end == digits.data()) return std::nullopt;
    return value;
}

std::string IndexData(std::uint32_t value, std::size_t size) {
    std::string data = std::to_string(value);
    data.resize(data.size() < size ? size : std::max(indexSize, data.size() + 1));
    return data;
}

} // namespace

std::string Annotations::Bytes() const {
    const bool nothing = lclRecords.records.empty() && lclRecords.tail.empty() && lclNew;
    return nothing ? std::string() : WriteRecords(lclRecords);
}

void Annotations::FindStarts() {
    lclStarts.clear();
    for (std::size_t i = 0; i < lclRecords.records.size(); ++i)
        if (lclRecords.records[i].type == Record::mark) lclStarts.push_back(i);
}

std::size_t Annotations::StartOf(std::size_t index) const {
    if (index >= lclStarts.size())
        throw platform::Error(platform::errors::invalidArgument, "There is no such mark");
    return lclStarts[index];
}

std::size_t Annotations::EndOf(std::size_t start) const {
    std::size_t end = start + 1;
    while (end < lclRecords.records.size() && lclRecords.records[end].type != Record::mark) ++end;
    return end;
}

// Of blocks with one name the first counts.
const Record* Annotations::Block(std::size_t start, std::string_view name) const {
    for (std::size_t i = start + 1, end = EndOf(start); i < end; ++i) {
        const Record& record = lclRecords.records[i];
        if (record.type == Record::markBlock && record.Name() == name) return &record;
    }
    return nullptr;
}

Record* Annotations::Block(std::size_t start, std::string_view name) {
    return const_cast<Record*>(std::as_const(*this).Block(start, name));
}

Record* Annotations::DefaultBlock(std::string_view name) {
    for (Record& record : lclRecords.records)
        if (record.type == Record::defaultBlock && record.Name() == name) return &record;
    return nullptr;
}

void Annotations::PutBlock(std::size_t start, std::string_view name, std::string data) {
    Record record = MakeBlock(Record::markBlock, name, std::move(data));
    if (Record* old = Block(start, name)) {
        // Reserved bytes behind the length stay.
        platform::WriteLittle(old->body, 8, static_cast<std::uint32_t>(record.data.size()));
        old->data = std::move(record.data);
    } else {
        lclRecords.records.insert(
            lclRecords.records.begin() + static_cast<std::ptrdiff_t>(start) + 1, std::move(record));
        FindStarts();
    }
}

Mark Annotations::At(std::size_t index) const {
    const std::size_t start = StartOf(index);
    const Record& record = lclRecords.records[start];
    Mark mark;
    if (record.body.size() < attributesSize) {
        mark.type = static_cast<MarkType>(0);
        mark.visible = false;
        return mark;
    }
    ReadAttributes(record.body, mark);
    if (const Record* found = Block(start, block::points)) {
        if (mark.HasPoints()) ReadPoints(found->data, mark);
        if (mark.HasImage() && found->data.size() >= 4)
            mark.imageRotation = platform::ReadLittle<std::int32_t>(found->data, 0);
    }
    if (const Record* found = Block(start, block::text)) ReadText(found->data, mark);
    if (const Record* found = Block(start, block::image)) mark.image = found->data;
    if (const Record* found = Block(start, block::group)) mark.group = UpToNul(found->data);
    if (const Record* found = Block(start, block::file)) mark.fileName = UpToNul(found->data);
    return mark;
}

void Annotations::MustBeEditable() const {
    if (!Editable())
        throw platform::Error(platform::errors::accessDenied,
                              "The marks of this page are of a kind that can only be kept");
}

// The number of a new mark, taken from the default, which then holds the next.
std::string Annotations::TakeIndex() {
    if (lclRecords.records.empty()) {
        lclRecords.records.push_back(
            MakeBlock(Record::defaultBlock, block::group, std::string(ownGroup)));
        lclRecords.records.push_back(
            MakeBlock(Record::defaultBlock, block::index, IndexData(0, indexSize)));
    }
    std::uint32_t next = 0;
    for (const std::size_t start : lclStarts)
        if (const auto index = IndexIn(Block(start, block::index)))
            next = std::max(next, *index + 1);
    Record* byDefault = DefaultBlock(block::index);
    if (const auto index = IndexIn(byDefault)) next = *index;
    if (byDefault) {
        byDefault->data = IndexData(next + 1, byDefault->data.size());
        platform::WriteLittle(byDefault->body, 8,
                              static_cast<std::uint32_t>(byDefault->data.size()));
    }
    return IndexData(next, indexSize);
}

std::string Annotations::GroupForNew(const Mark& mark) {
    if (!mark.group.empty()) return mark.group + '\0';
    if (const Record* byDefault = DefaultBlock(block::group)) return byDefault->data;
    for (const std::size_t start : lclStarts)
        if (const Record* found = Block(start, block::group)) return found->data;
    return std::string(ownGroup);
}

std::size_t Annotations::Add(const Mark& wanted, std::uint32_t now) {
    MustBeEditable();
    Mark mark = wanted;
    std::vector<Record> blocks;
    const auto add = [&](std::string_view name, std::string data) {
        blocks.push_back(MakeBlock(Record::markBlock, name, std::move(data)));
    };
    if (mark.HasText())
        add(block::text, TextData(EncodeText(mark), mark.orientation, mark.creationScale));
    if (mark.HasPoints()) add(block::points, PointData(mark.points));
    if (mark.HasImage()) {
        add(block::points, PlacementData(mark.imageRotation));
        add(block::file, mark.fileName + '\0');
        if (!mark.image.empty()) add(block::image, mark.image);
    }
    const std::string index = TakeIndex();
    add(block::group, GroupForNew(mark));
    add(block::index, index);
    lclStarts.push_back(lclRecords.records.size());
    lclRecords.records.push_back({Record::mark, NewAttributes(mark, now), {}});
    lclRecords.records.insert(lclRecords.records.end(), blocks.begin(), blocks.end());
    return Count() - 1;
}

// A text that stays is kept as it is written, whatever it is written in.
bool Annotations::ChangeText(std::size_t start, const Mark& before, Mark& after) {
    Record* found = Block(start, block::text);
    if (!found || before.text != after.text || before.font.charSet != after.font.charSet) {
        const std::string bytes = EncodeText(after);
        PutBlock(start, block::text, TextData(bytes, after.orientation, after.creationScale));
        return true;
    }
    return PatchTextPlace(found->data, before, after);
}

void Annotations::Change(std::size_t index, const Mark& wanted, std::uint32_t now) {
    MustBeEditable();
    const std::size_t start = StartOf(index);
    const Mark before = At(index);
    if (!before.IsKnown())
        throw platform::Error(platform::errors::accessDenied,
                              "A mark of this kind can only be kept or removed");
    Mark after = wanted;
    bool changed = false;
    if (before.HasText()) changed = ChangeText(start, before, after);
    if (before.HasPoints() && before.points != after.points) {
        PutBlock(start, block::points, PointData(after.points));
        changed = true;
    }
    std::string& body = lclRecords.records[start].body;
    if (PatchAttributes(body, before, after)) changed = true;
    if (changed) SetChanged(body, now);
}

void Annotations::Remove(std::size_t index) {
    MustBeEditable();
    const std::size_t start = StartOf(index), end = EndOf(start);
    auto& records = lclRecords.records;
    const auto first = records.begin() + static_cast<std::ptrdiff_t>(start);
    const auto last = records.begin() + static_cast<std::ptrdiff_t>(end);
    records.erase(std::remove_if(first, last,
                                 [](const Record& record) {
                                     return record.type == Record::mark ||
                                            record.type == Record::markBlock;
                                 }),
                  last);
    FindStarts();
}

} // namespace kavidex::imaging::annotations
