// The functions of PDFium that are used, declared in our own words, and how they are found. They
// are called as C functions are, on Windows too: the builds that are fetched know no other
// convention.
#pragma once

#include <cstddef>
#include <mutex>
#include <string_view>

namespace kavidex::imaging {

// Receives what SaveAsCopy writes.
struct PdfiumFileWrite {
    int version; // 1
    int (*WriteBlock)(PdfiumFileWrite* self, const void* data, unsigned long size);
};

struct PdfiumSize {
    float width, height;
};

struct PdfiumCalls {
    void (*InitLibrary)();
    void* (*LoadMemDocument64)(const void* data, std::size_t size, const char* password);
    unsigned long (*GetLastError)();
    void (*CloseDocument)(void* document);
    int (*GetPageCount)(void* document);
    int (*GetPageSizeByIndexF)(void* document, int page, PdfiumSize* size);
    void* (*LoadPage)(void* document, int page);
    void (*ClosePage)(void* page);
    void* (*BitmapCreateEx)(int width, int height, int format, void* pixels, int stride);
    void (*BitmapDestroy)(void* bitmap);
    void (*RenderPageBitmap)(void* bitmap, void* page, int x, int y, int width, int height,
                             int rotation, int flags);
    void* (*CreateNewDocument)();
    int (*ImportPages)(void* target, void* source, const char* range, int at);
    int (*SaveAsCopy)(void* document, PdfiumFileWrite* write, unsigned long flags);
};

// Null when the library, or one of the functions, is not there. Loaded and started once a process.
const PdfiumCalls* LoadPdfium(std::string_view path);

std::mutex& PdfiumLock();

// By the system: null when it is not there. It is never unloaded.
void* LoadLibraryAt(std::string_view path);
void* FunctionOf(void* library, const char* name);

} // namespace kavidex::imaging
