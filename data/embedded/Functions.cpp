#include "data/embedded/Functions.h"

#include <sqlite3.h>

#include <cmath>
#include <string>

#include "data/embedded/Arguments.h"
#include "data/embedded/Types.h"
#include "data/rows/Like.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

constexpr Function functions[] = {
    // word     name          fewest most
    {"abs", "abs", 1, 1},
    {"asc", "unicode", 1, 1},
    {"avg", "avg", 1, 1},
    {"cdate", "kv_date", 1, 1},
    {"cdbl", "kv_cdbl", 1, 1},
    {"chr", "char", 1, 1},
    {"cint", "kv_clng", 1, 1},
    {"clng", "kv_clng", 1, 1},
    {"count", "count", 1, 1},
    {"cstr", "kv_cstr", 1, 1},
    {"datevalue", "kv_datevalue", 1, 1},
    {"day", "kv_day", 1, 1},
    {"first", "kv_first", 1, 1},
    {"fix", "kv_fix", 1, 1},
    {"format", "kv_format", 2, 2},
    {"hour", "kv_hour", 1, 1},
    {"iif", "iif", 3, 3},
    {"instr", "kv_instr", 2, 3},
    {"int", "kv_int", 1, 1},
    {"isnull", "kv_isnull", 1, 1},
    {"last", "kv_last", 1, 1},
    {"lcase", "kv_lcase", 1, 1},
    {"left", "kv_left", 2, 2},
    {"len", "kv_len", 1, 1},
    {"ltrim", "ltrim", 1, 1},
    {"max", "max", 1, 1},
    {"mid", "kv_mid", 2, 3},
    {"min", "min", 1, 1},
    {"minute", "kv_minute", 1, 1},
    {"month", "kv_month", 1, 1},
    {"nz", "kv_nz", 1, 2},
    {"replace", "replace", 3, 3},
    {"right", "kv_right", 2, 2},
    {"round", "kv_round", 1, 2},
    {"rtrim", "rtrim", 1, 1},
    {"second", "kv_second", 1, 1},
    {"sgn", "kv_sgn", 1, 1},
    {"str", "kv_cstr", 1, 1},
    {"strcomp", "kv_strcomp", 2, 3},
    {"sum", "sum", 1, 1},
    {"trim", "trim", 1, 1},
    {"ucase", "kv_ucase", 1, 1},
    {"val", "kv_val", 1, 1},
    {"year", "kv_year", 1, 1},
};

bool Continues(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Byte offset of the character number `count`, the end when there are fewer.
std::size_t OffsetOf(std::string_view text, sqlite3_int64 count) {
    std::size_t at = 0;
    while (at < text.size() && count > 0) {
        ++at;
        while (at < text.size() && Continues(text[at])) ++at;
        --count;
    }
    return at;
}

sqlite3_int64 LengthOf(std::string_view text) {
    sqlite3_int64 length = 0;
    for (const char c : text)
        if (!Continues(c)) ++length;
    return length;
}

void Left(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (IsNullArgument(arguments[0]) || IsNullArgument(arguments[1])) return;
    const sqlite3_int64 count = sqlite3_value_int64(arguments[1]);
    if (count < 0) return sqlite3_result_error(context, "left: a negative length", -1);
    const std::string text = TextOf(arguments[0]);
    Return(context, std::string_view(text).substr(0, OffsetOf(text, count)));
}

void Right(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (IsNullArgument(arguments[0]) || IsNullArgument(arguments[1])) return;
    const sqlite3_int64 count = sqlite3_value_int64(arguments[1]);
    if (count < 0) return sqlite3_result_error(context, "right: a negative length", -1);
    const std::string text = TextOf(arguments[0]);
    Return(context, std::string_view(text).substr(OffsetOf(text, LengthOf(text) - count)));
}

void Mid(sqlite3_context* context, int count, sqlite3_value** arguments) {
    for (int i = 0; i < count; ++i)
        if (IsNullArgument(arguments[i])) return;
    const sqlite3_int64 start = sqlite3_value_int64(arguments[1]);
    const sqlite3_int64 length = count > 2 ? sqlite3_value_int64(arguments[2]) : -1;
    if (start < 1 || (count > 2 && length < 0))
        return sqlite3_result_error(context, "mid: a place before the text", -1);
    const std::string text = TextOf(arguments[0]);
    std::string_view rest = std::string_view(text).substr(OffsetOf(text, start - 1));
    if (count > 2) rest = rest.substr(0, OffsetOf(rest, length));
    Return(context, rest);
}

void Concat(sqlite3_context* context, int count, sqlite3_value** arguments) {
    std::string text;
    bool any = false;
    for (int i = 0; i < count; ++i) {
        if (IsNullArgument(arguments[i])) continue;
        any = true;
        text += TextOf(arguments[i]);
    }
    if (any) Return(context, text);
}

// + joins two texts and adds everything else.
void Add(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (IsNullArgument(arguments[0]) || IsNullArgument(arguments[1])) return;
    const int left = sqlite3_value_type(arguments[0]), right = sqlite3_value_type(arguments[1]);
    if (left == SQLITE_TEXT && right == SQLITE_TEXT)
        return Return(context, TextOf(arguments[0]) + TextOf(arguments[1]));
    sqlite3_int64 sum = 0;
    if (left == SQLITE_INTEGER && right == SQLITE_INTEGER &&
        !__builtin_add_overflow(sqlite3_value_int64(arguments[0]),
                                sqlite3_value_int64(arguments[1]), &sum))
        return sqlite3_result_int64(context, sum);
    sqlite3_result_double(context,
                          sqlite3_value_double(arguments[0]) + sqlite3_value_double(arguments[1]));
}

// # stands for a digit, save in a list.
std::string WithDigits(std::string pattern) {
    if (pattern.find('#') == std::string::npos) return pattern;
    std::string spelled;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const std::size_t close = pattern[i] == '[' ? pattern.find(']', i + 1) : std::string::npos;
        if (close != std::string::npos) {
            spelled.append(pattern, i, close + 1 - i);
            i = close;
        } else if (pattern[i] == '#') {
            spelled += "[0-9]";
        } else {
            spelled += pattern[i];
        }
    }
    return spelled;
}

