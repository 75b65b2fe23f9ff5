// Where a control keeps its design-time state: the host's property bag or a stream.
#pragma once

#include <optional>
#include <string_view>

#include "controls/common/Appearance.h"
#include "data/Value.h"

namespace kavidex::controls {

// How wide a whole number is in the bag: as it comes, or 16 bits.
enum class BagWidth { Natural, Short };

class PropertyBag {
public:
    virtual ~PropertyBag() = default;
    // Null when the bag has no such item. `wanted` tells the bag which kind to convert to.
    virtual std::optional<data::Value> Read(std::string_view name, const data::Value& wanted,
                                            BagWidth width) = 0;
    virtual void Write(std::string_view name, const data::Value& value, BagWidth width) = 0;

    // A font: one text here, an object in the bags of hosts. Null when there is none.
    virtual std::optional<FontFace> ReadFont(std::string_view name);
    virtual void WriteFont(std::string_view name, const FontFace& font);
};

} // namespace kavidex::controls
