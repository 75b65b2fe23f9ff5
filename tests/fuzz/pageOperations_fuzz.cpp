// Pages of any bytes are copied and turned, or refused; what was written has the planned pages.
#include <cstdlib>

#include "imaging/PageFile.h"
#include "imaging/PlanWriter.h"
#include "platform/Error.h"
#include "tests/fuzz/MemoryFiles.h"

using namespace kavidex;

namespace {

void CheckWritten(std::string bytes, std::size_t pages) {
    imaging::PageFile file(std::make_unique<imaging::MemoryReader>(std::move(bytes)), "written");
    if (static_cast<std::size_t>(file.Count()) != pages) std::abort();
}

bool IsSmall(imaging::PageFile& file, int page) {
    const imaging::PageFacts facts = file.Facts(page);
    return std::uint64_t{facts.width} * facts.height <= 100'000;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    const std::size_t half = data[0] % 2 ? size : size / 2;
    const std::string files[] = {fuzz::MakeTiff(data + 1, half - 1),
                                 fuzz::MakeTiff(data + size - half, half)};
    const auto open = [&](const std::string& path) {
        return std::make_unique<imaging::MemoryReader>(files[path == "b"]);
    };
    std::vector<imaging::PlannedPage> plan;
    for (const char* path : {"a", "b"}) {
        try {
            imaging::PageFile file(open(path), path);
            const int count = file.Count();
            for (int page = 1; page <= count && page <= 8; ++page) {
                imaging::PlannedPage next;
                next.path = path;
                next.page = page;
                if (data[0] & 2 && IsSmall(file, page))
                    next.turn = static_cast<imaging::Turn>(data[0] >> 2 & 3);
                if (data[0] & 16) next.marks = std::string("marks");
                plan.push_back(next);
            }
        } catch (const platform::Error&) {
        }
    }
    std::string written;
    imaging::PlanWriter writer(open);
    const auto make = [&] { return std::make_unique<fuzz::MemoryWriter>(written); };
    // All of them, and each alone.
    try {
        writer.Write(plan, make);
        CheckWritten(written, plan.size());
    } catch (const platform::Error&) {
        for (const imaging::PlannedPage& page : plan) {
            try {
                writer.Write({page}, make);
            } catch (const platform::Error&) {
                continue;
            }
            CheckWritten(written, 1);
        }
    }
    return 0;
}
