// The one exception type that crosses rooms: a number, what happened, and who says so.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace kavidex::platform {

// `number` is the code that a message box or a COM host sees (an HRESULT where there is one);
// what() is the description in UTF-8; `source` names the class or component that raised it.
class Error : public std::runtime_error {
public:
    Error(std::int32_t number, const std::string& description, std::string source = "Kavidex")
        : std::runtime_error(description), lclNumber(number), lclSource(std::move(source)) {}

    std::int32_t Number() const noexcept { return lclNumber; }
    const std::string& Source() const noexcept { return lclSource; }

private:
    std::int32_t lclNumber;
    std::string lclSource;
};

// Numbers shared by the rooms; all are HRESULTs that a host can look up.
namespace errors {
constexpr std::int32_t fail = static_cast<std::int32_t>(0x80004005);
constexpr std::int32_t invalidArgument = static_cast<std::int32_t>(0x80070057);
constexpr std::int32_t notFound = static_cast<std::int32_t>(0x80070002);
constexpr std::int32_t pathNotFound = static_cast<std::int32_t>(0x80070003);
constexpr std::int32_t accessDenied = static_cast<std::int32_t>(0x80070005);
constexpr std::int32_t alreadyExists = static_cast<std::int32_t>(0x80070050);
constexpr std::int32_t diskFull = static_cast<std::int32_t>(0x80070070);
constexpr std::int32_t invalidData = static_cast<std::int32_t>(0x8007000D);
constexpr std::int32_t sharingViolation = static_cast<std::int32_t>(0x80070020);
} // namespace errors

} // namespace kavidex::platform
