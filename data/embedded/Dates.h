// Dates of the dialect: as literals, as texts, as the file stores them, as numbers of days.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::data::embedded {

struct Moment {
    int year = 1899, month = 12, day = 30; // the day that counts as 0
    int hour = 0, minute = 0, second = 0;
};

// `2004-05-01` or `5/1/2004`, with `hh:mm` or `hh:mm:ss` behind it or not; false for anything else.
bool ReadMoment(std::string_view text, Moment& moment);
// From days since the day 0, with the time as their fraction; false beyond the years 100 to 9999.
bool ReadMoment(double days, Moment& moment);

// yyyy-mm-dd hh:mm:ss, so that their texts order as dates do.
std::string StoredForm(const Moment& moment);
bool ReadDate(std::string_view text, std::string& stored);

} // namespace kavidex::data::embedded
