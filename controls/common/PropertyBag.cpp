#include "controls/common/PropertyBag.h"

#include "platform/text.h"

namespace kavidex::controls {

// The name comes last, since it may hold the separator.
std::optional<FontFace> PropertyBag::ReadFont(std::string_view name) {
    const auto stored = Read(name, std::string(), BagWidth::Natural);
    if (!stored || data::IsNull(*stored)) return std::nullopt;
    const std::string text = data::ToText(*stored);
    const auto parts = platform::Split(text, ';');
    if (parts.size() < 6) return std::nullopt;
    FontFace font;
    font.points = platform::Val(parts[0]) / 100;
    font.weight = static_cast<int>(platform::Val(parts[1]));
    font.italic = parts[2] == "1";
    font.underline = parts[3] == "1";
    font.strikethrough = parts[4] == "1";
    font.name = parts[5];
    for (std::size_t i = 6; i < parts.size(); ++i) font.name += ";" + std::string(parts[i]);
    return font;
}

void PropertyBag::WriteFont(std::string_view name, const FontFace& font) {
    const auto flag = [](bool value) { return value ? "1;" : "0;"; };
    Write(name,
          std::to_string(static_cast<int>(font.points * 100 + 0.5)) + ";" +
              std::to_string(font.weight) + ";" + flag(font.italic) + flag(font.underline) +
              flag(font.strikethrough) + font.name,
          BagWidth::Natural);
}

} // namespace kavidex::controls
