#include "controls/viewer/pages/PageSource.h"

#include <algorithm>
#include <cmath>

#include "imaging/PageFile.h"
#include "imaging/pdfium/Pdfium.h"
#include "platform/Error.h"
#include "platform/Files.h"

namespace kavidex::controls {

namespace {

using imaging::PageBitmap;

class Scan final : public PageSource {
public:
    Scan(platform::Files& files, const std::string& path) : lclFile(files, path) {}

    int Count() override { return lclFile.Count(); }
    PageShape Shape(int page) override {
        const auto facts = lclFile.Facts(page);
        return {facts.width, facts.height, facts.xDpi, facts.yDpi};
    }
    PageBitmap Picture(int page, std::uint32_t, std::uint32_t, std::string& damage) override {
        return lclFile.Decode(page, &damage);
    }
    bool DrawsAnySize() const override { return false; }
    PageBitmap Thumbnail(int page, std::uint32_t width, std::uint32_t height) override {
        return imaging::Thumbnail(lclFile, page, width, height);
    }
    bool Editable() const override { return true; }
    std::optional<std::string> Marks(int page) override { return lclFile.Marks(page); }
    std::uint64_t Fingerprint(int page) override { return lclFile.Fingerprint(page); }

private:
    imaging::PageFile lclFile;
};

// A point of paper is 1/72 inch; pages are measured in pixels of a screen's usual 96 an inch.
constexpr double screenDpi = 96;

class PdfPages final : public PageSource {
public:
    explicit PdfPages(std::unique_ptr<imaging::PdfFile> file) : lclFile(std::move(file)) {}

    int Count() override { return lclFile->Count(); }
    PageShape Shape(int page) override {
        const auto size = lclFile->SizeOf(page);
        const auto pixels = [](double points) {
            return static_cast<std::uint32_t>(
                std::clamp(std::round(points * screenDpi / 72), 1.0, 20000.0));
        };
        return {pixels(size.width), pixels(size.height), screenDpi, screenDpi};
    }
    PageBitmap Picture(int page, std::uint32_t width, std::uint32_t height, std::string&) override {
        // A quarter of what one picture may take; beyond that it is enlarged.
        constexpr double most = 16.0 * 1024 * 1024, longest = 20000;
        const double factor = std::min({1.0, std::sqrt(most / (double{1} * width * height)),
                                        longest / width, longest / height});
        const auto side = [factor](std::uint32_t length) {
            return std::max(1U, static_cast<std::uint32_t>(length * factor));
        };
        return lclFile->Render(page, side(width), side(height));
    }
    bool DrawsAnySize() const override { return true; }
    PageBitmap Thumbnail(int page, std::uint32_t width, std::uint32_t height) override {
        const auto shape = Shape(page);
        imaging::PageFacts facts;
        facts.width = shape.width;
        facts.height = shape.height;
        const auto size = imaging::FittingSize(facts, width, height);
        return lclFile->Render(page, size.width, size.height);
    }

private:
    std::unique_ptr<imaging::PdfFile> lclFile;
};

const imaging::Pdfium& ThePdfium() {
    static const imaging::Pdfium library(imaging::PdfiumPath());
    return library;
}

} // namespace

CannotDraw::CannotDraw(const std::string& path, std::string_view why)
    : Error(platform::errors::invalidData, path + ": " + std::string(why)), notice(why) {}

std::unique_ptr<PageSource> OpenScan(platform::Files& files, const std::string& path) {
    return std::make_unique<Scan>(files, path);
}

bool CanDrawPdf() { return ThePdfium().IsHere(); }

std::unique_ptr<PageSource> OpenPdf(platform::Files& files, const std::string& path) {
    constexpr std::uint64_t largest = std::uint64_t{256} * 1024 * 1024;
    if (files.Size(path) > largest)
        throw CannotDraw(path, "Dit document is te groot om hier getoond te worden.");
    auto opened = ThePdfium().Open(files.ReadAll(path));
    switch (opened.outcome) {
    case imaging::PdfOpened::Yes: break;
    case imaging::PdfOpened::NeedsPassword:
        throw CannotDraw(path, "Dit document is beveiligd met een wachtwoord en kan hier niet "
                               "getoond worden.");
    case imaging::PdfOpened::NotHere:
        throw CannotDraw(path, "Dit document kan hier niet getoond worden.");
    default: throw CannotDraw(path, damagedNotice);
    }
    if (opened.file->Count() < 1) throw CannotDraw(path, damagedNotice);
    return std::make_unique<PdfPages>(std::move(opened.file));
}

} // namespace kavidex::controls
