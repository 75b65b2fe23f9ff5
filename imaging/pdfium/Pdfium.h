// Pages of PDF files through PDFium, which is loaded when it is first needed and may be absent. It
// bears one thread at a time: every call waits for the one before.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/PageBitmap.h"
#include "imaging/pdf/PdfWriter.h"

namespace kavidex::imaging {

struct PdfiumCalls;

enum class PdfOpened { Yes, NotHere, NeedsPassword, Damaged };

class PdfFile {
public:
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    int Count() const { return lclCount; }
    struct Size {
        double width = 0, height = 0; // in points; 0 for a page that cannot be read
    };
    Size SizeOf(int page) const; // from 1

    // The whole page on white, at that size. Throws platform::Error when it cannot be drawn, or
    // when the picture would be larger than 256 MiB.
    PageBitmap Render(int page, std::uint32_t width, std::uint32_t height) const;

private:
    friend class Pdfium;
    PdfFile(const PdfiumCalls& calls, std::string bytes, void* document);

    const PdfiumCalls& lclCalls;
    std::string lclBytes; // PDFium reads from them as long as the document is open
    void* lclDocument;
    int lclCount;
};

class Pdfium {
public:
    // The library at that full path; a process loads one, and keeps it. Where there is none, every
    // answer says so.
    explicit Pdfium(std::string_view path);

    bool IsHere() const { return lclCalls != nullptr; }

    struct Opening {
        PdfOpened outcome = PdfOpened::NotHere;
        std::unique_ptr<PdfFile> file; // when the outcome is Yes
    };
    // `bytes` are the whole file, so that names of any characters work.
    Opening Open(std::string bytes, std::string_view password = {}) const;

    // All pages of these PDF files, one after the other, as one file. Their contents are copied as
    // they are. `failed` gets the place, from 0, of one that cannot be opened, and nothing is
    // written.
    PdfOpened Merge(const std::vector<std::string>& files, const ByteSink& sink,
                    std::size_t& failed) const;

private:
    const PdfiumCalls* lclCalls;
};

// Beside the module that holds this code; a file of that name may be absent there.
std::string PdfiumPath();

} // namespace kavidex::imaging
