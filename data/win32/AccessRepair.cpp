// The ODBC installer of Windows, loaded only when a file is to be repaired.
#include "data/schema/AccessRepair.h"

#include <windows.h>

#include <string>

#include "platform/Error.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

constexpr WORD configureDataSource = 2;

using ConfigDataSource = BOOL(WINAPI*)(HWND, WORD, LPCWSTR, LPCWSTR);
using InstallerError = short(WINAPI*)(WORD, DWORD*, LPWSTR, WORD, WORD*);

struct Library {
    HMODULE module = LoadLibraryExW(L"odbccp32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    Library() = default;
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() {
        if (module) FreeLibrary(module);
    }
    template <class Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(
            reinterpret_cast<void*>(module ? GetProcAddress(module, name) : nullptr));
    }
};

std::wstring Wide(std::string_view text) {
    const std::u16string units = platform::ToUtf16(text);
    return {units.begin(), units.end()};
}

std::string WordsOf(const Library& library) {
    const auto installerError = library.Find<InstallerError>("SQLInstallerErrorW");
    wchar_t words[512] = L"";
    WORD length = 0;
    DWORD code = 0;
    if (installerError) installerError(1, &code, words, 512, &length);
    const std::wstring text(words);
    return platform::ToUtf8(std::u16string(text.begin(), text.end())) + " (" +
           std::to_string(code) + ")";
}

class OdbcAccessRepair final : public AccessRepair {
public:
    void Configure(std::string_view driver, std::string_view attributes) override {
        const Library library;
        const auto configure = library.Find<ConfigDataSource>("SQLConfigDataSourceW");
        if (!configure)
            throw platform::Error(platform::errors::notFound, "There is no ODBC installer.",
                                  "AccessRepair");
        std::wstring list = Wide(attributes);
        list.push_back(L'\0'); // a list of texts ends with two zeros
        if (!configure(nullptr, configureDataSource, Wide(driver).c_str(), list.c_str()))
            throw platform::Error(platform::errors::fail,
                                  "The ODBC installer refused: " + WordsOf(library),
                                  "AccessRepair");
    }
};

} // namespace

std::unique_ptr<AccessRepair> MakeAccessRepair() { return std::make_unique<OdbcAccessRepair>(); }

} // namespace kavidex::data