void Like(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (IsNullArgument(arguments[0]) || IsNullArgument(arguments[1])) return;
    const std::string pattern = WithDigits(TextOf(arguments[1]));
    sqlite3_result_int(context, LikeMatch(pattern, TextOf(arguments[0])) ? 1 : 0);
}

// Half to even, as Basic rounds.
void Round(sqlite3_context* context, int count, sqlite3_value** arguments) {
    for (int i = 0; i < count; ++i)
        if (IsNullArgument(arguments[i])) return;
    if (sqlite3_value_type(arguments[0]) == SQLITE_INTEGER)
        return sqlite3_result_value(context, arguments[0]);
    const int places = count > 1 ? sqlite3_value_int(arguments[1]) : 0;
    if (places < 0 || places > 15)
        return sqlite3_result_error(context, "round: 0 to 15 places", -1);
    const double number = NumberOf(arguments[0]), scale = std::pow(10.0, places);
    const double scaled = number * scale;
    // 2.675 * 100 is 267.49999999999994: what its 15 digits say is what was meant.
    const double meant = platform::Val(ToText(Value(scaled)));
    sqlite3_result_double(context,
                          std::fabs(scaled) < 1e15 ? std::nearbyint(meant) / scale : number);
}

void Fix(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0]))
        sqlite3_result_int64(context, ToInt64(Value(std::trunc(NumberOf(arguments[0])))));
}

// -1, 0 or 1; the third value 0 compares to the letter.
void StrComp(sqlite3_context* context, int count, sqlite3_value** arguments) {
    for (int i = 0; i < count; ++i)
        if (IsNullArgument(arguments[i])) return;
    const std::string left = TextOf(arguments[0]), right = TextOf(arguments[1]);
    const bool exact = count > 2 && sqlite3_value_int(arguments[2]) == 0;
    const int order = exact ? left.compare(right) : platform::CompareNoCase(left, right);
    sqlite3_result_int(context, order < 0 ? -1 : order > 0 ? 1 : 0);
}

void Instr(sqlite3_context* context, int count, sqlite3_value** arguments) {
    for (int i = 0; i < count; ++i)
        if (IsNullArgument(arguments[i])) return;
    const sqlite3_int64 start = count == 3 ? sqlite3_value_int64(arguments[0]) : 1;
    if (start < 1) return sqlite3_result_error(context, "instr: a place before the text", -1);
    const std::string text = platform::LowerCase(TextOf(arguments[count - 2]));
    const std::string part = platform::LowerCase(TextOf(arguments[count - 1]));
    const std::size_t found = text.find(part, OffsetOf(text, start - 1));
    sqlite3_result_int64(context, found == std::string::npos
                                      ? 0
                                      : LengthOf(std::string_view(text).substr(0, found)) + 1);
}

void LowerCaseOf(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0])) Return(context, platform::LowerCase(TextOf(arguments[0])));
}

