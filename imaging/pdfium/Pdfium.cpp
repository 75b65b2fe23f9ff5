#include "imaging/pdfium/Pdfium.h"

#include <exception>

#include "imaging/pdfium/PdfiumCalls.h"
#include "platform/Error.h"

namespace kavidex::imaging {

namespace {

using Guard = std::lock_guard<std::mutex>;

constexpr unsigned long passwordError = 4;
constexpr int withoutAlpha = 3; // the format of blue, green, red and a spare byte
constexpr int drawAnnotations = 1;
constexpr unsigned long notIncremental = 2;

// A document or page of PDFium and how it is closed.
class Closing {
public:
    Closing(void* handle, void (*close)(void*)) : lclHandle(handle), lclClose(close) {}
    ~Closing() {
        if (lclHandle) lclClose(lclHandle);
    }
    Closing(const Closing&) = delete;
    Closing& operator=(const Closing&) = delete;
    void* Get() const { return lclHandle; }

private:
    void* lclHandle;
    void (*lclClose)(void*);
};

[[noreturn]] void Refuse(int page) {
    throw platform::Error(platform::errors::fail,
                          "Page " + std::to_string(page) + " of the PDF file cannot be drawn");
}

PdfOpened OutcomeOf(const PdfiumCalls& calls) {
    return calls.GetLastError() == passwordError ? PdfOpened::NeedsPassword : PdfOpened::Damaged;
}

struct Writing : PdfiumFileWrite {
    const ByteSink* sink = nullptr;
    std::exception_ptr failure;

    // Exceptions stay on this side of the library.
    static int Write(PdfiumFileWrite* self, const void* data, unsigned long size) {
        auto& writing = *static_cast<Writing*>(self);
        try {
            (*writing.sink)({static_cast<const char*>(data), size});
            return 1;
        } catch (...) {
            writing.failure = std::current_exception();
            return 0;
        }
    }
};

} // namespace

PdfFile::PdfFile(const PdfiumCalls& calls, std::string bytes, void* document)
    : lclCalls(calls), lclBytes(std::move(bytes)), lclDocument(document),
      lclCount(calls.GetPageCount(document)) {}

PdfFile::~PdfFile() {
    const Guard guard(PdfiumLock());
    lclCalls.CloseDocument(lclDocument);
}

PdfFile::Size PdfFile::SizeOf(int page) const {
    const Guard guard(PdfiumLock());
    PdfiumSize size{};
    if (page < 1 || page > lclCount || !lclCalls.GetPageSizeByIndexF(lclDocument, page - 1, &size))
        return {};
    return {size.width, size.height};
}

PageBitmap PdfFile::Render(int page, std::uint32_t width, std::uint32_t height) const {
    constexpr std::uint64_t most = std::uint64_t{256} * 1024 * 1024;
    constexpr std::uint32_t longest = 30000;
    if (width < 1 || height < 1 || width > longest || height > longest ||
        std::uint64_t{width} * height * 4 > most || page < 1 || page > lclCount)
        Refuse(page);
    std::vector<std::uint8_t> pixels(std::size_t{width} * height * 4, 0xFF);
    {
        const Guard guard(PdfiumLock());
        const Closing open(lclCalls.LoadPage(lclDocument, page - 1), lclCalls.ClosePage);
        const Closing bitmap(lclCalls.BitmapCreateEx(static_cast<int>(width),
                                                     static_cast<int>(height), withoutAlpha,
                                                     pixels.data(), static_cast<int>(width * 4)),
                             lclCalls.BitmapDestroy);
        if (!open.Get() || !bitmap.Get()) Refuse(page);
        lclCalls.RenderPageBitmap(bitmap.Get(), open.Get(), 0, 0, static_cast<int>(width),
                                  static_cast<int>(height), 0, drawAnnotations);
    }
    PageBitmap result = MakeBitmap(PixelFormat::rgb24, width, height);
    for (std::size_t i = 0; i < std::size_t{width} * height; ++i)
        for (std::size_t c = 0; c < 3; ++c) result.bytes[3 * i + c] = pixels[4 * i + 2 - c];
    return result;
}

Pdfium::Pdfium(std::string_view path) : lclCalls(LoadPdfium(path)) {}

Pdfium::Opening Pdfium::Open(std::string bytes, std::string_view password) const {
    if (!lclCalls) return {};
    const std::string secret(password);
    const Guard guard(PdfiumLock());
    void* document = lclCalls->LoadMemDocument64(bytes.data(), bytes.size(),
                                                 secret.empty() ? nullptr : secret.c_str());
    if (!document) return {OutcomeOf(*lclCalls), nullptr};
    return {PdfOpened::Yes,
            std::unique_ptr<PdfFile>(new PdfFile(*lclCalls, std::move(bytes), document))};
}

PdfOpened Pdfium::Merge(const std::vector<std::string>& files, const ByteSink& sink,
                        std::size_t& failed) const {
    if (!lclCalls) return PdfOpened::NotHere;
    const Guard guard(PdfiumLock());
    const Closing target(lclCalls->CreateNewDocument(), lclCalls->CloseDocument);
    // The target copies from its sources when it is saved.
    std::vector<std::unique_ptr<Closing>> sources;
    for (failed = 0; failed < files.size(); ++failed) {
        const std::string& bytes = files[failed];
        sources.push_back(std::make_unique<Closing>(
            lclCalls->LoadMemDocument64(bytes.data(), bytes.size(), nullptr),
            lclCalls->CloseDocument));
        void* source = sources.back()->Get();
        if (!source) return OutcomeOf(*lclCalls);
        if (!lclCalls->ImportPages(target.Get(), source, nullptr,
                                   lclCalls->GetPageCount(target.Get())))
            return PdfOpened::Damaged;
    }
    Writing writing;
    writing.version = 1;
    writing.WriteBlock = &Writing::Write;
    writing.sink = &sink;
    const bool saved = lclCalls->SaveAsCopy(target.Get(), &writing, notIncremental) != 0;
    if (writing.failure) std::rethrow_exception(writing.failure);
    if (!saved)
        throw platform::Error(platform::errors::fail, "The PDF file cannot be put together");
    return PdfOpened::Yes;
}

} // namespace kavidex::imaging
