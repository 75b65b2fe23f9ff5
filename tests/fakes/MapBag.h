// A host's property bag in memory.
#pragma once

#include <map>
#include <string>

#include "controls/common/PropertyBag.h"

namespace kavidex::tests {

struct MapBag : controls::PropertyBag {
    std::map<std::string, data::Value, std::less<>> values;
    std::optional<data::Value> Read(std::string_view name, const data::Value&,
                                    controls::BagWidth) override {
        const auto found = values.find(name);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void Write(std::string_view name, const data::Value& value, controls::BagWidth) override {
        values[std::string(name)] = value;
    }
};

} // namespace kavidex::tests
