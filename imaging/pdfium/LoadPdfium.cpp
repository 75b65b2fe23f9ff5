#include "imaging/pdfium/PdfiumCalls.h"

#include <map>
#include <string>

namespace kavidex::imaging {

namespace {

template <class Function>
bool Find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(FunctionOf(library, name));
    return function != nullptr;
}

bool FindAll(void* library, PdfiumCalls& calls) {
    return Find(library, "FPDF_InitLibrary", calls.InitLibrary) &&
           Find(library, "FPDF_LoadMemDocument64", calls.LoadMemDocument64) &&
           Find(library, "FPDF_GetLastError", calls.GetLastError) &&
           Find(library, "FPDF_CloseDocument", calls.CloseDocument) &&
           Find(library, "FPDF_GetPageCount", calls.GetPageCount) &&
           Find(library, "FPDF_GetPageSizeByIndexF", calls.GetPageSizeByIndexF) &&
           Find(library, "FPDF_LoadPage", calls.LoadPage) &&
           Find(library, "FPDF_ClosePage", calls.ClosePage) &&
           Find(library, "FPDFBitmap_CreateEx", calls.BitmapCreateEx) &&
           Find(library, "FPDFBitmap_Destroy", calls.BitmapDestroy) &&
           Find(library, "FPDF_RenderPageBitmap", calls.RenderPageBitmap) &&
           Find(library, "FPDF_CreateNewDocument", calls.CreateNewDocument) &&
           Find(library, "FPDF_ImportPages", calls.ImportPages) &&
           Find(library, "FPDF_SaveAsCopy", calls.SaveAsCopy);
}

} // namespace

std::mutex& PdfiumLock() {
    static std::mutex lock;
    return lock;
}

const PdfiumCalls* LoadPdfium(std::string_view path) {
    static std::map<std::string, PdfiumCalls, std::less<>> loaded;
    const std::lock_guard<std::mutex> guard(PdfiumLock());
    if (const auto known = loaded.find(path); known != loaded.end()) return &known->second;
    PdfiumCalls calls{};
    void* library = LoadLibraryAt(path);
    if (!library || !FindAll(library, calls)) return nullptr;
    calls.InitLibrary();
    return &loaded.emplace(path, calls).first->second;
}

} // namespace kavidex::imaging
