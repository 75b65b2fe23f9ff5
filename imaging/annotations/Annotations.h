// The marks of one page: read, changed and written back. A change touches the bytes that it is
// about and no others; marks, blocks and records that are not understood stay as they are.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "imaging/Turn.h"
#include "imaging/annotations/Mark.h"
#include "imaging/annotations/Records.h"

namespace kavidex::imaging::annotations {

using imaging::Turn;

class Annotations {
public:
    // Nothing for a page that has no marks yet.
    explicit Annotations(std::string_view tag = {})
        : lclRecords(ReadRecords(tag)), lclNew(tag.empty()) {
        FindStarts();
    }

    // What the tag is to hold; empty when the page had none and got none.
    std::string Bytes() const;

    // False for data of another integer size: it is kept, nothing of it is shown, nothing is added.
    bool Editable() const { return lclRecords.Readable(); }

    // Marks in the order in which they lie on one another, the lowest first; unknown ones count.
    std::size_t Count() const { return lclStarts.size(); }
    Mark At(std::size_t index) const;

    // Those that change throw platform::Error when the text is too long, or holds characters that
    // no character set of the mark's font has, or when the data is not editable; nothing is changed
    // then. `now` counts seconds since 1970 in UTC.
    std::size_t Add(const Mark& mark, std::uint32_t now); // on top of all others
    // The mark's kind, group and index stay.
    void Change(std::size_t index, const Mark& mark, std::uint32_t now);
    void Remove(std::size_t index);

    // The topmost visible mark there. Lines and borders are met at `reach` pixels from them.
    std::optional<std::size_t> HitTest(Point at, double reach) const;

    // Follows pixels that were turned; `width` and `height` are those of the page before.
    void Rotate(Turn turn, std::int32_t width, std::int32_t height);

private:
    void FindStarts();
    std::size_t StartOf(std::size_t index) const;
    std::size_t EndOf(std::size_t start) const;
    Record* Block(std::size_t start, std::string_view name);
    const Record* Block(std::size_t start, std::string_view name) const;
    Record* DefaultBlock(std::string_view name);
    void PutBlock(std::size_t start, std::string_view name, std::string data);
    bool ChangeText(std::size_t start, const Mark& before, Mark& after);
    std::string TakeIndex();
    std::string GroupForNew(const Mark& mark);
    void MustBeEditable() const;

    Records lclRecords;
    std::vector<std::size_t> lclStarts; // of the records that begin a mark
    bool lclNew;
};

} // namespace kavidex::imaging::annotations
