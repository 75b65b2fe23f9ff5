// The settings dialog as data: its fields, and what each of them keeps where.
#pragma once

#include <span>
#include <string_view>

#include "controls/forms/Layout.h"

namespace kavidex::controls::settingRows {

// A folder, kept in the database.
struct Path {
    std::string_view field, test; // the button that tries it
    std::string_view section, key;
};

// An option of the workstation; `absent` is what counts where none is kept.
struct Option {
    std::string_view field, section, key, absent = "False";
    std::string_view yes = "True", no = "False"; // of a box
};

inline constexpr std::string_view languageSection = "CorrespSetting", languageKey = "Language";

const forms::Layout& FormLayout();
std::span<const Path> Paths();
std::span<const Option> Flags();   // boxes
std::span<const Option> Texts();   // edits
std::span<const Option> Choices(); // combos: numbers from 0

} // namespace kavidex::controls::settingRows
