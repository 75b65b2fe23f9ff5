// Part of a file at a time, for files that are too large to hold in memory. Every failing call
// throws platform::Error whose text names the path and the cause.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kavidex::platform {

class FileReader {
public:
    virtual ~FileReader() = default;
    virtual std::uint64_t Size() = 0;
    // Fills the room from there, less of it only at the file's end; how much.
    virtual std::size_t Read(std::uint64_t offset, void* room, std::size_t size) = 0;
};

// A file in the making, gone unless it is put in place.
class FileWriter {
public:
    virtual ~FileWriter() = default;
    virtual void Write(std::string_view bytes) = 0;
    // Whole or not at all, as Files::WriteAll. Where `flush` is false the system may still hold
    // the bytes: for files that can be made again from what is kept.
    virtual void PutInPlace(bool failIfExists, bool flush) = 0;
};

} // namespace kavidex::platform
