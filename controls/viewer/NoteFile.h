// The file of a note: two records one after the other, the heading and the text, each in double
// quotes and closed by a line end. A double quote within a text stands as it is.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kavidex::controls {

struct NoteRecords {
    std::optional<std::string> heading, memo; // null: the file has no such record
    // False where the file holds more than these two: further records, or bytes that are no text.
    bool whole = true;
};

// Bytes are of the system's code page, or of UTF-8 behind its mark. Of more than two records the
// last is the text; what begins with no quote is text without a heading. Never throws.
NoteRecords ReadNote(std::string_view bytes);

// In the system's code page where it has every character and ReadNote gives both texts back; else
// in UTF-8 behind its mark, which also says that there are exactly two records.
std::string WriteNote(std::string_view heading, std::string_view memo);

} // namespace kavidex::controls
