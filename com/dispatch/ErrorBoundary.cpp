#include "com/dispatch/ErrorBoundary.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <string_view>

#include "platform/Error.h"
#include "platform/win32/Variant.h"

namespace kavidex::com {

namespace {

// Without memory there is no description; the number stands alone.
BSTR NewBstr(const std::string& text) noexcept {
    try {
        return platform::win32::NewBstr(text);
    } catch (...) {
        return nullptr;
    }
}

// How the names of the library's parts begin. Whichever of them failed, it is the class that was
// called that the caller knows. Other components keep their own names.
constexpr std::string_view innerNames[] = {"Kavidex",   "cls",  "ctrl",
                                           "ctl",       "frm",  "OpenRecordset",
                                           "Recordset", "ODBC", "EmbeddedDatabase"};

bool IsInner(std::string_view source) {
    return source.empty() ||
           std::any_of(std::begin(innerNames), std::end(innerNames),
                       [&](std::string_view name) { return source.starts_with(name); });
}

} // namespace

HRESULT ResultOf(std::int32_t number) noexcept {
    if (number < 0) return number;
    return static_cast<HRESULT>(0x800A0000u | (static_cast<std::uint32_t>(number) & 0xFFFFu));
}

Failure CurrentFailure(const char* source) noexcept {
    try {
        try {
            throw;
        } catch (const Refusal& refusal) {
            return {refusal.result, false, {}, {}};
        } catch (const platform::Error& error) {
            return {ResultOf(error.Number()), true,
                    IsInner(error.Source()) ? source : error.Source(), error.what()};
        } catch (const std::bad_alloc&) {
            return {E_OUTOFMEMORY, false, {}, {}};
        } catch (const std::exception& error) {
            return {E_FAIL, true, source, error.what()};
        } catch (...) {
            return {E_UNEXPECTED, true, source, "An unknown failure"};
        }
    } catch (...) {
        return {E_OUTOFMEMORY, false, {}, {}}; // no memory left for the description
    }
}

HRESULT Report(const Failure& failure, EXCEPINFO* info) noexcept {
    if (!failure.described || !info) return failure.result;
    *info = {};
    info->scode = failure.result;
    info->bstrSource = NewBstr(failure.source);
    info->bstrDescription = NewBstr(failure.text);
    return DISP_E_EXCEPTION;
}

HRESULT Report(const Failure& failure, REFIID iid) noexcept {
    ICreateErrorInfo* creator = nullptr;
    if (!failure.described || FAILED(CreateErrorInfo(&creator))) return failure.result;
    BSTR source = NewBstr(failure.source), text = NewBstr(failure.text);
    creator->SetGUID(iid);
    creator->SetSource(source);
    creator->SetDescription(text);
    SysFreeString(source);
    SysFreeString(text);
    IErrorInfo* error = nullptr;
    if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&error)))) {
        SetErrorInfo(0, error);
        error->Release();
    }
    creator->Release();
    return failure.result;
}

} // namespace kavidex::com
