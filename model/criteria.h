// The select statement of a record class that filters on its own properties.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kavidex::model {

// Unset values (0 and below, empty) are no criterion.
class Criteria {
public:
    void Equal(std::string_view column, std::int32_t number);
    void Equal(std::string_view column, std::string_view text);
    // "like" when the text holds "%" or "*", else equality.
    void Like(std::string_view column, std::string_view text);
    std::string Select(std::string_view table, std::string_view ordering) const;

private:
    void Add(std::string_view column, std::string_view comparison, std::string_view literal);
    std::string lclText;
};

} // namespace kavidex::model
