#include "data/embedded/Types.h"

#include <charconv>

#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

// The first row of a declaration is the one that a file's column reads back as.
constexpr ColumnType types[] = {
    // word          declared        type                    sized
    {"COUNTER", "INTEGER", AdoType::Integer, false},
    {"AUTOINCREMENT", "INTEGER", AdoType::Integer, false},
    {"LONG", "LONGINT", AdoType::Integer, false},
    {"INTEGER", "LONGINT", AdoType::Integer, false},
    {"INT", "LONGINT", AdoType::Integer, false},
    {"SHORT", "SHORTINT", AdoType::SmallInt, false},
    {"SMALLINT", "SHORTINT", AdoType::SmallInt, false},
    {"BYTE", "BYTEINT", AdoType::UnsignedTinyInt, false},
    {"BIT", "BITINT", AdoType::Boolean, false},
    {"YESNO", "BITINT", AdoType::Boolean, false},
    {"LOGICAL", "BITINT", AdoType::Boolean, false},
    {"BOOLEAN", "BITINT", AdoType::Boolean, false},
    {"SINGLE", "SINGLEREAL", AdoType::Single, false},
    {"REAL", "SINGLEREAL", AdoType::Single, false},
    {"DOUBLE", "DOUBLEREAL", AdoType::Double, false},
    {"FLOAT", "DOUBLEREAL", AdoType::Double, false},
    {"NUMBER", "DOUBLEREAL", AdoType::Double, false},
    {"CURRENCY", "CURRENCYREAL", AdoType::Currency, false},
    {"MONEY", "CURRENCYREAL", AdoType::Currency, false},
    {"DATETIME", "DATETEXT", AdoType::Date, false},
    {"DATE", "DATETEXT", AdoType::Date, false},
    {"TEXT", "TEXT", AdoType::VarWChar, true},
    {"CHAR", "TEXT", AdoType::VarWChar, true},
    {"VARCHAR", "TEXT", AdoType::VarWChar, true},
    {"STRING", "TEXT", AdoType::VarWChar, true},
    {"MEMO", "MEMOTEXT", AdoType::LongVarWChar, false},
    {"NOTE", "MEMOTEXT", AdoType::LongVarWChar, false},
    {"LONGBINARY", "LONGBLOB", AdoType::LongVarBinary, false},
    {"OLEOBJECT", "LONGBLOB", AdoType::LongVarBinary, false},
};

bool Holds(std::string_view upper, std::string_view part) {
    return upper.find(part) != std::string_view::npos;
}

AdoType TypeByLetters(const std::string& upper) {
    if (Holds(upper, "INT")) return AdoType::Integer;
    if (Holds(upper, "CHAR") || Holds(upper, "CLOB") || Holds(upper, "TEXT"))
        return AdoType::LongVarWChar;
    if (Holds(upper, "BLOB")) return AdoType::LongVarBinary;
    if (Holds(upper, "REAL") || Holds(upper, "FLOA") || Holds(upper, "DOUB"))
        return AdoType::Double;
    return AdoType::VarWChar;
}

// As ADO counts: bytes of numbers, characters of texts, the utmost for long values.
std::int64_t SizeOf(AdoType type, std::int64_t characters) {
    switch (type) {
    case AdoType::UnsignedTinyInt: return 1;
    case AdoType::SmallInt:
    case AdoType::Boolean: return 2;
    case AdoType::Integer:
    case AdoType::Single: return 4;
    case AdoType::Double:
    case AdoType::Currency:
    case AdoType::Date: return 8;
    case AdoType::LongVarWChar: return 536870910;
    case AdoType::LongVarBinary: return 1073741823;
    default: return characters > 0 ? characters : longestText;
    }
}

} // namespace

const ColumnType* TypeOfWord(std::string_view word) {
    for (const ColumnType& type : types)
        if (platform::EqualAsciiNoCase(type.word, word)) return &type;
    return nullptr;
}

DeclaredType ReadDeclared(std::string_view declaration) {
    const std::size_t open = declaration.find('(');
    const std::string_view word = platform::TrimView(declaration.substr(0, open));
    std::int64_t characters = 0;
    if (open != std::string_view::npos)
        std::from_chars(declaration.data() + open + 1, declaration.data() + declaration.size(),
                        characters);
    for (const ColumnType& type : types)
        if (platform::EqualAsciiNoCase(type.declared, word))
            return {type.type, SizeOf(type.type, characters)};
    const AdoType type = TypeByLetters(platform::UpperCase(word));
    return {type, SizeOf(type, characters)};
}

bool IsWholeNumber(AdoType type) {
    return type == AdoType::Integer || type == AdoType::SmallInt ||
           type == AdoType::UnsignedTinyInt;
}

} // namespace kavidex::data::embedded
