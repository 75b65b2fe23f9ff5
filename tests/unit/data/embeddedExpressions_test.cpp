// What expressions of the Access dialect give, on the real engine.
#include <gtest/gtest.h>

#include "data/embedded/EmbeddedDatabase.h"

namespace kavidex::data {
namespace {

// "(null)" for null.
std::string Computed(const std::string& expression) {
    static const ConnectionPtr connection = EmbeddedDatabase::CreateInMemory();
    const RecordsetPtr rows = connection->Open({"Select " + expression});
    return IsNull(rows->Get(0)) ? "(null)" : ToText(rows->Get(0));
}

TEST(EmbeddedExpressions, AreComputedAsAccessDoes) {
    const auto check = [](std::initializer_list<std::string> cases) {
        for (const std::string& each : cases) {
            const std::size_t arrow = each.find(" => ");
            EXPECT_EQ(Computed(each.substr(0, arrow)), each.substr(arrow + 4)) << each;
        }
    };
    check({"1 + 2 * 3 => 7", "'a' & 'b' & 1 => ab1", "'a' & null & 'b' => ab",
           "null & null => (null)", "'a' & 1 + 2 => a3", "1 & 2 = '12' => 1", "'a' + 'b' => ab",
           "7 / 2 => 3.5", "7 \\ 2 => 3", "7 mod 4 => 3", "2 ^ 3 => 8", "- 2 - -3 => 1"});
    check({"'ABC' = 'abc' => 1", "'\xC3\x89' = '\xC3\xA9' => 1", "'b' between 'A' and 'C' => 1",
           "'X' in ('a', 'x') => 1", "not 1 = 2 and 3 = 3 => 1", "True => -1",
           "'O''Brien' => O'Brien", "'' => ",
           "\"double\" & \"d \"\"quotes\"\"\" => doubled \"quotes\"", "round(2.5) => 2",
           "round(-3.5) => -4", "round(2.675, 2) => 2.68", "fix(-2.5) => -2"});
    check({"mid('abcdef', 2, 3) => bcd", "mid('abc', 2) => bc", "mid('abc', 9, 2) => ",
           "mid(null, 1, 2) => (null)", "left('abc', 2) => ab", "left('abc', 9) => abc",
           "left(1230, 2) => 12", "right('abc', 2) => bc", "right('abc', 9) => abc",
           "right('\xC3\xA9\xF0\x9F\x98\x80x', 2) => \xF0\x9F\x98\x80x"});
    check({"iif(1 > 2, 'yes', 'no') => no", "len('abc') => 3", "ucase('\xC3\xA9') => \xC3\x89",
           "instr('Dossier', 'SS') => 3", "nz(null, 'x') => x", "switch(1 = 2, 'a') => (null)",
           "strcomp('a', 'B') => -1", "strcomp('a', 'A') => 0", "strcomp('a', 'A', 0) => 1",
           "iif(null is null, 'yes', 'no') => yes",
           "switch(1 = 2, 'a', 2 = 2, 'b', True, 'c') => b"});
    check({"mid(20040501, 5, 2) => 05", "year(#5/1/2004 13:30#) => 2004", "year(38108.5) => 2004",
           "format(7, '000') => 007", "format(0.256, '0.#%') => 25.6%",
           "'2004-05-01' = #2004-05-01# => 1",
           "month('2004-05-01') & '-' & day('5/31/2004') => 5-31",
           "hour(#2004-05-01 13:30:15#) & ':' & minute('2004-05-01 13:30') & second(null) => 13:30",
           "format(#2004-05-01 13:05:09#, 'dd-mm-yyyy hh:mm:ss') => 01-05-2004 13:05:09",
           "format('2004-05-01', 'yyyymmdd') => 20040501",
           "format(1234567.891, '#,##0.00') => 1,234,567.89",
           "#2004-05-01# & '' => 2004-05-01 00:00:00", "#5/1/2004 13:30# => 2004-05-01 13:30:00"});
}

TEST(EmbeddedExpressions, MatchPatternsOfBothWildcardFamilies) {
    for (const char* matches :
         {"'Dossier' like 'Dos%'", "'Dossier' like 'dos*'", "'Dossier' like '%SIER'",
          "'Dossier' like 'D?ss_er'", "'Dossier' like 'Dossier'", "'' like '%'", "'a[b' like 'a[b'",
          "'cat' like '[a-d]at'", "'hat' like '[!a-d]at'", "'\xC3\x89toile' like '\xC3\xA9*'",
          "'aXbXc' like 'a*x*c'", "'100%' like '100[%]'", "'A1' like 'A#'", "'A#' like 'A[#]'"})
        EXPECT_EQ(Computed(matches), "1") << matches;
    for (const char* other :
         {"'Dossier' like 'Dos'", "'Dossier' like ''", "'hat' like '[a-d]at'", "'Ab' like 'A#'"})
        EXPECT_EQ(Computed(other), "0") << other;
    EXPECT_EQ(Computed("null like '%'"), "(null)");
    EXPECT_EQ(Computed("'abc' not like 'x*'"), "1");
}

} // namespace
} // namespace kavidex::data
