// A heading click in a list of 100,000 documents, against sorting their keys alone.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "controls/lists/ListRows.h"
#include "controls/lists/VirtualList.h"
#include "data/rows/ClientRecordset.h"
#include "platform/text.h"

using namespace kavidex;

namespace {

constexpr std::size_t count = 100000;
constexpr controls::ListColumn columns[] = {
    {.caption = "Omschrijving", .field = "Omschrijving"},
    {.caption = "Toegevoegd op", .field = "Toegevoegd op", .sortField = "InsertSort"},
};
constexpr const char* fields[] = {"Id", "Omschrijving", "InsertSort"};

struct Rows {
    std::vector<std::string> keys[2]; // by column, as they compare
    data::RowStore store{std::size(fields)};

    Rows() {
        unsigned state = 1;
        const auto next = [&] { return state = state * 1664525U + 1013904223U; };
        for (std::size_t i = 0; i < count; ++i) {
            const auto name = "Brief " + std::to_string(next() >> 8) + " aan relatie";
            const auto moment = std::to_string(20000101 + next() % 260000) + "1200";
            store.AddInteger(static_cast<std::int64_t>(i) + 1);
            store.AddText(name);
            store.AddText(moment);
            keys[0].push_back(platform::LowerCase(name));
            keys[1].push_back(moment);
        }
    }
};

} // namespace

int main() {
    const Rows rows;
    auto names = std::make_shared<std::vector<data::Field>>(std::size(fields));
    for (std::size_t i = 0; i < std::size(fields); ++i) (*names)[i].name = fields[i];
    bool good = true;
    for (const std::size_t column : {0U, 1U}) {
        controls::VirtualList list(columns);
        list.SetRows(std::make_unique<controls::RecordsetRows>(
            std::make_unique<data::ClientRecordset>(data::ResultRows{names, rows.store}, nullptr),
            "Id"));
        const auto times = bench::Measure([&] { list.HeadingClicked(column); },
                                          [&] {
                                              auto sorted = rows.keys[column];
                                              std::stable_sort(sorted.begin(), sorted.end());
                                          });
        good &= bench::AtMost(column ? "click on a date heading, 100,000 rows / sorting the keys"
                                     : "click on a text heading, 100,000 rows / sorting the keys",
                              times, 2);
    }
    return good ? 0 : 1;
}
