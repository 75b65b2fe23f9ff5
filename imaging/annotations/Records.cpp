#include "imaging/annotations/Records.h"

#include "platform/Bytes.h"

namespace kavidex::imaging::annotations {

namespace {

using platform::AppendLittle;
using platform::ReadLittle;

constexpr std::size_t headerSize = 8, nameSize = 8, blockBodySize = nameSize + 4;
constexpr std::uint32_t integersOf32Bits = 1;

// False when what stands there is no whole record.
bool ReadRecord(std::string_view& rest, Record& record) {
    if (rest.size() < 8) return false;
    record.type = ReadLittle<std::uint32_t>(rest, 0);
    const std::size_t size = ReadLittle<std::uint32_t>(rest, 4);
    if (size > rest.size() - 8) return false;
    record.body = rest.substr(8, size);
    std::size_t dataSize = 0;
    if (record.IsBlock()) {
        if (size < blockBodySize) return false;
        dataSize = ReadLittle<std::uint32_t>(record.body, nameSize);
        if (dataSize > rest.size() - 8 - size) return false;
    }
    record.data = rest.substr(8 + size, dataSize);
    rest.remove_prefix(8 + size + dataSize);
    return true;
}

} // namespace

std::string Record::Name() const {
    const std::string name = body.substr(0, nameSize);
    return name.substr(0, name.find('\0'));
}

bool Records::Readable() const {
    return header.size() == headerSize && ReadLittle<std::uint32_t>(header, 4) == integersOf32Bits;
}

Records ReadRecords(std::string_view bytes) {
    Records result;
    if (bytes.empty()) {
        AppendLittle<std::uint32_t>(result.header, 0);
        AppendLittle<std::uint32_t>(result.header, integersOf32Bits);
        return result;
    }
    result.header = bytes.substr(0, headerSize);
    bytes.remove_prefix(result.header.size());
    Record record;
    if (result.Readable())
        while (ReadRecord(bytes, record)) result.records.push_back(std::move(record));
    result.tail = bytes;
    return result;
}

std::string WriteRecords(const Records& records) {
    std::string bytes = records.header;
    for (const Record& record : records.records) {
        AppendLittle<std::uint32_t>(bytes, record.type);
        AppendLittle<std::uint32_t>(bytes, static_cast<std::uint32_t>(record.body.size()));
        bytes += record.body;
        bytes += record.data;
    }
    return bytes += records.tail;
}

Record MakeBlock(std::uint32_t type, std::string_view name, std::string data) {
    Record record{type, std::string(name), std::move(data)};
    record.body.resize(nameSize);
    AppendLittle<std::uint32_t>(record.body, static_cast<std::uint32_t>(record.data.size()));
    return record;
}

} // namespace kavidex::imaging::annotations
