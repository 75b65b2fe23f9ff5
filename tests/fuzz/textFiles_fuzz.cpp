// Notes and links of any bytes are read; what the note control writes comes back.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "controls/viewer/LinkView.h"
#include "controls/viewer/NoteFile.h"
#include "platform/text.h"

using namespace kavidex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    controls::ReadLink(bytes);
    controls::ReadLink("[param]\ninput=" + bytes);
    const auto read = controls::ReadNote(bytes);
    // A heading that holds a record's end would be two texts in any form.
    const auto heading = platform::Replace(read.heading.value_or(""), "\"", "'");
    const auto memo = read.memo.value_or("");
    const auto again = controls::ReadNote(controls::WriteNote(heading, memo));
    if (again.heading != heading || again.memo != memo || !again.whole) std::abort();
    const auto text = platform::Replace(platform::ToUtf8(platform::ToUtf16(bytes)),
                                        std::string_view("\0", 1), "");
    if (controls::ReadNote(controls::WriteNote("kop", text)).memo != text) std::abort();
    return 0;
}
