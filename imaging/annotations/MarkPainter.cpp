#include "imaging/annotations/MarkPainter.h"

#include <algorithm>
#include <cmath>

#include "imaging/WrapText.h"
#include "imaging/annotations/Brush.h"
#include "imaging/annotations/Dib.h"
#include "imaging/annotations/TextFrame.h"

namespace kavidex::imaging::annotations {

namespace {

struct Edges {
    double left, top, right, bottom;
};

class Painting {
public:
    Painting(PageBitmap& picture, const Mark& mark, const MarkView& view, TextPainter& texts)
        : lclPicture(picture), lclMark(mark), lclView(view), lclTexts(texts) {
        const Box box = mark.bounds.Normal();
        lclEdges = {X(box.left), Y(box.top), X(box.right), Y(box.bottom)};
    }

    void Paint() {
        if (lclMark.HasImage())
            Image();
        else if (lclMark.HasText())
            Text();
        else if (lclMark.HasPoints())
            Points();
        else
            Rectangle();
    }

private:
    double X(double x) const { return lclView.left + x * lclView.zoomX; }
    double Y(double y) const { return lclView.top + y * lclView.zoomY; }
    double PenX() const { return std::max(1.0, lclMark.lineWidth * lclView.zoomX); }
    double PenY() const { return std::max(1.0, lclMark.lineWidth * lclView.zoomY); }
    Mixing Way() const { return lclMark.highlighting ? Mixing::Multiply : Mixing::Cover; }

    void Rectangle() {
        Mask mask(lclPicture, lclEdges.left, lclEdges.top, lclEdges.right + 1, lclEdges.bottom + 1);
        if (mask.Bounds().IsEmpty()) return;
        if (lclMark.type == MarkType::FilledRectangle)
            mask.Rectangle(lclEdges.left, lclEdges.top, lclEdges.right, lclEdges.bottom);
        else
            Border(mask, PenX(), PenY());
        Blend(lclPicture, mask, lclMark.colour, Way());
    }

    // Inside the bounds.
    void Border(Mask& mask, double x, double y) const {
        const Edges& e = lclEdges;
        mask.Rectangle(e.left, e.top, e.right, std::min(e.bottom, e.top + y));
        mask.Rectangle(e.left, std::max(e.top, e.bottom - y), e.right, e.bottom);
        mask.Rectangle(e.left, e.top, std::min(e.right, e.left + x), e.bottom);
        mask.Rectangle(std::max(e.left, e.right - x), e.top, e.right, e.bottom);
    }

    void Points() {
        std::vector<Place> path;
        Edges around{1e9, 1e9, -1e9, -1e9};
        for (const Point& point : lclMark.points) {
            const Place place{X(double(lclMark.bounds.left) + point.x),
                              Y(double(lclMark.bounds.top) + point.y)};
            path.push_back(place);
            around = {std::min(around.left, place.x), std::min(around.top, place.y),
                      std::max(around.right, place.x), std::max(around.bottom, place.y)};
        }
        if (path.empty()) return;
        const double halfX = PenX() / 2, halfY = PenY() / 2;
        Mask mask(lclPicture, around.left - halfX - 1, around.top - halfY - 1,
                  around.right + halfX + 1, around.bottom + halfY + 1);
        if (mask.Bounds().IsEmpty()) return;
        if (lclMark.type == MarkType::HollowPolygon) path.push_back(path.front());
        if (lclMark.type == MarkType::FilledPolygon)
            mask.Polygon(path);
        else
            mask.Line(path, halfX, halfY);
        Blend(lclPicture, mask, lclMark.colour, Way());
    }

    void Paper() {
        Mask paper(lclPicture, lclEdges.left, lclEdges.top, lclEdges.right + 1,
                   lclEdges.bottom + 1);
        if (paper.Bounds().IsEmpty()) return;
        Mask border = paper;
        paper.Rectangle(lclEdges.left, lclEdges.top, lclEdges.right, lclEdges.bottom);
        Border(border, std::max(1.0, lclView.zoomX), std::max(1.0, lclView.zoomY));
        Blend(lclPicture, paper, lclMark.colour, Way());
        Blend(lclPicture, border, Colour{}, Mixing::Cover);
    }

