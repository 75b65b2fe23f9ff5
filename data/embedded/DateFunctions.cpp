// The parts of a date, and FORMAT.
#include <cmath>
#include <cstdio>

#include "data/embedded/Arguments.h"
#include "data/embedded/Dates.h"
#include "data/embedded/Functions.h"

namespace kavidex::data::embedded {

namespace {

bool MomentOf(sqlite3_value* value, Moment& moment) {
    return sqlite3_value_type(value) == SQLITE_TEXT
               ? ReadMoment(RawText(value), moment)
               : ReadMoment(sqlite3_value_double(value), moment);
}

template <int Moment::*Part>
void PartOf(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (IsNullArgument(arguments[0])) return;
    Moment moment;
    if (!MomentOf(arguments[0], moment))
        return sqlite3_result_error(context, "a date that is not understood", -1);
    sqlite3_result_int(context, moment.*Part);
}

void DateValue(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (IsNullArgument(arguments[0])) return;
    Moment moment;
    if (!MomentOf(arguments[0], moment))
        return sqlite3_result_error(context, "a date that is not understood", -1);
    Return(context, StoredForm({moment.year, moment.month, moment.day}));
}

std::string Padded(int number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

// What a run of one letter asks for. After an hour, m counts minutes.
bool AppendPart(std::string& text, char letter, std::size_t count, const Moment& moment,
                bool afterHour) {
    switch (letter) {
    case 'y':
        if (count != 2 && count != 4) return false;
        text += count == 4 ? Padded(moment.year, 4) : Padded(moment.year % 100, 2);
        return true;
    case 'm': text += Padded(afterHour ? moment.minute : moment.month, count); break;
    case 'd': text += Padded(moment.day, count); break;
    case 'h': text += Padded(moment.hour, count); break;
    case 'n': text += Padded(moment.minute, count); break;
    case 's': text += Padded(moment.second, count); break;
    default: return false;
    }
    return count <= 2; // names of days and months differ from machine to machine
}

bool FormatMoment(std::string_view pattern, const Moment& moment, std::string& text) {
    bool afterHour = false;
    for (std::size_t i = 0; i < pattern.size();) {
        const char letter = pattern[i];
        if (letter < 'a' || letter > 'z') {
            text += letter;
            ++i;
            continue;
        }
        std::size_t count = 0;
        while (i < pattern.size() && pattern[i] == letter) ++count, ++i;
        if (!AppendPart(text, letter, count, moment, afterHour)) return false;
        afterHour = letter == 'h' || (afterHour && letter != 'm');
    }
    return true;
}

// 0, # and , before the full stop; 0 and # behind it; a % at the end.
bool FormatNumber(std::string_view pattern, double number, std::string& text) {
    const bool percent = !pattern.empty() && pattern.back() == '%';
    if (percent) pattern.remove_suffix(1), number *= 100;
    const std::size_t stop = pattern.find('.');
    const std::string_view whole = pattern.substr(0, stop);
    const std::string_view places =
        stop == std::string_view::npos ? std::string_view() : pattern.substr(stop + 1);
    if (whole.find_first_not_of("0#,") != std::string_view::npos ||
        places.find_first_not_of("0#") != std::string_view::npos || places.size() > 15 ||
        !(std::fabs(number) < 1e15))
        return false;
    std::size_t least = 0;
    for (const char c : whole) least += c == '0';
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", static_cast<int>(places.size()),
                  std::fabs(number));
    std::string digits = buffer;
    std::string fraction;
    if (const std::size_t point = digits.find('.'); point != std::string::npos) {
        fraction = digits.substr(point + 1);
        digits.erase(point);
    }
    while (!fraction.empty() && fraction.back() == '0' && places[fraction.size() - 1] == '#')
        fraction.pop_back();
    if (digits == "0" && least == 0) digits.clear();
    if (digits.size() < least) digits.insert(0, least - digits.size(), '0');
    if (whole.find(',') != std::string_view::npos)
        for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, ",");
    const bool zero = (digits + fraction).find_first_of("123456789") == std::string::npos;
    text = (number < 0 && !zero ? "-" : "") + digits + (fraction.empty() ? "" : "." + fraction) +
           (percent ? "%" : "");
    return true;
}

// By letters a date, by 0 and # a number; a pattern of another kind is refused.
void Format(sqlite3_context* context, int, sqlite3_value** arguments) {
    if (IsNullArgument(arguments[0]) || IsNullArgument(arguments[1])) return;
    const std::string pattern = platform::LowerCase(TextOf(arguments[1]));
    std::string text;
    Moment moment;
    const bool letters = pattern.find_first_of("ymdhns") != std::string::npos;
    const bool understood =
        letters ? MomentOf(arguments[0], moment) && FormatMoment(pattern, moment, text)
                : FormatNumber(pattern, NumberOf(arguments[0]), text);
    if (!understood) return sqlite3_result_error(context, "format: not understood", -1);
    Return(context, text);
}

constexpr Registration registrations[] = {
    {"kv_year", 1, PartOf<&Moment::year>},
    {"kv_month", 1, PartOf<&Moment::month>},
    {"kv_day", 1, PartOf<&Moment::day>},
    {"kv_hour", 1, PartOf<&Moment::hour>},
    {"kv_minute", 1, PartOf<&Moment::minute>},
    {"kv_second", 1, PartOf<&Moment::second>},
    {"kv_datevalue", 1, DateValue},
    {"kv_format", 2, Format},
};

// FIRST and LAST: the value of the first or the last row of a group, as they come.
struct Kept {
    bool any;
    sqlite3_value* value;
};

template <bool Last>
void Keep(sqlite3_context* context, int, sqlite3_value** arguments) {
    auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, sizeof(Kept)));
    if (!kept || (kept->any && !Last)) return;
    sqlite3_value_free(kept->value);
    kept->value = sqlite3_value_dup(arguments[0]);
    kept->any = true;
}

void GiveKept(sqlite3_context* context) {
    auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, 0));
    if (!kept || !kept->any) return;
    sqlite3_result_value(context, kept->value);
    sqlite3_value_free(kept->value);
    kept->value = nullptr;
}

} // namespace

int RegisterDates(sqlite3* database) { return Register(database, registrations); }

int RegisterFirstAndLast(sqlite3* database) {
    constexpr int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS;
    const int result = sqlite3_create_function_v2(database, "kv_first", 1, flags, nullptr, nullptr,
                                                  Keep<false>, GiveKept, nullptr);
    if (result != SQLITE_OK) return result;
    return sqlite3_create_function_v2(database, "kv_last", 1, flags, nullptr, nullptr, Keep<true>,
                                      GiveKept, nullptr);
}

} // namespace kavidex::data::embedded
