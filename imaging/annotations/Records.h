// The annotation data of one page (TIFF tag 32932) as the records it is made of. Nothing is lost on
// the way in and out: what is not understood is kept as it stands.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::imaging::annotations {

inline constexpr std::uint16_t tagNumber = 32932; // of type BYTE, as many as there are

struct Record {
    // A default for new marks, the start of a mark, a block that belongs to the mark before it.
    static constexpr std::uint32_t defaultBlock = 2, mark = 5, markBlock = 6;

    std::uint32_t type = 0;
    std::string body;
    std::string data; // named blocks only; the body ends in its length

    bool IsBlock() const { return type == defaultBlock || type == markBlock; }
    std::string Name() const; // of a block, without its padding
};

struct Records {
    std::string header; // 8 bytes
    std::vector<Record> records;
    std::string tail; // from where no record can be told any more

    // False for data of another integer size, which is kept and not interpreted.
    bool Readable() const;
};

// Data that was never written begins as an empty list with a header of its own.
Records ReadRecords(std::string_view bytes);
std::string WriteRecords(const Records& records);

Record MakeBlock(std::uint32_t type, std::string_view name, std::string data);

} // namespace kavidex::imaging::annotations
