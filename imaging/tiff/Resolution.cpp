#include "imaging/tiff/Resolution.h"

#include "platform/Error.h"

namespace kavidex::imaging::tiff {

namespace {

Resolution Told(Source& source, const Directory& page) {
    constexpr std::uint64_t centimetres = 3;
    const double unit = source.Number(page, tags::resolutionUnit, 2) == centimetres ? 2.54 : 1;
    const Resolution dpi{source.Rational(page, tags::xResolution) * unit,
                         source.Rational(page, tags::yResolution) * unit};
    // Beyond that it is a proportion only, or nonsense.
    const auto sensible = [](double value) { return value >= 10 && value <= 100000; };
    return sensible(dpi.x) && sensible(dpi.y) ? dpi : Resolution{};
}

} // namespace

// A page is worth seeing also where this cannot be read.
Resolution ResolutionOf(Source& source, const Directory& page) {
    try {
        return Told(source, page);
    } catch (const platform::Error& error) {
        if (error.Number() != platform::errors::invalidData) throw;
        return {};
    }
}

} // namespace kavidex::imaging::tiff
