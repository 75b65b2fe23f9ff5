#include "imaging/annotations/Brush.h"

#include <algorithm>
#include <cmath>

namespace kavidex::imaging::annotations {

namespace {

int Clamped(double value, std::uint32_t most) {
    return static_cast<int>(std::clamp(value, 0.0, static_cast<double>(most)));
}

std::uint8_t Mixed(unsigned under, unsigned colour, unsigned coverage, Mixing mixing) {
    const unsigned full = mixing == Mixing::Multiply ? under * colour / 255 : colour;
    return static_cast<std::uint8_t>((under * (255 - coverage) + full * coverage + 127) / 255);
}

unsigned Luminance(const Colour& colour) {
    return (colour.red * 299u + colour.green * 587u + colour.blue * 114u) / 1000;
}

} // namespace

Mask::Mask(const PageBitmap& picture, double left, double top, double right, double bottom)
    : lclArea{Clamped(std::floor(left), picture.width), Clamped(std::floor(top), picture.height),
              Clamped(std::ceil(right), picture.width),
              Clamped(std::ceil(bottom), picture.height)} {
    if (!lclArea.IsEmpty())
        lclValues.resize(static_cast<std::size_t>(lclArea.right - lclArea.left) *
                         (lclArea.bottom - lclArea.top));
}

void Mask::Cover(int x, int y, std::uint8_t value) {
    std::uint8_t& old = lclValues[Index(x, y)];
    old = std::max(old, value);
}

void Mask::Clear(int x, int y) { lclValues[Index(x, y)] = 0; }

void Mask::Rectangle(double left, double top, double right, double bottom) {
    const auto edge = [](double value, int low, int high) {
        return static_cast<int>(
            std::clamp<double>(std::lround(std::clamp(value, -1e6, 1e6)), low, high));
    };
    const int x1 = edge(left, lclArea.left, lclArea.right),
              x2 = edge(right, lclArea.left, lclArea.right),
              y1 = edge(top, lclArea.top, lclArea.bottom),
              y2 = edge(bottom, lclArea.top, lclArea.bottom);
    for (int y = y1; y < y2; ++y)
        for (int x = x1; x < x2; ++x) Cover(x, y, 255);
}

void Mask::Line(const std::vector<Place>& path, double halfX, double halfY) {
    // In units of the pen, whose edge is the circle around the path.
    const double soft = std::min(halfX, halfY);
    for (std::size_t i = 0; i < path.size(); ++i) {
        const Place a = path[i], b = path[std::min(i + 1, path.size() - 1)];
        if (i + 1 == path.size() && path.size() > 1) break;
        const int x1 = std::max<double>(lclArea.left, std::floor(std::min(a.x, b.x) - halfX - 1)),
                  x2 = std::min<double>(lclArea.right, std::ceil(std::max(a.x, b.x) + halfX + 1)),
                  y1 = std::max<double>(lclArea.top, std::floor(std::min(a.y, b.y) - halfY - 1)),
                  y2 = std::min<double>(lclArea.bottom, std::ceil(std::max(a.y, b.y) + halfY + 1));
        const double dx = (b.x - a.x) / halfX, dy = (b.y - a.y) / halfY, square = dx * dx + dy * dy;
        for (int y = y1; y < y2; ++y)
            for (int x = x1; x < x2; ++x) {
                const double px = (x + 0.5 - a.x) / halfX, py = (y + 0.5 - a.y) / halfY;
                const double along =
                    square == 0 ? 0 : std::clamp((px * dx + py * dy) / square, 0.0, 1.0);
                const double distance = std::hypot(px - along * dx, py - along * dy);
                const double covered = std::clamp((1 - distance) * soft + 0.5, 0.0, 1.0);
                if (covered > 0) Cover(x, y, static_cast<std::uint8_t>(covered * 255 + 0.5));
            }
    }
}

void Mask::Polygon(const std::vector<Place>& corners) {
    std::vector<double> crossings;
    for (int y = lclArea.top; y < lclArea.bottom; ++y) {
        crossings.clear();
        const double middle = y + 0.5;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const Place a = corners[i], b = corners[(i + 1) % corners.size()];
            if ((a.y <= middle) != (b.y <= middle))
                crossings.push_back(a.x + (middle - a.y) / (b.y - a.y) * (b.x - a.x));
        }
        std::sort(crossings.begin(), crossings.end());
        for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
            const int x1 = std::max<double>(lclArea.left, std::ceil(crossings[i] - 0.5)),
                      x2 = std::min<double>(lclArea.right, std::ceil(crossings[i + 1] - 0.5));
            for (int x = x1; x < x2; ++x) Cover(x, y, 255);
        }
    }
}

void BlendElement(PageBitmap& picture, int x, int y, const Colour& colour, std::uint8_t coverage,
                  Mixing mixing) {
    std::uint8_t* row = picture.Row(static_cast<std::uint32_t>(y));
    if (picture.format == PixelFormat::rgb24) {
        std::uint8_t* at = row + 3 * static_cast<std::size_t>(x);
        at[0] = Mixed(at[0], colour.red, coverage, mixing);
        at[1] = Mixed(at[1], colour.green, coverage, mixing);
        at[2] = Mixed(at[2], colour.blue, coverage, mixing);
    } else if (picture.format == PixelFormat::grey8) {
        row[x] = Mixed(row[x], Luminance(colour), coverage, mixing);
    } else {
        const auto bit = static_cast<std::uint8_t>(0x80 >> x % 8);
        const unsigned under = row[x / 8] & bit ? 255 : 0;
        if (Mixed(under, Luminance(colour), coverage, mixing) >= 128)
            row[x / 8] |= bit;
        else
            row[x / 8] &= static_cast<std::uint8_t>(~bit);
    }
}

void Blend(PageBitmap& picture, const Mask& mask, const Colour& colour, Mixing mixing) {
    const Area& area = mask.Bounds();
    if (area.IsEmpty()) return;
    for (int y = area.top; y < area.bottom; ++y)
        for (int x = area.left; x < area.right; ++x)
            if (const std::uint8_t coverage = mask.At(x, y))
                BlendElement(picture, x, y, colour, coverage, mixing);
}

} // namespace kavidex::imaging::annotations
