#include "platform/win32/Failure.h"

#include "platform/Error.h"
#include "platform/win32/Late.h"

namespace kavidex::platform::win32 {

namespace {

struct Cause {
    DWORD number;
    std::int32_t error;
};

// Causes that Windows numbers twice; every other one keeps its own number.
constexpr Cause causes[] = {
    {ERROR_ALREADY_EXISTS, errors::alreadyExists},    {ERROR_HANDLE_DISK_FULL, errors::diskFull},
    {ERROR_LOCK_VIOLATION, errors::sharingViolation}, {ERROR_INVALID_NAME, errors::invalidArgument},
    {ERROR_WRITE_PROTECT, errors::accessDenied},
};

std::int32_t ErrorOf(DWORD cause) {
    for (const Cause& known : causes)
        if (known.number == cause) return known.error;
    return static_cast<std::int32_t>(HRESULT_FROM_WIN32(cause));
}

} // namespace

void Fail(DWORD cause, std::string_view action, std::string_view path, std::string_view target) {
    std::string text = "Cannot ";
    text.append(action).append(" \"").append(path).append("\"");
    if (!target.empty()) text.append(" to \"").append(target).append("\"");
    text.append(": ").append(HresultText(static_cast<HRESULT>(HRESULT_FROM_WIN32(cause))));
    throw Error(ErrorOf(cause), text);
}

} // namespace kavidex::platform::win32
