// Letters by the system's fonts.
#include <gtest/gtest.h>

#include "imaging/annotations/win32/GdiTextPainter.h"

namespace {

using namespace kavidex::imaging::annotations;

TEST(GdiTextPainter, DrawsLinesOfAnyScriptAndWidth) {
    const auto painter = MakeGdiTextPainter();
    TextLook look;
    look.face = "Arial";
    look.height = 40;
    const double width = painter->Width(look, "Tekst"), height = painter->LineHeight(look);
    EXPECT_GT(height, 40);
    EXPECT_LT(height, 60);
    EXPECT_GT(width, 80);

    const Coverage line = painter->Line(look, "Tekst é ж");
    EXPECT_EQ(line.height, static_cast<std::uint32_t>(height));
    EXPECT_GE(line.width, painter->Width(look, "Tekst é ж"));
    std::size_t full = 0, soft = 0, first = line.width;
    for (std::uint32_t y = 0; y < line.height; ++y)
        for (std::uint32_t x = 0; x < line.width; ++x)
            if (const auto value = line.At(x, y)) {
                (value == 255 ? full : soft) += 1;
                first = std::min<std::size_t>(first, x);
            }
    EXPECT_GT(full, 300u);
    EXPECT_LT(first, 5u);
    EXPECT_LT(full + soft, line.values.size() / 2);

    look.stretch = 2;
    EXPECT_NEAR(painter->Width(look, "Tekst"), 2 * width, width / 4);
    look.stretch = 1;
    look.bold = true;
    EXPECT_GT(painter->Width(look, "Tekst"), width);
    EXPECT_TRUE(painter->Line(look, "").values.empty() || painter->Width(look, "") == 0);
}

} // namespace
