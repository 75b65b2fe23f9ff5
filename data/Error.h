// A failure of the database: the engine's number and words, and the statement that met it.
#pragma once

#include <string>

#include "platform/Error.h"

namespace kavidex::data {

class Error : public platform::Error {
public:
    Error(std::int32_t number, const std::string& description, std::string source,
          std::string statement = {})
        : platform::Error(number, description, std::move(source)),
          lclStatement(std::move(statement)) {}

    // Empty where no statement was running.
    const std::string& Statement() const noexcept { return lclStatement; }

private:
    std::string lclStatement;
};

// ADO's own numbers, so that hosts and scripts recognise them.
namespace errors {
constexpr std::int32_t badEof = static_cast<std::int32_t>(0x800A0BCD);       // 3021 no current row
constexpr std::int32_t itemNotFound = static_cast<std::int32_t>(0x800A0CC1); // 3265 no such field
constexpr std::int32_t objectClosed = static_cast<std::int32_t>(0x800A0E78); // 3704
constexpr std::int32_t objectOpen = static_cast<std::int32_t>(0x800A0E79);   // 3705
constexpr std::int32_t featureNotAvailable = static_cast<std::int32_t>(0x800A0CB3); // 3251
constexpr std::int32_t invalidArgument = static_cast<std::int32_t>(0x800A0BB9);     // 3001
constexpr std::int32_t rowChanged = static_cast<std::int32_t>(0x80040E38); // changed meanwhile
constexpr std::int32_t integrity = static_cast<std::int32_t>(0x80040E2F);  // constraint violated
constexpr std::int32_t syntax = static_cast<std::int32_t>(0x80040E14);     // statement refused
constexpr std::int32_t noTable = static_cast<std::int32_t>(0x80040E37);
constexpr std::int32_t noTransaction = static_cast<std::int32_t>(0x8004D00E);
constexpr std::int32_t authentication = static_cast<std::int32_t>(0x80040E4D);
constexpr std::int32_t unspecified = static_cast<std::int32_t>(0x80004005);
} // namespace errors

} // namespace kavidex::data
