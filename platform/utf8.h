// Code points in and out of UTF-8, and their case: what text.cpp is made of.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::platform {

// One step through a text. A malformed byte is a step of its own with `valid` false and the byte
// as its code point.
struct CodePoint {
    char32_t value = 0;
    int length = 1; // bytes
    bool valid = true;
};
CodePoint DecodeUtf8(std::string_view text, std::size_t position); // position < text.size()
void AppendUtf8(std::string& text, char32_t codePoint);

char32_t LowerCodePoint(char32_t codePoint);
char32_t UpperCodePoint(char32_t codePoint);

// The operating system's simple mapping of one code point, whatever the locale of the process.
// Costly; the two above keep what it said.
char32_t SystemLower(char32_t codePoint);
char32_t SystemUpper(char32_t codePoint);

} // namespace kavidex::platform
