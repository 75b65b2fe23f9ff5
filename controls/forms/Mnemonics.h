// The letters that lead to a field with Alt: chosen, not written, since captions are translated.
#pragma once

#include <string>
#include <vector>

namespace kavidex::controls::forms {

class Form;

// One text a field of the form, in their order, as Windows draws captions: an ampersand before the
// letter chosen, and doubled where it is meant as itself. Fields that show no caption have an empty
// text. No letter is used twice; the default and cancel buttons have Enter and Escape.
std::vector<std::string> CaptionsWithMnemonics(const Form& form);

} // namespace kavidex::controls::forms
