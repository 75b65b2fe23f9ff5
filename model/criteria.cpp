#include "model/criteria.h"

#include "data/modData.h"

namespace kavidex::model {

void Criteria::Add(std::string_view column, std::string_view comparison, std::string_view literal) {
    if (!lclText.empty()) lclText += " And ";
    lclText.append(column).append(comparison).append(literal);
}

void Criteria::Equal(std::string_view column, std::int32_t number) {
    if (number > 0) Add(column, " = ", std::to_string(number));
}

void Criteria::Equal(std::string_view column, std::string_view text) {
    if (!text.empty()) Add(column, " = ", data::SqlValue(text));
}

void Criteria::Like(std::string_view column, std::string_view text) {
    if (text.empty()) return;
    const bool wild = text.find_first_of("%*") != std::string_view::npos;
    Add(column, wild ? " like " : " = ", data::SqlValue(text));
}

std::string Criteria::Select(std::string_view table, std::string_view ordering) const {
    std::string statement = "select * from ";
    statement.append(table);
    if (!lclText.empty()) statement.append(" where ").append(lclText);
    if (!ordering.empty()) statement.append(" order by ").append(ordering);
    return statement;
}

} // namespace kavidex::model
