// The port to the translator: the host's object, or the control's own over the translation table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavidex::controls {

class Translator {
public:
    virtual ~Translator() = default;
    // The text in the current language with $%$ filled in order; a text without a translation comes
    // back as it is, filled.
    virtual std::string Translate(std::string_view text,
                                  const std::vector<std::string>& values = {}) = 0;
};

} // namespace kavidex::controls
