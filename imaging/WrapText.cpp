#include "imaging/WrapText.h"

#include "platform/utf8.h"

namespace kavidex::imaging {

namespace {

// The pieces between which a line may end: a word with the blanks behind it, or one character of a
// word that is too wide.
std::vector<std::string_view> Pieces(std::string_view line, double width,
                                     const TextMeasure& measure) {
    std::vector<std::string_view> pieces;
    while (!line.empty()) {
        const std::size_t blank = line.find(' ');
        std::size_t end = line.find_first_not_of(' ', blank);
        if (blank == std::string_view::npos || end == std::string_view::npos) end = line.size();
        const std::string_view word = line.substr(0, blank);
        if (measure(word) > width) {
            for (std::size_t i = 0; i < word.size();) {
                const std::size_t length = platform::DecodeUtf8(word, i).length;
                pieces.push_back(word.substr(i, length));
                i += length;
            }
            if (word.size() < end) pieces.push_back(line.substr(word.size(), end - word.size()));
        } else {
            pieces.push_back(line.substr(0, end));
        }
        line.remove_prefix(end);
    }
    return pieces;
}

std::string_view WithoutBlanks(std::string_view text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

void WrapLine(std::string_view line, double width, const TextMeasure& measure,
              std::vector<std::string>& lines) {
    if (width <= 0 || measure(WithoutBlanks(line)) <= width) {
        lines.emplace_back(line);
        return;
    }
    std::string current;
    double used = 0;
    for (const std::string_view piece : Pieces(line, width, measure)) {
        const double own = measure(WithoutBlanks(piece));
        if (!current.empty() && used + own > width) {
            lines.emplace_back(WithoutBlanks(current));
            current.clear();
            used = 0;
        }
        current += piece;
        used += measure(piece);
    }
    lines.emplace_back(WithoutBlanks(current));
}

} // namespace

std::vector<std::string> WrapText(std::string_view text, double width, const TextMeasure& measure) {
    std::vector<std::string> lines;
    std::string line;
    const auto end = [&] {
        WrapLine(line, width, measure, lines);
        line.clear();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        if (c == '\r' || c == '\n')
            end();
        else if (c == '\t')
            line += "    ";
        else if (static_cast<unsigned char>(c) >= 32)
            line += c;
    }
    end();
    return lines;
}

} // namespace kavidex::imaging
