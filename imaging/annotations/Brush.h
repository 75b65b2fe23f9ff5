// Colour put onto a picture through a mask, so that a line that crosses itself is marked once.
#pragma once

#include <cstdint>
#include <vector>

#include "imaging/PageBitmap.h"
#include "imaging/annotations/Mark.h"

namespace kavidex::imaging::annotations {

struct Place {
    double x = 0, y = 0;
};

// Edges in elements of the picture; right and bottom lie outside.
struct Area {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool IsEmpty() const { return left >= right || top >= bottom; }
};

class Mask {
public:
    // Of the smallest area of the picture that holds that box.
    Mask(const PageBitmap& picture, double left, double top, double right, double bottom);

    const Area& Bounds() const { return lclArea; }
    void Cover(int x, int y, std::uint8_t value); // the most that was ever told counts
    void Clear(int x, int y);
    std::uint8_t At(int x, int y) const { return lclValues[Index(x, y)]; }

    void Rectangle(double left, double top, double right, double bottom);
    // A round pen of these half widths along the path.
    void Line(const std::vector<Place>& path, double halfX, double halfY);
    void Polygon(const std::vector<Place>& corners); // inside by crossings

private:
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y - lclArea.top) * (lclArea.right - lclArea.left) +
               (x - lclArea.left);
    }

    Area lclArea;
    std::vector<std::uint8_t> lclValues;
};

enum class Mixing { Cover, Multiply };

void Blend(PageBitmap& picture, const Mask& mask, const Colour& colour, Mixing mixing);
void BlendElement(PageBitmap& picture, int x, int y, const Colour& colour, std::uint8_t coverage,
                  Mixing mixing);

} // namespace kavidex::imaging::annotations
