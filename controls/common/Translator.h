// The port to the translator: the host's object, or the control's own over the translation table.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/Texts.h"

namespace kavidex::controls {

class Translator {
public:
    virtual ~Translator() = default;
    // The text in the current language with $%$ filled in order; a text without a translation comes
    // back as it is, filled.
    virtual std::string Translate(std::string_view text,
                                  const std::vector<std::string>& values = {}) = 0;
};

// For what lies below the controls; it holds the translator, and is empty when there is none.
inline data::Translation TranslationBy(std::shared_ptr<Translator> translator) {
    if (!translator) return {};
    return [translator = std::move(translator)](std::string_view text,
                                                const std::vector<std::string>& values) {
        return translator->Translate(text, values);
    };
}

} // namespace kavidex::controls
