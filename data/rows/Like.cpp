#include "data/rows/Like.h"

#include <string>

#include "platform/text.h"

namespace kavidex::data {

namespace {

// Bytes of the character that begins at `at`; malformed bytes count one each.
std::size_t CharacterSize(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    for (std::size_t i = 1; i < size; ++i)
        if (at + i >= text.size() || (static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80)
            return 1;
    return size;
}

bool AnyRun(char c) { return c == '%' || c == '*'; }
bool AnyOne(char c) { return c == '_' || c == '?'; }

// `list` is what stands between the brackets; characters compare by their bytes, which order as
// their code points do.
bool InList(std::string_view list, std::string_view character) {
    bool inverted = false;
    if (!list.empty() && (list[0] == '!' || list[0] == '^')) {
        inverted = true;
        list.remove_prefix(1);
    }
    bool found = false;
    for (std::size_t at = 0; at < list.size() && !found;) {
        const std::string_view low = list.substr(at, CharacterSize(list, at));
        at += low.size();
        std::string_view high = low;
        if (at + 1 < list.size() && list[at] == '-') {
            high = list.substr(at + 1, CharacterSize(list, at + 1));
            at += 1 + high.size();
        }
        found = low <= character && character <= high;
    }
    return found != inverted;
}

// Matches one pattern element other than a run against the character at `t`; advances both.
bool MatchOne(std::string_view pattern, std::size_t& p, std::string_view text, std::size_t& t) {
    if (p >= pattern.size() || t >= text.size()) return false;
    const std::size_t size = CharacterSize(text, t);
    if (AnyOne(pattern[p])) {
        ++p, t += size;
        return true;
    }
    if (pattern[p] == '[') {
        const std::size_t close = pattern.find(']', p + 1);
        if (close != std::string_view::npos && close > p + 1) {
            if (!InList(pattern.substr(p + 1, close - p - 1), text.substr(t, size))) return false;
            p = close + 1, t += size;
            return true;
        }
    }
    const std::size_t own = CharacterSize(pattern, p);
    if (pattern.substr(p, own) != text.substr(t, size)) return false;
    p += own, t += size;
    return true;
}

bool MatchFolded(std::string_view pattern, std::string_view text) {
    std::size_t p = 0, t = 0;
    std::size_t runPattern = std::string_view::npos, runText = 0; // where the last run may grow
    for (;;) {
        if (p < pattern.size() && AnyRun(pattern[p])) {
            runPattern = ++p, runText = t;
            continue;
        }
        if (t == text.size() && p == pattern.size()) return true;
        if (p < pattern.size() && MatchOne(pattern, p, text, t)) continue;
        if (runPattern == std::string_view::npos || runText >= text.size()) return false;
        runText += CharacterSize(text, runText);
        p = runPattern, t = runText;
    }
}

} // namespace

bool LikeMatch(std::string_view pattern, std::string_view text) {
    return MatchFolded(platform::LowerCase(pattern), platform::LowerCase(text));
}

} // namespace kavidex::data
