// Column types of the Access dialect, and how the file declares them.
#pragma once

#include <string>
#include <string_view>

#include "data/Value.h"

namespace kavidex::data::embedded {

inline constexpr const char* collation = "KAVIDEX";          // texts without case
inline constexpr const char* dateCollation = "KAVIDEX_DATE"; // dates, however they are written

struct ColumnType {
    std::string_view word;     // in a statement of the dialect
    std::string_view declared; // in the file; its letters decide the affinity of the column
    AdoType type;
    bool sized; // takes (n)
};

// Null for a word that is no type of the dialect.
const ColumnType* TypeOfWord(std::string_view word);

struct DeclaredType {
    AdoType type = AdoType::VarWChar;
    std::int64_t size = 0;
};

// Reads a declaration of the file back; those of other programs by what their letters say.
DeclaredType ReadDeclared(std::string_view declaration);

bool IsWholeNumber(AdoType type);

// What stands at the end of a column's definition in the file: a yes/no column is never null, dates
// compare as dates. `standard` is its default value, empty without one.
std::string FormOf(AdoType type, std::string_view standard);

// Characters of a text column without a size, and the most that one can ask for.
inline constexpr int longestText = 255;

} // namespace kavidex::data::embedded
