// A text file line by line, in its own encoding and with its own line ends: lines that stay, stay
// byte for byte.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::controls {

class TextLines {
public:
    // Any bytes; a byte order mark tells the encoding, zero bytes tell UTF-16 without one. What is
    // neither that nor UTF-8 is in the workstation's code page.
    explicit TextLines(std::string bytes);

    std::size_t Count() const { return lclLines.size(); }
    std::string Line(std::size_t at) const; // UTF-8, without its end

    template <class Wanted>
    void RemoveIf(Wanted wanted) { // of the line in UTF-8
        std::size_t kept = 0;
        for (std::size_t at = 0; at < lclLines.size(); ++at)
            if (!wanted(Line(at))) lclLines[kept++] = lclLines[at];
        lclLines.resize(kept);
    }
    void Set(std::size_t at, std::string_view text); // keeps the line's end
    // The line before the new one gets an end where it has none.
    void Insert(std::size_t at, std::string_view text);
    void Append(std::string_view text) { Insert(Count(), text); }

    std::string Bytes() const;

private:
    enum class Encoding { Narrow, Utf8, Utf16, Utf16Swapped };
    struct Span {
        std::size_t from = 0, size = 0; // in lclBytes
    };
    struct Row {
        Span text, end;
    };
    void FindEncoding();
    void Split();
    char16_t Unit(std::size_t at) const;
    std::string_view In(const Span& span) const {
        return std::string_view(lclBytes).substr(span.from, span.size);
    }
    std::string Encoded(std::string_view text) const;
    Span Add(const std::string& encoded);

    std::string lclBytes; // as read, with what was added behind
    Encoding lclEncoding = Encoding::Narrow;
    std::size_t lclMark = 0, lclUnit = 1; // of the byte order mark, of one character
    std::vector<Row> lclLines;
    Span lclEnd; // how this file ends its lines
};

} // namespace kavidex::controls