void UpperCaseOf(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0])) Return(context, platform::UpperCase(TextOf(arguments[0])));
}

void Len(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0]))
        sqlite3_result_int64(context, LengthOf(TextOf(arguments[0])));
}

void Nz(sqlite3_context* context, int count, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0]))
        sqlite3_result_value(context, arguments[0]);
    else if (count > 1)
        sqlite3_result_value(context, arguments[1]);
    else
        Return(context, "");
}

void IsNullValue(sqlite3_context* context, int, sqlite3_value** arguments) {
    sqlite3_result_int(context, IsNullArgument(arguments[0]) ? 1 : 0);
}

void CStr(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0])) Return(context, TextOf(arguments[0]));
}

void CLng(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0]))
        sqlite3_result_int64(context, ToInt64(Value(NumberOf(arguments[0]))));
}

void CDbl(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0])) sqlite3_result_double(context, NumberOf(arguments[0]));
}

void Int(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0]))
        sqlite3_result_int64(context, ToInt64(Value(std::floor(NumberOf(arguments[0])))));
}

void Sgn(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (IsNullArgument(arguments[0])) return;
    const double number = NumberOf(arguments[0]);
    sqlite3_result_int(context, number < 0 ? -1 : number > 0 ? 1 : 0);
}

void Power(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (!IsNullArgument(arguments[0]) && !IsNullArgument(arguments[1]))
        sqlite3_result_double(context, std::pow(NumberOf(arguments[0]), NumberOf(arguments[1])));
}

constexpr Registration registrations[] = {
    {"kv_left", 2, Left},
    {"kv_right", 2, Right},
    {"kv_mid", -1, Mid},
    {"kv_concat", -1, Concat},
    {"kv_add", 2, Add},
    {"kv_like", 2, Like},
    {"kv_round", -1, Round},
    {"kv_fix", 1, Fix},
    {"kv_strcomp", -1, StrComp},
    {"kv_instr", -1, Instr},
    {"kv_lcase", 1, LowerCaseOf},
    {"kv_ucase", 1, UpperCaseOf},
    {"kv_len", 1, Len},
    {"kv_nz", -1, Nz},
    {"kv_isnull", 1, IsNullValue},
    {"kv_cstr", 1, CStr},
    {"kv_clng", 1, CLng},
    {"kv_cdbl", 1, CDbl},
    {"kv_int", 1, Int},
    {"kv_val", 1, CDbl},
    {"kv_sgn", 1, Sgn},
    {"kv_power", 2, Power},
};

// One table lookup a byte; only what is not ASCII takes the long way.
int CompareTexts(void*, int leftSize, const void* left, int rightSize, const void* right) {
    const std::string_view a(static_cast<const char*>(left), static_cast<std::size_t>(leftSize));
    const std::string_view b(static_cast<const char*>(right), static_cast<std::size_t>(rightSize));
    const std::size_t common = a.size() < b.size() ? a.size() : b.size();
    for (std::size_t i = 0; i < common; ++i) {
        unsigned char x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
        if ((x | y) >= 0x80) return platform::CompareNoCase(a.substr(i), b.substr(i));
        if (x == y) continue;
        if (x >= 'A' && x <= 'Z') x = static_cast<unsigned char>(x + 32);
        if (y >= 'A' && y <= 'Z') y = static_cast<unsigned char>(y + 32);
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

} // namespace

int RegisterFunctions(sqlite3* database) {
    int result = sqlite3_create_collation_v2(database, collation, SQLITE_UTF8, nullptr,
                                             CompareTexts, nullptr);
    if (result == SQLITE_OK) result = Register(database, registrations);
    if (result == SQLITE_OK) result = RegisterStoredForms(database);
    if (result == SQLITE_OK) result = RegisterDates(database);
    if (result == SQLITE_OK) result = RegisterFirstAndLast(database);
    return result;
}

int RegisterEarlierOrder(sqlite3* database) {
    const auto compare = [](void*, int leftSize, const void* left, int rightSize,
                            const void* right) {
        return platform::LowerCase(
                   {static_cast<const char*>(left), static_cast<std::size_t>(leftSize)})
            .compare(platform::LowerCase(
                {static_cast<const char*>(right), static_cast<std::size_t>(rightSize)}));
    };
    return sqlite3_create_collation_v2(database, collation, SQLITE_UTF8, nullptr, compare, nullptr);
}

const Function* FunctionOfWord(std::string_view word) {
    for (const Function& function : functions)
        if (platform::EqualAsciiNoCase(function.word, word)) return &function;
    return nullptr;
}

} // namespace kavidex::data::embedded
