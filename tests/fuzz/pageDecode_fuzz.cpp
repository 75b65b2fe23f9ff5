// Pages of any bytes are shown or refused with a message; nothing else happens.
#include "imaging/PageFile.h"
#include "platform/Error.h"
#include "tests/fuzz/MemoryFiles.h"

using namespace kavidex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        imaging::PageFile file(std::make_unique<imaging::MemoryReader>(fuzz::MakeTiff(data, size)),
                               "fuzz.tif");
        const int count = file.Count();
        for (int page = 1; page <= count && page <= 3; ++page) {
            try {
                file.Fingerprint(page);
                const imaging::PageFacts facts = file.Facts(page);
                // Larger ones are as good, and slow here.
                if (std::uint64_t{facts.width} * facts.height > 1'000'000) continue;
                std::string damage;
                const imaging::PageBitmap bitmap = file.Decode(page, &damage);
                if (bitmap.width != facts.width || bitmap.height != facts.height) __builtin_trap();
                file.DecodeScaled(page, 30, 20, &damage);
                file.Marks(page);
            } catch (const platform::Error&) {
            }
        }
    } catch (const platform::Error&) {
    }
    return 0;
}
