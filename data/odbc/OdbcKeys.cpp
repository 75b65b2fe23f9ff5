#include "data/odbc/OdbcKeys.h"

#include "data/Error.h"
#include "data/odbc/OdbcStatement.h"
#include "data/odbc/Wide.h"
#include "platform/text.h"

namespace kavidex::data::odbc {

namespace {

OdbcLink::Keys ReadKeys(const LinkPtr& link, const std::string& table) {
    std::u16string name = platform::ToUtf16(table);
    OdbcLink::Keys keys;
    try {
        OdbcStatement statement(link);
        statement.RunCatalog("SQLPrimaryKeys", [&](SQLHSTMT handle) {
            return SQLPrimaryKeysW(handle, nullptr, 0, nullptr, 0, Raw(name),
                                   Length<SQLSMALLINT>(name));
        });
        statement.Describe(false);
        const RowStore rows = statement.FetchAll();
        constexpr std::size_t columnName = 3;
        for (std::size_t i = 0; i < rows.Rows(); ++i)
            keys.insert(platform::LowerCase(ToText(rows.Read(i, columnName))));
    } catch (const platform::Error&) {
        // A driver that cannot tell leaves the rows without a key: readable, not writable.
        link->ForgetErrors();
    }
    return keys;
}

} // namespace

bool MarkKeys(const LinkPtr& link, std::vector<Field>& fields) {
    bool any = false;
    for (Field& field : fields) {
        if (field.baseTable.empty()) continue;
        auto known = link->KnownKeys().find(field.baseTable);
        if (known == link->KnownKeys().end())
            known =
                link->KnownKeys().emplace(field.baseTable, ReadKeys(link, field.baseTable)).first;
        field.key = known->second.count(platform::LowerCase(field.baseColumn)) > 0;
        any = any || field.key;
    }
    return any;
}

} // namespace kavidex::data::odbc
