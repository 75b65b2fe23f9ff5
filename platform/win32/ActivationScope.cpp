#include "platform/win32/ActivationScope.h"

#include "platform/win32/Owner.h"

namespace kavidex::platform::win32 {

namespace {

// Made once and kept while the library is loaded.
HANDLE Context() {
    static const HANDLE context = [] {
        ACTCTXW description{};
        description.cbSize = sizeof description;
        description.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
        description.hModule = OwnModule();
        description.lpResourceName = MAKEINTRESOURCEW(2);
        return CreateActCtxW(&description);
    }();
    return context;
}

} // namespace

ActivationScope::ActivationScope() noexcept {
    try {
        const HANDLE context = Context();
        lclActive = context != INVALID_HANDLE_VALUE && ActivateActCtx(context, &lclCookie);
    } catch (...) {
        lclActive = false; // the windows then look as the host has them
    }
}

ActivationScope::~ActivationScope() {
    if (lclActive) DeactivateActCtx(0, lclCookie);
}

} // namespace kavidex::platform::win32
