#include "imaging/tiff/Writer.h"

#include <algorithm>

#include "platform/FileStreams.h"

namespace kavidex::imaging::tiff {

namespace {

constexpr std::size_t blockSize = std::size_t{256} * 1024;

// Gathers small pieces into large writes.
class Output {
public:
    explicit Output(platform::FileWriter& file) : lclFile(file) { lclBlock.reserve(blockSize); }

    void Add(std::string_view bytes) {
        if (lclBlock.size() + bytes.size() > blockSize) Flush();
        if (bytes.size() >= blockSize)
            lclFile.Write(bytes);
        else
            lclBlock.append(bytes);
    }
    // Room for `size` bytes, at most a block, that the caller fills.
    char* Room(std::size_t size) {
        if (lclBlock.size() + size > blockSize) Flush();
        lclBlock.resize(lclBlock.size() + size);
        return lclBlock.data() + lclBlock.size() - size;
    }
    void Flush() {
        if (!lclBlock.empty()) lclFile.Write(lclBlock);
        lclBlock.clear();
    }

private:
    platform::FileWriter& lclFile;
    std::string lclBlock;
};

void Copy(Output& output, const Chunk& chunk) {
    // A multiple of every unit, so that none is torn.
    constexpr std::uint64_t step = blockSize / 2 / 24 * 24;
    for (std::uint64_t done = 0; done < chunk.size;) {
        const auto part = static_cast<std::size_t>(std::min(step, chunk.size - done));
        char* room = output.Room(part);
        chunk.source->Read(chunk.from + done, room, part);
        if (chunk.swapUnit > 1) SwapUnits(room, part, chunk.swapUnit);
        done += part;
    }
}

} // namespace

bool WritePages(platform::FileWriter& file, const Layout& layout, std::size_t count,
                const NextPage& page) {
    Output output(file);
    std::string header = layout.order == Order::little ? "II" : "MM";
    AppendNumber(header, layout.big ? 43 : 42, 2, layout.order);
    if (layout.big) AppendNumber(header, 8, 2, layout.order);
    if (layout.big) AppendNumber(header, 0, 2, layout.order);
    AppendNumber(header, layout.HeaderSize(), layout.OffsetSize(), layout.order);
    output.Add(header);

    std::uint64_t at = layout.HeaderSize();
    for (std::size_t index = 0; index < count; ++index) {
        const PageToCopy next = page(index);
        const PageCopy copy = LayOut(next, layout, at, index + 1 == count);
        if (!layout.big && copy.end > 0xFFFFFFFFu) return false;
        for (const Chunk& chunk : copy.chunks) {
            if (chunk.source) {
                chunk.source->Take(chunk.size);
                Copy(output, chunk);
            } else {
                std::string made = copy.made[chunk.made];
                made.resize(static_cast<std::size_t>(chunk.size), '\0');
                output.Add(made);
            }
            if (chunk.size % 2 != 0) output.Add(std::string_view("\0", 1));
        }
        at = copy.end;
    }
    output.Flush();
    return true;
}

} // namespace kavidex::imaging::tiff
