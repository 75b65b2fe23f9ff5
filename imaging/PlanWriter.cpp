#include "imaging/PlanWriter.h"

#include <utility>

#include "imaging/MemoryReader.h"
#include "imaging/annotations/Annotations.h"
#include "imaging/tiff/Reencoder.h"
#include "imaging/tiff/Samples.h"
#include "imaging/tiff/Writer.h"
#include "platform/Error.h"

namespace kavidex::imaging {

namespace {

using tiff::Directory;
using tiff::Entry;
using tiff::NewValue;
using tiff::Order;
using tiff::OrientationOf;
using tiff::PageToCopy;
using tiff::Source;
namespace tags = tiff::tags;

struct NeedsLargeOffsets {};

// The value of another tag of the page; of count 0 where that is absent, or of no known type.
NewValue ValueOf(Source& source, const Directory& page, std::uint16_t tag, Order order) {
    const Entry* entry = page.Find(tag);
    if (!entry) return {};
    if (tiff::SizeOf(entry->type).size == 0) return {};
    NewValue value{entry->type, entry->count, source.Value(*entry)};
    if (source.Form().order != order)
        tiff::SwapUnits(value.bytes.data(), value.bytes.size(), tiff::SizeOf(entry->type).unit);
    return value;
}

// Nothing where it would lose something, also of what a damaged page still has.
std::optional<std::string> EncodedAnew(Source& source, const Directory& page,
                                       Orientation orientation, Order order) {
    try {
        return tiff::Reencoded(source, page, orientation, order);
    } catch (const platform::Error& error) {
        if (error.Number() != platform::errors::invalidData) throw;
        return {};
    }
}

} // namespace

PlanWriter::PlanWriter(Open open) : lclOpen(std::move(open)) {}

PlanWriter::~PlanWriter() = default;

Source& PlanWriter::SourceOf(const std::string& path) {
    constexpr std::size_t mostOpen = 16;
    auto found = lclSources.find(path);
    if (found == lclSources.end()) {
        if (lclSources.size() == mostOpen) lclSources.clear();
        found = lclSources.emplace(path, std::make_unique<Source>(lclOpen(path), path)).first;
    }
    return *found->second;
}

// A page whose picture cannot be encoded anew without loss gets another orientation instead.
void PlanWriter::Turned(const PlannedPage& planned, PageToCopy& page, Order order) {
    Source& source = *page.source;
    const Orientation before = OrientationOf(source, page.page);
    const Orientation after = imaging::Turned(before, planned.turn);
    const bool turns = planned.turn != Turn::None;
    std::optional<std::string> encoded = EncodedAnew(source, page.page, turns ? after : 1, order);
    if (!encoded) {
        if (tiff::NeedsReencoding(source, page.page, order))
            source.Damaged("a page cannot be joined with pages of another byte order");
        page.overrides[tags::orientation] =
            tiff::ShortsValue({static_cast<std::uint16_t>(after)}, order);
        return;
    }
    lclEncoded = std::make_unique<Source>(std::make_unique<MemoryReader>(std::move(*encoded)),
                                          source.Name());
    page.data = lclEncoded.get();
    page.dataPage = lclEncoded->Page(1);
    if (!turns) return;
    if (page.page.Find(tags::orientation))
        page.overrides[tags::orientation] = tiff::ShortsValue({1}, order);
    if (SwapsSides(after)) {
        page.overrides[tags::xResolution] = ValueOf(source, page.page, tags::yResolution, order);
        page.overrides[tags::yResolution] = ValueOf(source, page.page, tags::xResolution, order);
    }
}

void PlanWriter::Marked(const PlannedPage& planned, PageToCopy& page) {
    const Entry* entry = page.page.Find(tags::annotations);
    const bool turns = planned.turn != Turn::None;
    if (!planned.marks && !(entry && turns)) return;
    std::string marks = planned.marks ? *planned.marks : page.source->Value(*entry);
    if (turns && !marks.empty()) {
        const tiff::Samples samples = tiff::ReadSamples(*page.source, page.page);
        const bool swaps = SwapsSides(OrientationOf(*page.source, page.page));
        annotations::Annotations turned(marks);
        turned.Rotate(planned.turn,
                      static_cast<std::int32_t>(swaps ? samples.height : samples.width),
                      static_cast<std::int32_t>(swaps ? samples.width : samples.height));
        marks = turned.Bytes();
    }
    page.overrides[tags::annotations] = tiff::BytesValue(std::move(marks));
}

PageToCopy PlanWriter::Prepare(const PlannedPage& planned, std::size_t index, std::size_t count,
                               const tiff::Layout& layout) {
    PageToCopy page;
    Source& source = SourceOf(planned.path);
    if (source.Form().big && !layout.big) throw NeedsLargeOffsets();
    page.source = &source;
    page.page = source.Page(planned.page);
    const Entry* number = page.page.Find(tags::pageNumber);
    if (number && number->count == 2 && count <= 0xFFFF)
        page.overrides[tags::pageNumber] = tiff::ShortsValue(
            {static_cast<std::uint16_t>(index), static_cast<std::uint16_t>(count)}, layout.order);
    Marked(planned, page);
    if (planned.turn != Turn::None || tiff::NeedsReencoding(source, page.page, layout.order))
        Turned(planned, page, layout.order);
    return page;
}

std::unique_ptr<platform::FileWriter> PlanWriter::Write(const std::vector<PlannedPage>& pages,
                                                        const Make& make) {
    if (pages.empty())
        throw platform::Error(platform::errors::invalidArgument,
                              "A document needs at least one page");
    tiff::Layout layout = SourceOf(pages.front().path).Form();
    for (;;) {
        std::unique_ptr<platform::FileWriter> file = make();
        try {
            if (tiff::WritePages(*file, layout, pages.size(), [&](std::size_t index) {
                    return Prepare(pages[index], index, pages.size(), layout);
                }))
                return file;
        } catch (const NeedsLargeOffsets&) {
        }
        layout.big = true;
    }
}

} // namespace kavidex::imaging
