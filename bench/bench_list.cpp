// A heading click in a list of 100,000 documents, against sorting their keys alone.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "controls/lists/DocumentRows.h"
#include "controls/lists/VirtualList.h"
#include "platform/text.h"

using namespace kavidex;

namespace {

constexpr std::size_t count = 100000;
constexpr controls::ListColumn columns[] = {
    {.caption = "Omschrijving", .field = "Omschrijving"},
    {.caption = "Toegevoegd op", .field = "Toegevoegd op", .sortField = "InsertSort"},
};

std::vector<controls::DocumentRow> Rows() {
    std::vector<controls::DocumentRow> rows(count);
    unsigned state = 1;
    const auto next = [&] { return state = state * 1664525U + 1013904223U; };
    for (std::size_t i = 0; i < count; ++i) {
        rows[i].id = static_cast<std::int32_t>(i) + 1;
        rows[i].description = "Brief " + std::to_string(next() >> 8) + " aan relatie";
        rows[i].sortKey = std::to_string(20000101 + next() % 260000) + "00001200";
    }
    return rows;
}

} // namespace

int main() {
    const auto rows = Rows();
    bool good = true;
    for (const std::size_t column : {0U, 1U}) {
        controls::VirtualList list(columns);
        list.SetRows(std::make_unique<controls::DocumentRows>(rows));
        std::vector<std::string> keys;
        for (const auto& row : rows)
            keys.push_back(platform::LowerCase(column ? row.sortKey : row.description));
        const auto times = bench::Measure([&] { list.HeadingClicked(column); },
                                          [&] {
                                              auto sorted = keys;
                                              std::stable_sort(sorted.begin(), sorted.end());
                                          });
        good &= bench::AtMost(column ? "click on a date heading, 100,000 rows / sorting the keys"
                                     : "click on a text heading, 100,000 rows / sorting the keys",
                              times, 2);
    }
    return good ? 0 : 1;
}
