// What became of documents that were brought in, and how the user is told of those that were not
// filed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/intake/IntakeSite.h"

namespace kavidex::controls {

// Results of AddFiles. Every file that was filed before a failure stays filed.
namespace addFiles {
constexpr std::int32_t done = 0;
constexpr std::int32_t noDossier = -1; // no dossier is open, or there is no connection
constexpr std::int32_t noFolder = -2;  // no folder of that id in this dossier
constexpr std::int32_t noStore = -3;   // the document store is not set up
constexpr std::int32_t noFile = -4;    // a file is missing or cannot be read
constexpr std::int32_t notFiled = -5;  // the store or the database refused
constexpr std::int32_t stopped = -6;   // the user stopped it
} // namespace addFiles

struct FilingReport {
    std::int32_t result = addFiles::done; // of the first failure
    std::vector<std::string> causes;      // a line for each that was not filed
    std::vector<std::size_t> left;        // which entries those were
    std::vector<std::size_t> untried;     // and those that were not even tried
    bool stopped = false;                 // by the user
    std::vector<ItemPtr> filed;           // new items, folders too

    void Failed(std::int32_t number, std::string cause) {
        if (result == addFiles::done) result = number;
        causes.push_back(std::move(cause));
    }
    bool Done() const { return result == addFiles::done; }
};

// Logs every cause and shows them in one box, or nothing where all was filed; the result.
std::int32_t TellNotAdded(const IntakeSite& site, const FilingReport& report);

std::int32_t NumberOf(const std::exception& error);

// What the box says of a file that was refused with that number; the log has the words of whatever
// refused it.
std::string CauseOf(const IntakeSite& site, const std::string& file, std::int32_t number);
// Of one that cannot be read; null where the number says nothing to a user.
std::optional<std::string> CauseOfReading(const IntakeSite& site, const std::string& file,
                                          std::int32_t number);
// The same of one whose source cannot be read, and of one that the store or the database refused.
std::string CauseInSource(const IntakeSite& site, const std::string& file, std::int32_t number);
std::string CauseInStore(const IntakeSite& site, const std::string& file, std::int32_t number);

} // namespace kavidex::controls
