#include "data/embedded/Dates.h"

#include <charconv>
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

bool ReadDate(std::string_view text, std::string& stored) {
    text = platform::TrimView(text);
    const std::size_t blank = text.find(' ');
    const std::string_view dayText = text.substr(0, blank);
    std::vector<int> time{0, 0, 0};
    if (blank != std::string_view::npos) {
        time = Numbers(platform::TrimView(text.substr(blank)), ':');
        if (time.size() == 2) time.push_back(0);
        if (time.size() != 3 || time[0] > 23 || time[1] > 59 || time[2] > 59) return false;
    }
    int year = 0, month = 0, day = 0;
    if (const auto dashed = Numbers(dayText, '-'); dashed.size() == 3) {
        year = dashed[0], month = dashed[1], day = dashed[2];
    } else if (const auto slashed = Numbers(dayText, '/'); slashed.size() == 3) {
        month = slashed[0], day = slashed[1], year = slashed[2];
    }
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 ||
        day > DaysIn(month, year))
        return false;
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d:%02d", year, month, day, time[0],
                  time[1], time[2]);
    stored = buffer;
    return true;
}

} // namespace kavidex::data::embedded
