// SELECT, and the parts of it that statements which change rows have as well.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/embedded/Expressions.h"

namespace kavidex::data::embedded {

class QueryParser {
public:
    struct Source { // a table that the statement reads
        std::string table, alias;
    };

    QueryParser(TokenReader& reader, const ColumnsOfTable& columns);

    // Selects joined by UNION, then the order. With `ties` the rows that are equal to the last are
    // its caller's to find; without, TOP ends at its number.
    std::string Query(Ties* ties = nullptr);
    std::string Tables(); // what FROM and UPDATE list, joined
    std::string Where();  // empty without one
    Expression Value() { return lclExpressions.Parse(); }

    void Reads(Source source) { lclSources.push_back(std::move(source)); }
    const std::vector<Source>& Sources() const { return lclSources; } // so far
    bool Derived() const { return lclDerived; } // a query stands where a table can
    bool Fixed() const { return lclFixed; }     // a literal stands in the statement itself

private:
    struct Selection {
        std::string items, hidden, rest; // hidden: columns that are there to be compared
        int top = -1;
        bool plain = true; // neither DISTINCT nor one of a union: columns can be added
        std::vector<std::pair<std::string, std::string>> aliases; // of values, as they are written
    };

    Selection Select();
    std::string Item(int number, Selection& selection);
    std::string JoinedTables();
    std::string Table();
    std::string Order(Selection& selection, Ties* ties);
    static void Compare(Selection& selection, Ties& ties, std::string value);
    bool IsFlag(std::string_view column) const;

    TokenReader& lclReader;
    const ColumnsOfTable& lclColumns;
    ExpressionParser lclExpressions;
    std::vector<Source> lclSources;
    bool lclDerived = false, lclFixed = false;
    int lclDepth = 0;
};

} // namespace kavidex::data::embedded
