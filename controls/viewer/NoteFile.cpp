#include "controls/viewer/NoteFile.h"

#include <vector>

#include "platform/CodePage.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF", lineEnd = "\r\n", lineEnds = "\r\n";
constexpr std::size_t none = std::string_view::npos;

// Past one line end, `at` itself where there is none.
std::size_t AfterLineEnd(std::string_view text, std::size_t at) {
    if (text.substr(at).starts_with(lineEnd)) return at + lineEnd.size();
    return at < text.size() && lineEnds.find(text[at]) != none ? at + 1 : at;
}

// The quote that closes the record begun before `from`: the first with a line end behind it and
// then another record or nothing. The text's end where there is none.
std::size_t EndOfRecord(std::string_view text, std::size_t from) {
    for (auto at = text.find('"', from); at != none; at = text.find('"', at + 1)) {
        const auto next = AfterLineEnd(text, at + 1);
        const bool record = next > at + 1 && next < text.size() && text[next] == '"';
        if (record || text.find_first_not_of(lineEnds, at + 1) == none) return at;
    }
    return text.size();
}

// The last quote of all, behind which nothing stands but line ends.
std::size_t EndOfLast(std::string_view text, std::size_t from) {
    const auto last = text.find_last_not_of(lineEnds);
    return last != none && last >= from && text[last] == '"' ? last : text.size();
}

std::vector<std::string_view> Records(std::string_view text, bool exactlyTwo) {
    std::vector<std::string_view> records;
    for (std::size_t at = 0; at < text.size() && text[at] == '"';) {
        const auto from = at + 1;
        const bool last = exactlyTwo && records.size() == 1;
        const auto end = last ? EndOfLast(text, from) : EndOfRecord(text, from);
        records.push_back(text.substr(from, end - from));
        at = AfterLineEnd(text, end + 1 < text.size() ? end + 1 : text.size());
    }
    return records;
}

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"" + std::string(lineEnd);
}

} // namespace

NoteRecords ReadNote(std::string_view bytes) {
    NoteRecords note;
    const bool marked = bytes.starts_with(mark);
    if (marked) bytes.remove_prefix(mark.size());
    std::string text = marked ? platform::ToUtf8(platform::ToUtf16(bytes))
                              : platform::FromCodePage(bytes, platform::systemCodePage);
    const auto back = marked ? text : platform::ToCodePage(text, platform::systemCodePage);
    note.whole = back == bytes && text.find('\0') == none;
    text = platform::Replace(text, std::string_view("\0", 1), "\xEF\xBF\xBD");
    const auto records = Records(text, marked);
    if (records.empty()) {
        if (!text.empty()) note.memo = text;
        return note;
    }
    note.heading = records.front();
    if (records.size() > 1) note.memo = records.back();
    note.whole = note.whole && records.size() <= 2;
    return note;
}

std::string WriteNote(std::string_view heading, std::string_view memo) {
    const std::string text = Quoted(heading) + Quoted(memo);
    if (auto bytes = platform::ToCodePage(text, platform::systemCodePage)) {
        const auto read = ReadNote(*bytes);
        if (read.whole && read.heading == heading && read.memo == memo) return *bytes;
    }
    return std::string(mark) + text;
}

} // namespace kavidex::controls
