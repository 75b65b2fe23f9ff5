// Version 6 of the common controls for the windows made within the scope, also in a host that has
// no manifest of its own.
#pragma once

#include <windows.h>

namespace kavidex::platform::win32 {

class ActivationScope {
public:
    ActivationScope() noexcept;
    ~ActivationScope();
    ActivationScope(const ActivationScope&) = delete;
    ActivationScope& operator=(const ActivationScope&) = delete;

private:
    ULONG_PTR lclCookie = 0;
    bool lclActive = false;
};

} // namespace kavidex::platform::win32
