// The event by which a viewer asks for a document of some pages, as its host gets it.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <string>
#include <vector>

#include "com/control/Control.h"
#include "platform/win32/Variant.h"

namespace kavidex::com {

// `raise` takes the event's three arguments; what a handler puts into the last becomes `done`.
template <class Raise>
void RaiseExport(const std::string& file, const std::vector<std::int32_t>& pages, bool& done,
                 Raise raise) {
    const std::vector<platform::win32::Variant> numbers(pages.begin(), pages.end());
    VARIANT_BOOL flag = done ? VARIANT_TRUE : VARIANT_FALSE;
    raise(file, platform::win32::ArrayOf(numbers), Flagged{&flag});
    done = flag != VARIANT_FALSE;
}

} // namespace kavidex::com
