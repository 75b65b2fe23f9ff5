#include <dlfcn.h>

#include "imaging/pdfium/Pdfium.h"
#include "imaging/pdfium/PdfiumCalls.h"
#include "platform/Files.h"

namespace kavidex::imaging {

void* LoadLibraryAt(std::string_view path) {
    return ::dlopen(platform::NativePath(path).c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* FunctionOf(void* library, const char* name) { return ::dlsym(library, name); }

std::string PdfiumPath() {
    Dl_info info{};
    if (!::dladdr(reinterpret_cast<void*>(&PdfiumPath), &info) || !info.dli_fname) return {};
    return platform::JoinPath(platform::FolderOf(info.dli_fname), "libpdfium.so");
}

} // namespace kavidex::imaging
