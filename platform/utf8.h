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

// Simple case mapping, the same on every system.
char32_t LowerCodePoint(char32_t codePoint);
char32_t UpperCodePoint(char32_t codePoint);

} // namespace kavidex::platform
