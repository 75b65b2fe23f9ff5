#include "mail/HtmlText.h"

#include <algorithm>
#include <iterator>

#include "platform/text.h"
#include "platform/utf8.h"

namespace kavidex::mail {

namespace {

constexpr std::string_view blank = " \t\r\n\f";
constexpr std::size_t none = std::string_view::npos;

// What a line ends with, and what is not text at all.
constexpr std::string_view blocks[] = {"br", "p",  "div", "tr", "li",    "h1",    "h2",
                                       "h3", "h4", "h5",  "h6", "table", "title", "hr",
                                       "ul", "ol", "dd",  "dt", "pre",   "body"};
constexpr std::string_view skipped[] = {"script", "style", "head", "template"};

struct Entity {
    std::string_view name;
    char32_t character;
};
constexpr Entity entities[] = {{"amp", '&'},     {"lt", '<'},      {"gt", '>'},
                               {"quot", '"'},    {"apos", '\''},   {"nbsp", ' '},
                               {"euro", 0x20AC}, {"eacute", 0xE9}, {"euml", 0xEB}};

template <class Table>
bool Lists(const Table& table, std::string_view name) {
    return std::find(std::begin(table), std::end(table), name) != std::end(table);
}

// The name in a tag, in lower case, without what ends it.
std::string NameOf(std::string_view tag) {
    if (tag.starts_with('/')) tag.remove_prefix(1);
    return platform::LowerCase(tag.substr(0, tag.find_first_of(" \t\r\n\f/>")));
}

class Reader {
public:
    explicit Reader(std::string_view html) : lclHtml(html) {}

    std::string Text() {
        while (lclAt < lclHtml.size()) {
            const char c = lclHtml[lclAt];
            if (c == '<')
                Tag();
            else if (c == '&')
                Character();
            else if (blank.find(c) != none)
                Blank();
            else
                Put(c);
        }
        while (!lclText.empty() && blank.find(lclText.back()) != none) lclText.pop_back();
        return std::move(lclText);
    }

private:
    void Put(char c) {
        lclText += c;
        ++lclAt;
    }
    void Blank() {
        if (!lclText.empty() && lclText.back() != ' ' && lclText.back() != '\n') lclText += ' ';
        ++lclAt;
    }
    void Line() {
        while (!lclText.empty() && lclText.back() == ' ') lclText.pop_back();
        if (!lclText.empty() && !lclText.ends_with("\n\n")) lclText += '\n';
    }
    void Tag() {
        if (lclHtml.substr(lclAt).starts_with("<!--")) return SkipPast("-->", lclAt + 4);
        const auto end = lclHtml.find('>', lclAt);
        if (end == none) return Put('<'); // no tag
        const auto tag = lclHtml.substr(lclAt + 1, end - lclAt - 1);
        const auto name = NameOf(tag);
        lclAt = end + 1;
        if (Lists(blocks, name)) Line();
        if (Lists(skipped, name) && !tag.starts_with('/') && !tag.ends_with('/'))
            SkipPast("</" + name, lclAt);
    }
    void SkipPast(std::string_view what, std::size_t from) {
        while (true) {
            const auto at = lclHtml.find(what.front(), from);
            if (at == none) break;
            if (platform::EqualAsciiNoCase(lclHtml.substr(at, what.size()), what)) {
                const auto end = lclHtml.find('>', at);
                lclAt = end == none ? lclHtml.size() : end + 1;
                return;
            }
            from = at + 1;
        }
        lclAt = lclHtml.size();
    }
    void Character() {
        constexpr std::size_t longest = 10;
        const auto end = lclHtml.substr(lclAt, longest).find(';');
        const auto name = end == none ? std::string_view() : lclHtml.substr(lclAt + 1, end - 1);
        char32_t character = 0;
        if (name.starts_with('#')) character = Numbered(name.substr(1));
        for (const auto& entity : entities)
            if (entity.name == name) character = entity.character;
        if (character == 0) return Put('&');
        platform::AppendUtf8(lclText, character);
        lclAt += end + 1;
    }
    static char32_t Numbered(std::string_view digits) {
        const bool hex = digits.starts_with('x') || digits.starts_with('X');
        char32_t number = 0;
        for (const char c : digits.substr(hex ? 1 : 0)) {
            const auto at = std::string_view("0123456789abcdef").find(c >= 'A' ? c | 0x20 : c);
            if (at == none || at >= (hex ? 16U : 10U)) return 0;
            number = number * (hex ? 16 : 10) + static_cast<char32_t>(at);
        }
        const bool real = number < 0xD800 || (number > 0xDFFF && number <= 0x10FFFF);
        return real && (number >= ' ' || number == '\n') ? number : 0;
    }

    std::string_view lclHtml;
    std::size_t lclAt = 0;
    std::string lclText;
};

} // namespace

std::string TextOfHtml(std::string_view html) { return Reader(html).Text(); }

} // namespace kavidex::mail
