// Values as a column keeps them: yes as -1, whole numbers rounded half to even, dates in one form.
#include <algorithm>
#include <cmath>

#include "data/embedded/Arguments.h"
#include "data/embedded/Dates.h"
#include "data/embedded/Functions.h"
#include "data/embedded/Types.h"

namespace kavidex::data::embedded {

namespace {

void Misfit(sqlite3_context* context) {
    sqlite3_result_error(context, "a value does not fit its column", -1);
    sqlite3_result_error_code(context, SQLITE_MISMATCH);
}

// Whether the text is a number and nothing else; `number` receives it.
bool IsNumber(std::string_view text, double& number) {
    text = platform::TrimView(text);
    if (text.empty() || text.find_first_not_of("+-.0123456789eE") != std::string_view::npos)
        return false;
    if (text.find_first_of("0123456789") == std::string_view::npos) return false;
    number = platform::Val(text);
    return true;
}

// Null is no.
void Bit(sqlite3_context* context, int, sqlite3_value** arguments) {
    bool yes = false;
    switch (sqlite3_value_type(arguments[0])) {
    case SQLITE_NULL: break;
    case SQLITE_INTEGER: yes = sqlite3_value_int64(arguments[0]) != 0; break;
    case SQLITE_FLOAT: yes = sqlite3_value_double(arguments[0]) != 0; break;
    default: {
        const std::string_view text = platform::TrimView(RawText(arguments[0]));
        double number = 0;
        if (platform::EqualAsciiNoCase(text, "true") || platform::EqualAsciiNoCase(text, "yes"))
            number = -1;
        else if (!platform::EqualAsciiNoCase(text, "false") &&
                 !platform::EqualAsciiNoCase(text, "no") && !IsNumber(text, number))
            return Misfit(context);
        yes = number != 0;
    }
    }
    sqlite3_result_int(context, yes ? -1 : 0);
}

// What is no number stays as it is: the column's own check refuses it.
void Whole(sqlite3_context* context, int, sqlite3_value** arguments) {
    double number = 0;
    switch (sqlite3_value_type(arguments[0])) {
    case SQLITE_FLOAT: number = sqlite3_value_double(arguments[0]); break;
    case SQLITE_TEXT:
        if (IsNumber(RawText(arguments[0]), number)) break;
        [[fallthrough]];
    default: return sqlite3_result_value(context, arguments[0]);
    }
    if (!(std::fabs(number) < 9e15)) return sqlite3_result_value(context, arguments[0]);
    sqlite3_result_int64(context, static_cast<sqlite3_int64>(std::nearbyint(number)));
}

bool StoredDate(sqlite3_value* value, std::string& stored) {
    Moment moment;
    const bool text = sqlite3_value_type(value) == SQLITE_TEXT;
    if (!(text ? ReadMoment(RawText(value), moment)
               : ReadMoment(sqlite3_value_double(value), moment)))
        return false;
    stored = StoredForm(moment);
    return true;
}

void Date(sqlite3_context* context, int, sqlite3_value** arguments) {
    std::string stored;
    if (IsNullArgument(arguments[0])) return;
    if (!StoredDate(arguments[0], stored)) return Misfit(context);
    Return(context, stored);
}

// For files of an earlier form, whose dates may be any text.
void DateOrAsItIs(sqlite3_context* context, int, sqlite3_value** arguments) {
    std::string stored;
    if (IsNullArgument(arguments[0]) || !StoredDate(arguments[0], stored))
        return sqlite3_result_value(context, arguments[0]);
    Return(context, stored);
}

constexpr Registration registrations[] = {
    {"kv_bit", 1, Bit},
    {"kv_whole", 1, Whole},
    {"kv_date", 1, Date},
    {"kv_anydate", 1, DateOrAsItIs},
};

// Dates before everything that is none; those in the stored form need no reading.
int CompareDates(void*, int leftSize, const void* left, int rightSize, const void* right) {
    const std::string_view a(static_cast<const char*>(left), static_cast<std::size_t>(leftSize));
    const std::string_view b(static_cast<const char*>(right), static_cast<std::size_t>(rightSize));
    if (a == b) return 0;
    std::string storedA, storedB;
    const bool dateA = ReadDate(a, storedA), dateB = ReadDate(b, storedB);
    if (dateA != dateB) return dateA ? -1 : 1;
    return dateA ? storedA.compare(storedB) : platform::CompareNoCase(a, b);
}

} // namespace

int RegisterStoredForms(sqlite3* database) {
    const int result = sqlite3_create_collation_v2(database, dateCollation, SQLITE_UTF8, nullptr,
                                                   CompareDates, nullptr);
    return result == SQLITE_OK ? Register(database, registrations) : result;
}

} // namespace kavidex::data::embedded
