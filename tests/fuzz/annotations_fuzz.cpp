// Annotation data of any bytes: they come out as they went in, four turns are none, and no edit
// breaks what can be read.
#include <cstdint>
#include <string>

#include "imaging/annotations/Annotations.h"
#include "platform/Error.h"

namespace {

using namespace kavidex::imaging;
using namespace kavidex::imaging::annotations;

void Edit(Annotations& marks) {
    for (std::size_t i = 0; i < marks.Count(); ++i) {
        Mark mark = marks.At(i);
        mark.Move(7, -7);
        mark.Resize({1, 2, 300, 400});
        mark.font.weight = 700;
        if (!mark.IsKnown()) continue;
        marks.Change(i, mark, 1);
        if (marks.At(i).bounds != mark.bounds) __builtin_trap();
    }
    marks.HitTest({10, 10}, 3);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string tag(reinterpret_cast<const char*>(data), size);
    Annotations marks(tag);
    if (marks.Bytes() != tag) __builtin_trap();
    marks.Rotate(Turn::Right, 300, 200);
    marks.Rotate(Turn::Left, 200, 300);
    marks.Rotate(Turn::Half, 300, 200);
    marks.Rotate(Turn::Half, 300, 200);
    if (marks.Bytes().size() != tag.size()) __builtin_trap();
    if (!marks.Editable()) return 0;
    try {
        const std::size_t before = marks.Count();
        Mark note;
        note.type = MarkType::Note;
        note.text = "note";
        if (marks.Add(note, 1) != before || marks.At(before).text != "note") __builtin_trap();
        marks.Remove(before);
        Edit(marks);
        while (marks.Count() > 0) marks.Remove(0);
    } catch (const kavidex::platform::Error&) { // a text that its character set does not hold
    }
    return 0;
}
