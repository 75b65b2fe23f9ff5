// The one place where C++ exceptions become what a COM host understands.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <string>

namespace kavidex::com {

// A failure that is a plain HRESULT rather than an error of the system's own: a wrong argument, a
// member that does not exist.
struct Refusal {
    HRESULT result;
    int argument = -1; // which argument was wrong, counted from the first
};

struct Failure {
    HRESULT result = S_OK;  // for the caller of an interface
    bool described = false; // `source` and `text` say more than the number
    std::string source;
    std::string text;
};

// The number as an HRESULT: errors keep theirs, Basic's small numbers join the control facility.
HRESULT ResultOf(std::int32_t number) noexcept;

// To be called in a catch block. `source` names who failed when the exception does not.
Failure CurrentFailure(const char* source) noexcept;

// For Invoke: DISP_E_EXCEPTION and a filled `info` when the failure is described.
HRESULT Report(const Failure& failure, EXCEPINFO* info) noexcept;
// For the other interfaces: the HRESULT, the description left in the thread's error object.
HRESULT Report(const Failure& failure, REFIID iid) noexcept;

// Runs the body of an interface method; nothing is thrown past it.
template <class Body>
HRESULT Guard(const char* source, REFIID iid, Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return Report(CurrentFailure(source), iid);
    }
}

} // namespace kavidex::com
