#include "controls/lists/ListRows.h"

#include "controls/pictures/IconKeys.h"
#include "platform/Bytes.h"
#include "platform/text.h"

namespace kavidex::controls {

void ListRows::SortKey(std::size_t row, std::string_view field, std::string& to) const {
    platform::AppendLowerCase(to, Text(row, field));
}

RecordsetRows::RecordsetRows(data::RecordsetPtr rows, std::string_view idField,
                             std::string_view typeField)
    : lclRows(std::move(rows)), lclIdField(idField), lclTypeField(typeField) {}

std::size_t RecordsetRows::Count() const {
    return lclRows && lclRows->IsOpen() ? static_cast<std::size_t>(lclRows->RecordCount()) : 0;
}

const data::Value& RecordsetRows::At(std::size_t row, std::string_view field) const {
    const auto position = static_cast<std::int64_t>(row) + 1;
    if (lclRows->AbsolutePosition() != position) lclRows->SetAbsolutePosition(position);
    return lclRows->Get(field);
}

std::int32_t RecordsetRows::Id(std::size_t row) const { return data::ToInt32(At(row, lclIdField)); }

std::string RecordsetRows::Text(std::size_t row, std::string_view field) const {
    return platform::Trim(data::ToText(At(row, field)));
}

void RecordsetRows::SortKey(std::size_t row, std::string_view field, std::string& to) const {
    const auto& value = At(row, field);
    if (const auto* number = std::get_if<std::int64_t>(&value))
        platform::AppendBig(to, static_cast<std::uint64_t>(*number) ^ (std::uint64_t{1} << 63));
    else if (const auto* text = std::get_if<std::string>(&value))
        platform::AppendLowerCase(to, platform::TrimView(*text));
    else
        ListRows::SortKey(row, field, to);
}

std::string RecordsetRows::Picture(std::size_t row) const {
    return lclTypeField.empty() ? std::string() : ItemIconKey(Text(row, lclTypeField));
}

} // namespace kavidex::controls
