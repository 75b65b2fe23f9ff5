// Pages of PDF files through PDFium. Where the setup could not fetch it, the tests say so.
#include <filesystem>

#include <gtest/gtest.h>

#include "imaging/pdf/PdfDocument.h"
#include "imaging/pdfium/Pdfium.h"
#include "platform/Error.h"

namespace {

using namespace kavidex::imaging;

std::string TextFile(const std::string& text) {
    std::string bytes;
    PdfDocument document([&](std::string_view part) { bytes += part; });
    document.AddText(text, std::string(5000, 'W'));
    document.Finish("");
    return bytes;
}

TEST(Pdfium, SaysThatItIsNotHere) {
    const Pdfium absent("C:\\nowhere\\pdfium.dll");
    EXPECT_FALSE(absent.IsHere());
    EXPECT_EQ(absent.Open(TextFile("x")).outcome, PdfOpened::NotHere);
    std::size_t failed = 0;
    EXPECT_EQ(absent.Merge(
                  {TextFile("x")}, [](std::string_view) { FAIL(); }, failed),
              PdfOpened::NotHere);
    EXPECT_NE(PdfiumPath().find("pdfium"), std::string::npos);
}

class PdfiumHere : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(KAVIDEX_PDFIUM)) GTEST_SKIP() << "PDFium could not be fetched";
        ASSERT_TRUE(pdfium.IsHere());
    }
    Pdfium pdfium{KAVIDEX_PDFIUM};
};

TEST_F(PdfiumHere, DrawsPagesAtASize) {
    const auto opened = pdfium.Open(TextFile("Kop"));
    ASSERT_EQ(opened.outcome, PdfOpened::Yes);
    ASSERT_EQ(opened.file->Count(), 3);
    EXPECT_NEAR(opened.file->SizeOf(2).height, 841.89, 0.01);
    EXPECT_EQ(opened.file->SizeOf(4).width, 0);
    const PageBitmap page = opened.file->Render(1, 200, 283);
    ASSERT_EQ(page.format, PixelFormat::rgb24);
    EXPECT_EQ(page.Row(0)[0], 255);
    std::size_t dark = 0;
    for (const std::uint8_t value : page.bytes) dark += value < 240;
    EXPECT_GT(dark, 10000u);
    EXPECT_LT(dark, page.bytes.size() / 2);
    EXPECT_THROW(opened.file->Render(4, 10, 10), kavidex::platform::Error);
    EXPECT_THROW(opened.file->Render(1, 30000, 30000), kavidex::platform::Error);
}

TEST_F(PdfiumHere, TellsADamagedFileFromALockedOne) {
    EXPECT_EQ(pdfium.Open("").outcome, PdfOpened::Damaged);
    EXPECT_EQ(pdfium.Open("no PDF at all").outcome, PdfOpened::Damaged);
    const std::string whole = TextFile("x");
    EXPECT_EQ(pdfium.Open(whole.substr(0, 30)).outcome, PdfOpened::Damaged);
}

TEST_F(PdfiumHere, PutsFilesTogether) {
    std::string whole;
    std::size_t failed = 9;
    const auto take = [&](std::string_view bytes) { whole += bytes; };
    ASSERT_EQ(pdfium.Merge({TextFile("een"), TextFile("twee")}, take, failed), PdfOpened::Yes);
    const auto opened = pdfium.Open(whole);
    ASSERT_EQ(opened.outcome, PdfOpened::Yes);
    EXPECT_EQ(opened.file->Count(), 6);

    whole.clear();
    EXPECT_EQ(pdfium.Merge({TextFile("een"), "broken"}, take, failed), PdfOpened::Damaged);
    EXPECT_EQ(failed, 1u);
    EXPECT_EQ(whole, "");
    EXPECT_THROW(
        pdfium.Merge(
            {TextFile("een")},
            [](std::string_view) { throw kavidex::platform::Error(1, "The disk is full"); },
            failed),
        kavidex::platform::Error);
}

} // namespace
