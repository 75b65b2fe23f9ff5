#include "controls/print/TiffPages.h"

#include <utility>

#include "controls/print/MarkedPage.h"

namespace kavidex::controls {

bool TiffPages::IsWide(int page) {
    const auto facts = lclFile.Facts(page);
    const bool known = facts.xDpi > 0 && facts.yDpi > 0;
    return known ? facts.width * facts.yDpi > facts.height * facts.xDpi
                 : facts.width > facts.height;
}

imaging::PageBitmap TiffPages::Page(int page, const platform::PrintPaper& paper,
                                    std::string& damage) {
    auto bitmap = lclFile.Decode(page, &damage);
    const auto bytes = lclTexts ? lclFile.Marks(page) : std::nullopt;
    if (!bytes) return bitmap;
    return MarkedForPaper(std::move(bitmap), imaging::annotations::Annotations(*bytes), paper,
                          *lclTexts);
}

} // namespace kavidex::controls
