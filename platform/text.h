// Text in the core is UTF-8; these are the few operations on it that the whole house shares.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavidex::platform {

// Without leading and trailing blanks (U+0020 only, as fixed-width columns are padded).
std::string Trim(std::string_view text);
std::string_view TrimView(std::string_view text);

// Unicode-aware simple case mapping; malformed bytes pass through unchanged.
std::string LowerCase(std::string_view text);
void AppendLowerCase(std::string& to, std::string_view text); // for many texts in one
std::string UpperCase(std::string_view text);

// The house's one comparison without case; letters with a mark order beside the plain ones.
int CompareNoCase(std::string_view a, std::string_view b);
bool EqualNoCase(std::string_view a, std::string_view b);

// ASCII only and allocation-free, for names of columns, tables and keywords.
bool EqualAsciiNoCase(std::string_view a, std::string_view b);

std::string Replace(std::string_view text, std::string_view from, std::string_view to);

// An empty text has no parts; "a;;b" has three.
std::vector<std::string> Split(std::string_view text, char separator);

// Malformed input becomes U+FFFD, never an error.
std::u16string ToUtf16(std::string_view utf8);
std::string ToUtf8(std::u16string_view utf16);

// The leading numeric part with a full stop as decimal separator, 0 when there is none; blanks
// before and inside the number are skipped, whatever the locale.
double Val(std::string_view text);

// The placeholder $%$ filled in order by `values`; placeholders without a value stay.
std::string FillPlaceholders(std::string_view text, const std::vector<std::string>& values);

} // namespace kavidex::platform
