#include "data/Value.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/text.h"

namespace kavidex::data {

namespace {

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

std::string NumberText(double value) {
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15).ptr;
    std::string text(buffer, end);
    for (char& c : text)
        if (c == 'e') c = 'E';
    return text;
}

// Half to even, as Basic rounds; the nearest end beyond the range; 0 for what is no number.
template <class Integer>
Integer Rounded(double value) {
    using Limits = std::numeric_limits<Integer>;
    if (std::isnan(value)) return 0;
    const double rounded = std::nearbyint(value);
    if (rounded >= static_cast<double>(Limits::max())) return Limits::max();
    if (rounded <= static_cast<double>(Limits::min())) return Limits::min();
    return static_cast<Integer>(rounded);
}

std::int64_t IntegerOfText(const std::string& text) {
    // Whole numbers exactly, since a double does not hold all of them.
    const std::string_view trimmed = platform::TrimView(text);
    std::int64_t whole = 0;
    const auto [end, error] =
        std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), whole);
    if (error == std::errc() && end == trimmed.data() + trimmed.size()) return whole;
    if (platform::EqualAsciiNoCase(trimmed, "true")) return -1;
    return Rounded<std::int64_t>(platform::Val(text));
}

} // namespace

std::string ToText(const Value& value) {
    return std::visit(
        Overloaded{[](std::monostate) { return std::string(); },
                   [](bool flag) { return std::string(flag ? "True" : "False"); },
                   [](std::int64_t number) { return std::to_string(number); },
                   [](double number) { return NumberText(number); },
                   [](const std::string& text) { return text; },
                   [](const Bytes& bytes) { return std::string(bytes.begin(), bytes.end()); }},
        value);
}

std::int64_t ToInt64(const Value& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) return *number;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? -1 : 0;
    if (const auto* number = std::get_if<double>(&value)) return Rounded<std::int64_t>(*number);
    if (const auto* text = std::get_if<std::string>(&value)) return IntegerOfText(*text);
    return 0;
}

std::int32_t ToInt32(const Value& value) {
    const std::int64_t wide = ToInt64(value);
    using Limits = std::numeric_limits<std::int32_t>;
    if (wide > Limits::max()) return Limits::max();
    if (wide < Limits::min()) return Limits::min();
    return static_cast<std::int32_t>(wide);
}

double ToDouble(const Value& value) {
    if (const auto* number = std::get_if<double>(&value)) return *number;
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (platform::EqualAsciiNoCase(platform::TrimView(*text), "true")) return -1;
        return platform::Val(*text);
    }
    return static_cast<double>(ToInt64(value));
}

bool ToBool(const Value& value) {
    if (const auto* flag = std::get_if<bool>(&value)) return *flag;
    return ToDouble(value) != 0;
}

} // namespace kavidex::data
