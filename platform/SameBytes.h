// Compares what two files hold, for Files::SameBytes.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

namespace kavidex::platform {

// Each reader fills a room, less of it only at its end, and tells how much.
template <class One, class Other>
bool SameBytes(One readOne, Other readOther) {
    constexpr std::size_t block = std::size_t{256} * 1024;
    const std::unique_ptr<char[]> one(new char[block]), other(new char[block]);
    for (;;) {
        const std::size_t got = readOne(one.get(), block);
        if (readOther(other.get(), block) != got) return false;
        if (std::memcmp(one.get(), other.get(), got) != 0) return false;
        if (got < block) return true;
    }
}

} // namespace kavidex::platform
