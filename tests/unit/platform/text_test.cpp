#include "platform/text.h"

#include <gtest/gtest.h>

namespace kavidex::platform {

TEST(Text, CaseMappingKnowsUnicodeAndKeepsMalformedBytes) {
    EXPECT_EQ(LowerCase("ÉÉN ŁÓDŹ Ж ΑΣ"), "één łódź ж ασ");
    EXPECT_EQ(UpperCase("één łódź ж ß"), "ÉÉN ŁÓDŹ Ж ß");
    EXPECT_EQ(LowerCase("A\xff\xc3Z\xed\xa0\x80"), "a\xff\xc3z\xed\xa0\x80");
    EXPECT_EQ(LowerCase(std::string("A\0B", 3)), std::string("a\0b", 3));
}

TEST(Text, ComparisonWithoutCaseOrdersMarkedLettersBesideThePlainOnes) {
    EXPECT_TRUE(EqualNoCase("Straße ÉÉN", "straße één"));
    EXPECT_FALSE(EqualNoCase("a", "a "));
    EXPECT_LT(CompareNoCase("a", "B"), 0);
    EXPECT_LT(CompareNoCase("Édam", "f"), 0);
    EXPECT_LT(CompareNoCase("één", "eer"), 0);
    EXPECT_LT(CompareNoCase("een", "één"), 0);
    EXPECT_LT(CompareNoCase("één", "eens"), 0);
    EXPECT_GT(CompareNoCase("÷", "z"), 0);
    EXPECT_LT(CompareNoCase("ab", "abc"), 0);
    EXPECT_LT(CompareNoCase("\xEF\xBF\xBD", "𐐨"), 0); // by code point, not by unit
    EXPECT_NE(CompareNoCase("\xff", "ÿ"), 0);
    EXPECT_NE(CompareNoCase("\xff", "\xfe"), 0);
    EXPECT_TRUE(EqualAsciiNoCase("TblTree", "tbltree"));
    EXPECT_FALSE(EqualAsciiNoCase("É", "é"));
}

TEST(Text, TrimTakesBlanksOnly) {
    EXPECT_EQ(Trim("  a b\t "), "a b\t");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("\xC2\xA0x"), "\xC2\xA0x");
}

TEST(Text, SplitReplaceAndPlaceholders) {
    EXPECT_TRUE(Split("", ';').empty());
    EXPECT_EQ(Split("a;;b", ';'), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_EQ(Split(";", ';'), (std::vector<std::string>{"", ""}));
    EXPECT_EQ(Replace("a'b''", "'", "''"), "a''b''''");
    EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");
    EXPECT_EQ(Replace("abc", "", "x"), "abc");
    EXPECT_EQ(FillPlaceholders("$%$ van $%$ en $%$", {"1", "$%$"}), "1 van $%$ en $%$");
    EXPECT_EQ(FillPlaceholders("geen", {"1"}), "geen");
}

TEST(Text, Utf16GoesThereAndBack) {
    const std::string all = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x93\x81";
    EXPECT_EQ(ToUtf16(all), u"a\u00E9\u20AC\U0001F4C1");
    EXPECT_EQ(ToUtf8(ToUtf16(all)), all);
    EXPECT_EQ(ToUtf16("x\xff"), u"x\uFFFD");
    EXPECT_EQ(ToUtf16("\xC0\x80\xF4\x90\x80\x80").find_first_not_of(u'\uFFFD'),
              std::u16string::npos);
    const char16_t alone[] = {0xD83D, u'x', 0xDC00, 0xD83D};
    EXPECT_EQ(ToUtf8({alone, 4}), "\xEF\xBF\xBDx\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(Text, ValReadsTheLeadingNumberWithAFullStop) {
    for (const std::string each :
         {" => 0", "abc => 0", "12abc => 12", " 1 2 3 => 123", "-4.5kg => -4.5", "+7 => 7",
          "1,5 => 1", ".5 => 0.5", "1e3 => 1000", "1d2 => 100", "2e => 2", "5. => 5", "- => 0",
          "&HFF => 255", "&HFFFF => -1", "&O17 => 15", "1.2.3 => 1.2", "\t 9 => 9"}) {
        const std::size_t arrow = each.find(" => ");
        EXPECT_DOUBLE_EQ(Val(each.substr(0, arrow)), std::stod(each.substr(arrow + 4))) << each;
    }
}

} // namespace kavidex::platform
