// Where a control keeps its design-time state: the host's property bag or a stream.
#pragma once

#include <optional>
#include <string_view>

#include "data/Value.h"

namespace kavidex::controls {

class PropertyBag {
public:
    virtual ~PropertyBag() = default;
    // Null when the bag has no such item. `wanted` tells the bag which kind to convert to.
    virtual std::optional<data::Value> Read(std::string_view name, const data::Value& wanted) = 0;
    virtual void Write(std::string_view name, const data::Value& value) = 0;
};

} // namespace kavidex::controls
