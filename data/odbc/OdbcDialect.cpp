#include "data/odbc/OdbcDialect.h"

#include "platform/text.h"

namespace kavidex::data::odbc {

namespace {

constexpr Dialect mySql = {"MySQL", '`', '`', "select last_insert_id()", "rollback",
                           // An ordinary comparison ignores case and trailing blanks.
                           "binary convert(%1 using utf8mb4) = binary convert(? using utf8mb4)",
                           "%1 = ?", "%1 = ?"};

constexpr Dialect sqlServer = {
    "",
    '[',
    ']',
    "select @@identity",
    "if @@trancount > 0 rollback transaction",
    "cast(%1 as nvarchar(max)) collate Latin1_General_BIN2 = cast(? as nvarchar(max))",
    "convert(varchar(19), %1, 120) = ?",
    "cast(%1 as varbinary(max)) = ?"};

} // namespace

const Dialect& DialectOf(std::string_view dbmsName) {
    for (const std::string_view name : {"mysql", "mariadb"})
        if (platform::EqualAsciiNoCase(dbmsName, name)) return mySql;
    return sqlServer;
}

std::string Quoted(const Dialect& dialect, std::string_view name) {
    const std::string close(1, dialect.closeQuote);
    return dialect.openQuote + platform::Replace(name, close, close + close) + close;
}

std::string SameAs(const Dialect& dialect, const Field& field) {
    const std::string column = Quoted(dialect, field.baseColumn);
    const auto fill = [&](std::string_view pattern) {
        return platform::Replace(pattern, "%1", column);
    };
    switch (field.type) {
    case AdoType::Single: return {}; // no decimal text or wider number equals it
    case AdoType::Char:
    case AdoType::VarChar:
    case AdoType::LongVarChar:
    case AdoType::WChar:
    case AdoType::VarWChar:
    case AdoType::LongVarWChar: return fill(dialect.sameText);
    case AdoType::DBDate:
    case AdoType::DBTime: return column + " = ?";
    case AdoType::DBTimeStamp:
    case AdoType::Date: return fill(dialect.sameMoment);
    case AdoType::Binary:
    case AdoType::VarBinary:
    case AdoType::LongVarBinary: return fill(dialect.sameBytes);
    default: return column + " = ?";
    }
}

} // namespace kavidex::data::odbc
