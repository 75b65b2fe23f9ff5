#include "imaging/tiff/Resolution.h"

namespace kavidex::imaging::tiff {

Resolution ResolutionOf(Source& source, const Directory& page) {
    constexpr std::uint64_t centimetres = 3;
    const double unit = source.Number(page, tags::resolutionUnit, 2) == centimetres ? 2.54 : 1;
    const Resolution dpi{source.Rational(page, tags::xResolution) * unit,
                         source.Rational(page, tags::yResolution) * unit};
    // Beyond that it is a proportion only, or nonsense.
    const auto sensible = [](double value) { return value >= 10 && value <= 100000; };
    return sensible(dpi.x) && sensible(dpi.y) ? dpi : Resolution{};
}

} // namespace kavidex::imaging::tiff
