// What For Each walks, for the _NewEnum rows (id DISPID_NEWENUM).
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "com/dispatch/Convert.h"

namespace kavidex::com {

// `item` gives the i-th element, nullopt behind the last; it keeps alive what it needs.
ComPtr<IUnknown> MakeEnumerator(std::function<std::optional<Variant>(std::size_t)> item);
ComPtr<IUnknown> MakeEnumerator(std::vector<Variant> items);

} // namespace kavidex::com
