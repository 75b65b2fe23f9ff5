#include "data/embedded/Dates.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "platform/text.h"

namespace kavidex::data::embedded {

namespace {

// The whole numbers of "2004-05-01"; empty when anything else stands between the separators.
std::vector<int> Numbers(std::string_view text, char separator) {
    std::vector<int> numbers;
    while (!text.empty()) {
        int number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || number < 0) return {};
        numbers.push_back(number);
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        if (text.empty()) break;
        if (text[0] != separator || text.size() == 1) return {};
        text.remove_prefix(1);
    }
    return numbers;
}

int DaysIn(int month, int year) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : days[month - 1];
}

} // namespace

bool ReadMoment(std::string_view text, Moment& moment) {
    text = platform::TrimView(text);
    const std::size_t blank = text.find(' ');
    const std::string_view dayText = text.substr(0, blank);
    std::vector<int> time{0, 0, 0};
    if (blank != std::string_view::npos) {
        time = Numbers(platform::TrimView(text.substr(blank)), ':');
        if (time.size() == 2) time.push_back(0);
        if (time.size() != 3 || time[0] > 23 || time[1] > 59 || time[2] > 59) return false;
    }
    Moment read{0, 0, 0, time[0], time[1], time[2]};
    if (const auto dashed = Numbers(dayText, '-'); dashed.size() == 3) {
        read.year = dashed[0], read.month = dashed[1], read.day = dashed[2];
    } else if (const auto slashed = Numbers(dayText, '/'); slashed.size() == 3) {
        read.month = slashed[0], read.day = slashed[1], read.year = slashed[2];
    }
    if (read.year < 100 || read.year > 9999 || read.month < 1 || read.month > 12 || read.day < 1 ||
        read.day > DaysIn(read.month, read.year))
        return false;
    moment = read;
    return true;
}

bool ReadMoment(double days, Moment& moment) {
    using namespace std::chrono;
    if (!(std::fabs(days) < 3e6)) return false;
    const double whole = std::floor(days);
    const auto seconds = static_cast<int>(std::min(86399.0, std::round((days - whole) * 86400)));
    const year_month_day date(sys_days(year(1899) / 12 / 30) +
                              std::chrono::days(static_cast<int>(whole)));
    moment = {static_cast<int>(date.year()),
              static_cast<int>(static_cast<unsigned>(date.month())),
              static_cast<int>(static_cast<unsigned>(date.day())),
              seconds / 3600,
              seconds / 60 % 60,
              seconds % 60};
    return moment.year >= 100 && moment.year <= 9999;
}

std::string StoredForm(const Moment& moment) {
    char buffer[72];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", moment.year, moment.month,
                  moment.day, moment.hour, moment.minute, moment.second);
    return buffer;
}

bool ReadDate(std::string_view text, std::string& stored) {
    Moment moment;
    if (!ReadMoment(text, moment)) return false;
    stored = StoredForm(moment);
    return true;
}

} // namespace kavidex::data::embedded
