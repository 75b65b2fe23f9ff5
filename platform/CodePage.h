// Texts in the Windows code pages, as older files hold them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavidex::platform {

// The workstation's own code page; 1252 where the system has none.
inline constexpr std::uint32_t systemCodePage = 0;

// What is no character of that page becomes U+FFFD; a page that the system does not know is read as
// its own.
std::string FromCodePage(std::string_view bytes, std::uint32_t codePage);

// Null when the page lacks one of the characters, or the system does not know the page.
std::optional<std::string> ToCodePage(std::string_view text, std::uint32_t codePage);

// The page of a font's character set (LOGFONT); the system's own for one that is not known.
std::uint32_t CodePageOfCharSet(std::uint8_t charSet);

} // namespace kavidex::platform
