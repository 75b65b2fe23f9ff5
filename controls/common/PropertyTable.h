// A control's saved properties as one table: the row drives loading, saving and the change report.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "controls/common/PropertyBag.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"

namespace kavidex::controls {

// Null: an absent item leaves the value that the control holds already.
using Fallback = std::variant<std::monostate, bool, std::int32_t, std::string_view>;

// `State` is the plain struct in which the control holds its properties.
template <class State>
struct Property {
    using Member = std::variant<bool State::*, std::int16_t State::*, std::int32_t State::*,
                                std::string State::*>;

    std::string_view name; // under which it is read from the bag
    Member member;
    Fallback fallback{};
    std::string_view savedAs{};    // where the spelling of the written item differs
    std::string_view reportedAs{}; // where the spelling of the change report differs
    // The values that a number may have.
    std::int32_t least = std::numeric_limits<std::int32_t>::min();
    std::int32_t most = std::numeric_limits<std::int32_t>::max();
    bool narrow = false; // 16 bits in the bag, whatever the member has

    std::string_view SavedAs() const { return savedAs.empty() ? name : savedAs; }
    std::string_view ReportedAs() const { return reportedAs.empty() ? name : reportedAs; }
};

namespace properties {

inline void Convert(const data::Value& value, bool& target) { target = data::ToBool(value); }
inline void Convert(const data::Value& value, std::int16_t& target) {
    target = static_cast<std::int16_t>(data::ToInt32(value));
}
inline void Convert(const data::Value& value, std::int32_t& target) {
    target = data::ToInt32(value);
}
inline void Convert(const data::Value& value, std::string& target) { target = data::ToText(value); }

inline data::Value AsValue(bool value) { return value; }
inline data::Value AsValue(std::int16_t value) { return std::int64_t{value}; }
inline data::Value AsValue(std::int32_t value) { return std::int64_t{value}; }
inline data::Value AsValue(std::string_view value) { return std::string(value); }
inline data::Value AsValue(std::monostate) { return {}; }

template <class Type>
constexpr bool isNumber = std::is_same_v<Type, std::int16_t> || std::is_same_v<Type, std::int32_t>;

template <class State, class Type>
bool Takes(const Property<State>& row, const Type& value) {
    if constexpr (isNumber<Type>) return value >= row.least && value <= row.most;
    return true;
}

// What a host's bag or an older version kept and the property does not take.
template <class State, class Type>
bool TakesStored(const Property<State>& row, const data::Value& value, const Type&) {
    if constexpr (isNumber<Type>) {
        const std::int32_t number = data::ToInt32(value);
        return Takes(row, number) && number >= std::numeric_limits<Type>::min() &&
               number <= std::numeric_limits<Type>::max();
    }
    return true;
}

// Whether the item has 16 bits in the bag; a number beyond them is kept whole all the same.
template <class State, class Type>
bool IsNarrow(const Property<State>& row, const Type& value) {
    if constexpr (isNumber<Type>)
        return (row.narrow || sizeof(Type) == 2) &&
               value >= std::numeric_limits<std::int16_t>::min() &&
               value <= std::numeric_limits<std::int16_t>::max();
    return false;
}

} // namespace properties

// Throws "Invalid property value" for a number that the property does not take.
template <class State, class Type>
void CheckValue(const Property<State>& row, const Type& value) {
    if (properties::Takes(row, value)) return;
    throw platform::Error(platform::errors::invalidPropertyValue,
                          "Invalid property value: " + std::string(row.name) + " = " +
                              data::ToText(properties::AsValue(value)));
}

// Reads every row in the order of the table; absent items take their fallback, and so do numbers
// that the property does not take.
template <class State>
void LoadProperties(std::span<const Property<State>> table, State& state, PropertyBag& bag) {
    for (const auto& row : table)
        std::visit(
            [&](auto member) {
                auto& target = state.*member;
                data::Value value =
                    std::visit([](const auto& fallback) { return properties::AsValue(fallback); },
                               row.fallback);
                if (data::IsNull(value)) value = properties::AsValue(target);
                const auto width = row.narrow || sizeof target == sizeof(std::int16_t)
                                       ? BagWidth::Short
                                       : BagWidth::Natural;
                if (auto stored = bag.Read(row.name, value, width);
                    stored && !data::IsNull(*stored) &&
                    properties::TakesStored(row, *stored, target))
                    value = std::move(*stored);
                properties::Convert(value, target);
            },
            row.member);
}

template <class State>
void SaveProperties(std::span<const Property<State>> table, const State& state, PropertyBag& bag) {
    for (const auto& row : table)
        std::visit(
            [&](auto member) {
                const auto& value = state.*member;
                bag.Write(row.SavedAs(), properties::AsValue(value),
                          properties::IsNarrow(row, value) ? BagWidth::Short : BagWidth::Natural);
            },
            row.member);
}

// The row of a member, null for one that is not saved.
template <class State, class Type>
const Property<State>* FindProperty(std::span<const Property<State>> table, Type State::*member) {
    for (const auto& row : table)
        if (const auto* found = std::get_if<Type State::*>(&row.member); found && *found == member)
            return &row;
    return nullptr;
}

// True when the value changed.
template <class State, class Type>
bool Assign(State& state, Type State::*member, const Type& value) {
    if (state.*member == value) return false;
    state.*member = value;
    return true;
}

} // namespace kavidex::controls
