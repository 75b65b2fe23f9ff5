// Numbers inside byte strings, in either order and at any offset. The caller has checked the
// length.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace kavidex::platform {

template <class Number>
Number ReadLittle(std::string_view bytes, std::size_t at) {
    std::make_unsigned_t<Number> value = 0;
    for (std::size_t i = sizeof(Number); i-- > 0;)
        value = static_cast<decltype(value)>((static_cast<std::uint64_t>(value) << 8) |
                                             static_cast<unsigned char>(bytes[at + i]));
    return static_cast<Number>(value);
}

template <class Number>
Number ReadBig(std::string_view bytes, std::size_t at) {
    std::make_unsigned_t<Number> value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        value = static_cast<decltype(value)>((static_cast<std::uint64_t>(value) << 8) |
                                             static_cast<unsigned char>(bytes[at + i]));
    return static_cast<Number>(value);
}

template <class Number>
void WriteLittle(std::string& bytes, std::size_t at, Number number) {
    const auto value = static_cast<std::make_unsigned_t<Number>>(number);
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bytes[at + i] = static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i));
}

template <class Number>
void AppendLittle(std::string& bytes, Number number) {
    const std::size_t at = bytes.size();
    bytes.resize(at + sizeof(Number));
    WriteLittle(bytes, at, number);
}

template <class Number>
void AppendBig(std::string& bytes, Number number) {
    const auto value = static_cast<std::make_unsigned_t<Number>>(number);
    for (std::size_t i = sizeof(Number); i-- > 0;)
        bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i));
}

} // namespace kavidex::platform
