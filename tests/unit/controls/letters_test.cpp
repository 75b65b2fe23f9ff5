// The number of a letter, and the file of its values.
#include "controls/intake/Letters.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

#include "data/embedded/EmbeddedDatabase.h"
#include "model/uniqueNumber.h"
#include "platform/Error.h"
#include "tests/fakes/FakeWorkstation.h"

namespace kavidex::controls {
namespace {

TEST(UniqueNumber, IsSharedByNobodyHoweverManyRaiseItAtOnce) {
    tests::FakeWorkstation machine;
    const auto path = machine.Path("letters.kdb");
    data::EmbeddedDatabase::Create(path)->Close();
    std::vector<std::int64_t> numbers[3];
    std::vector<std::thread> users;
    for (auto& own : numbers)
        users.emplace_back([&] {
            const auto connection = data::EmbeddedDatabase::Open(path);
            while (own.size() < 20) try {
                    own.push_back(model::RaiseUniqueNumber(connection));
                } catch (const platform::Error&) { // busy: told to the user, who tries again
                }
        });
    for (auto& user : users) user.join();
    std::set<std::int64_t> all;
    for (const auto& own : numbers) all.insert(own.begin(), own.end());
    EXPECT_EQ(all.size(), 60U);
    EXPECT_EQ(*all.rbegin(), 60);
}

TEST(ValueFile, IsRewrittenInItsOwnEncodingLineEndsAndSeparator) {
    const auto wide = [](const std::string& text) {
        std::string bytes = "\xFF\xFE";
        for (const char c : text) bytes.append({c, '\0'});
        return bytes;
    };
    const struct {
        std::string before, after;
    } rows[] = {
        {"", "DocumentId=5\r\n"},
        {"\xEF\xBB\xBFnaam=\xC3\xA9\nDOCUMENTID=1\n", "\xEF\xBB\xBFnaam=\xC3\xA9\nDocumentId=5\n"},
        {"naam;\xE9\r\ndocumentid;4\r\nmy documentid", "naam;\xE9\r\nDocumentId;5\r\n"},
        {"a:1\rb:2", "a:1\rb:2\rDocumentId:5\r"},
        {wide("a=1\r\ndocumentid=2\r\nb=2"), wide("a=1\r\nb=2\r\nDocumentId=5\r\n")},
    };
    for (const auto& row : rows) EXPECT_EQ(WithDocumentId(row.before, 5), row.after);
}

} // namespace
} // namespace kavidex::controls
