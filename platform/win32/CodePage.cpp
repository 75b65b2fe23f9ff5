#include "platform/CodePage.h"

#include <windows.h>

#include "platform/text.h"

namespace kavidex::platform {

namespace {

UINT Known(std::uint32_t codePage) {
    return codePage != systemCodePage && IsValidCodePage(codePage) ? codePage : CP_ACP;
}

} // namespace

std::string FromCodePage(std::string_view bytes, std::uint32_t codePage) {
    if (bytes.empty()) return {};
    const UINT page = Known(codePage);
    const int length = static_cast<int>(bytes.size());
    const int needed = MultiByteToWideChar(page, 0, bytes.data(), length, nullptr, 0);
    std::u16string wide(needed, u'\0');
    MultiByteToWideChar(page, 0, bytes.data(), length, reinterpret_cast<wchar_t*>(wide.data()),
                        needed);
    return ToUtf8(wide);
}

std::optional<std::string> ToCodePage(std::string_view text, std::uint32_t codePage) {
    if (codePage == CP_UTF8) return std::string(text);
    if (codePage != systemCodePage && !IsValidCodePage(codePage)) return std::nullopt;
    if (text.empty()) return std::string();
    const std::u16string utf16 = ToUtf16(text);
    const auto* wide = reinterpret_cast<const wchar_t*>(utf16.data());
    const int length = static_cast<int>(utf16.size());
    const int needed = WideCharToMultiByte(codePage, 0, wide, length, nullptr, 0, nullptr, nullptr);
    std::string bytes(needed, '\0');
    WideCharToMultiByte(codePage, 0, wide, length, bytes.data(), needed, nullptr, nullptr);
    // Reading it back shows what was lost, and what a look-alike took the place of.
    return FromCodePage(bytes, codePage) == text ? std::optional(bytes) : std::nullopt;
}

} // namespace kavidex::platform