    void Text() {
        const bool note = lclMark.type == MarkType::Note;
        if (note) Paper();
        const TextFrame frame = FrameOf(lclMark);
        // Elements of the picture an element of the page, along the letters' height and the line.
        const double across = frame.alongX ? lclView.zoomY : lclView.zoomX * lclView.resolutions;
        const double along = frame.alongX ? lclView.zoomX * lclView.resolutions : lclView.zoomY;
        TextLook look;
        look.face = lclMark.font.face.empty() ? "Arial" : lclMark.font.face;
        look.bold = lclMark.font.weight >= 600;
        look.italic = lclMark.font.italic;
        look.underline = lclMark.font.underline;
        look.strikeOut = lclMark.font.strikeOut;
        look.height = lclMark.TextPixels() * across;
        look.stretch = along / across;
        constexpr double largest = 2000; // elements; hostile sizes end here
        if (!(look.height >= 1 && look.height <= largest && look.stretch < 100)) return;
        const double room = frame.length * (frame.alongX ? lclView.zoomX : lclView.zoomY);
        const auto lines = WrapText(
            lclMark.text, room, [&](std::string_view part) { return lclTexts.Width(look, part); });
        const double step = lclTexts.LineHeight(look);
        double down = 0;
        for (const std::string& line : lines) {
            if (!line.empty() && !PutLine(frame, lclTexts.Line(look, line), down, note)) break;
            down += step;
        }
    }

    // False when it, and so all below it, lies outside.
    bool PutLine(const TextFrame& frame, const Coverage& line, double down, bool clipped) {
        constexpr int along[4][2] = {{1, 0}, {0, -1}, {-1, 0}, {0, 1}};
        const int ax = along[frame.quarters][0], ay = along[frame.quarters][1];
        // What lies below a letter: a quarter to the right of where the line runs.
        const int dx = -ay, dy = ax;
        const int x0 = static_cast<int>(std::lround(std::clamp(X(frame.x) + dx * down, -1e6, 1e6))),
                  y0 = static_cast<int>(std::lround(std::clamp(Y(frame.y) + dy * down, -1e6, 1e6)));
        const Colour& colour = clipped ? lclMark.textColour : lclMark.colour;
        const Edges limit =
            clipped ? lclEdges : Edges{0, 0, double(lclPicture.width), double(lclPicture.height)};
        for (std::uint32_t v = 0; v < line.height; ++v)
            for (std::uint32_t u = 0; u < line.width; ++u) {
                const std::uint8_t coverage = line.At(u, v);
                if (coverage == 0) continue;
                const int iu = static_cast<int>(u), iv = static_cast<int>(v);
                const int x = x0 + ax * iu + dx * iv - (ax + dx < 0 ? 1 : 0),
                          y = y0 + ay * iu + dy * iv - (ay + dy < 0 ? 1 : 0);
                const bool inside = x >= 0 && y >= 0 && x < static_cast<int>(lclPicture.width) &&
                                    y < static_cast<int>(lclPicture.height) && x >= limit.left &&
                                    x < limit.right && y >= limit.top && y < limit.bottom;
                if (inside) BlendElement(lclPicture, x, y, colour, coverage, Way());
            }
        const double farthest = dx != 0 ? lclPicture.width : lclPicture.height;
        const double at = dx != 0 ? x0 : y0, direction = dx + dy;
        return direction > 0 ? at < farthest : at > 0;
    }

    void Image() {
        const auto dib = ReadDib(lclMark.image);
        if (!dib) return; // the picture lies in a file elsewhere, or cannot be read
        const PageBitmap image = TurnedImage(*dib, lclMark.imageRotation);
        const Mask area(lclPicture, lclEdges.left, lclEdges.top, lclEdges.right, lclEdges.bottom);
        const Area& to = area.Bounds();
        if (to.IsEmpty()) return;
        const double perX = image.width / (lclEdges.right - lclEdges.left),
                     perY = image.height / (lclEdges.bottom - lclEdges.top);
        const auto nearest = [](double at, std::uint32_t count) {
            return static_cast<std::uint32_t>(std::clamp(at, 0.0, count - 1.0));
        };
        for (int y = to.top; y < to.bottom; ++y) {
            const std::uint8_t* row =
                image.Row(nearest((y + 0.5 - lclEdges.top) * perY, image.height));
            for (int x = to.left; x < to.right; ++x) {
                const std::uint8_t* from =
                    row + std::size_t{3} * nearest((x + 0.5 - lclEdges.left) * perX, image.width);
                const Colour colour{from[0], from[1], from[2]};
                const bool white = colour == Colour{255, 255, 255};
                if (!(white && lclMark.transparent))
                    BlendElement(lclPicture, x, y, colour, 255, Mixing::Cover);
            }
        }
    }

    PageBitmap& lclPicture;
    const Mark& lclMark;
    const MarkView& lclView;
    TextPainter& lclTexts;
    Edges lclEdges;
};

} // namespace

void PaintMark(PageBitmap& picture, const Mark& mark, const MarkView& view, TextPainter& texts) {
    Painting(picture, mark, view, texts).Paint();
}

void PaintMarks(PageBitmap& picture, const Annotations& marks, const MarkView& view,
                TextPainter& texts) {
    for (std::size_t i = 0; i < marks.Count(); ++i) {
        const Mark mark = marks.At(i);
        if (mark.visible && mark.IsKnown()) PaintMark(picture, mark, view, texts);
    }
}

} // namespace kavidex::imaging::annotations
