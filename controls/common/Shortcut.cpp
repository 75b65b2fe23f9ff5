#include "controls/common/Shortcut.h"

namespace kavidex::controls {

namespace {

struct Name {
    int key;
    std::string_view text;
};
constexpr Name keyNames[] = {
    {keys::del, "Del"},      {keys::enter, "Enter"}, {keys::insert, "Ins"}, {keys::escape, "Esc"},
    {keys::space, "Spatie"}, {keys::multiply, "*"},  {keys::add, "+"},      {keys::subtract, "-"},
};
constexpr std::string_view modifierNames[] = {"Ctrl", "Shift", "Alt"};

} // namespace

std::string ShortcutText(const Shortcut& shortcut, const data::Translation& translation) {
    if (shortcut.key == 0) return {};
    std::string text;
    const bool held[] = {shortcut.control, shortcut.shift, shortcut.alt};
    for (std::size_t i = 0; i < std::size(held); ++i)
        if (held[i]) text += data::Translated(translation, modifierNames[i]) + "+";
    for (const auto& name : keyNames)
        if (name.key == shortcut.key) return text + data::Translated(translation, name.text);
    if (shortcut.key >= keys::f1 && shortcut.key <= keys::f24)
        return text + "F" + std::to_string(shortcut.key - keys::f1 + 1);
    return text + static_cast<char>(shortcut.key);
}

} // namespace kavidex::controls
