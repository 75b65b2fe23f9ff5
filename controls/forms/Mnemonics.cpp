#include "controls/forms/Mnemonics.h"

#include <set>

#include "controls/forms/Form.h"
#include "platform/text.h"

namespace kavidex::controls::forms {

namespace {

// Fields that a label leads to; boxes and buttons have captions of their own.
bool IsLabelled(Kind kind) {
    return kind == Kind::Edit || kind == Kind::Memo || kind == Kind::Browse ||
           kind == Kind::Combo || kind == Kind::List || kind == Kind::Tree || kind == Kind::Pane;
}

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

// Word beginnings first, as people look for them.
std::size_t Choose(const std::string& caption, const std::set<char>& taken) {
    for (const bool begins : {true, false})
        for (std::size_t i = 0; i < caption.size(); ++i) {
            if (begins && i > 0 && caption[i - 1] != ' ') continue;
            if (IsAsciiLetter(caption[i]) && !taken.contains(Lower(caption[i]))) return i;
        }
    return std::string::npos;
}

} // namespace

std::vector<std::string> CaptionsWithMnemonics(const Form& form) {
    std::vector<std::string> texts;
    std::set<char> taken;
    const auto& fields = form.Fields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Field& field = fields[i];
        const Kind kind = field.Type();
        const bool label = kind == Kind::Label && i + 1 < fields.size() &&
                           IsLabelled(fields[i + 1].Type()) && !fields[i + 1].ReadOnly();
        const bool own =
            kind == Kind::Check || kind == Kind::Option ||
            (kind == Kind::Button && !field.Row().Has(style::isDefault | style::isCancel));
        std::string text = field.Text();
        std::size_t at = label || own ? Choose(text, taken) : std::string::npos;
        if (at != std::string::npos) taken.insert(Lower(text[at]));
        std::string shown;
        for (std::size_t c = 0; c < text.size(); ++c) {
            if (c == at || text[c] == '&') shown += '&';
            shown += text[c];
        }
        const bool captioned =
            label || own || kind == Kind::Label || kind == Kind::Button || kind == Kind::Frame;
        texts.push_back(captioned ? shown : std::string());
    }
    return texts;
}

} // namespace kavidex::controls::forms
