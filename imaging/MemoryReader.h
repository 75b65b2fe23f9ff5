// Bytes in memory, read as a file.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "platform/FileStreams.h"

namespace kavidex::imaging {

class MemoryReader : public platform::FileReader {
public:
    explicit MemoryReader(std::string bytes) : lclBytes(std::move(bytes)) {}

    std::uint64_t Size() override { return lclBytes.size(); }
    std::size_t Read(std::uint64_t offset, void* room, std::size_t size) override {
        if (offset >= lclBytes.size()) return 0;
        size = std::min<std::size_t>(size, lclBytes.size() - static_cast<std::size_t>(offset));
        std::memcpy(room, lclBytes.data() + offset, size);
        return size;
    }

private:
    std::string lclBytes;
};

} // namespace kavidex::imaging
