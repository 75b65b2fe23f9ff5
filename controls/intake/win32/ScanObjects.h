// What the scanning control gets of the host's objects, as a host would hand them over.
#pragma once

#include <functional>

#include "platform/win32/Variant.h"

namespace kavidex::controls::win32 {

struct ScanObjects {
    std::function<platform::win32::Variant()> translate, userAuth;
};

} // namespace kavidex::controls::win32
