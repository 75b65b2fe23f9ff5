#include "model/clsItemCol.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/Error.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/RecordingConnection.h"

namespace kavidex::tests {
namespace {

using model::clsItem;
using model::clsItemCol;
using model::NodeId;

struct Collection : testing::Test {
    FakeWorkstation machine;
    std::shared_ptr<RecordingConnection> connection = std::make_shared<RecordingConnection>();
};

TEST_F(Collection, AnswersByPositionAndByKey) {
    clsItemCol items(machine);
    for (NodeId id : {5, 17, -3, 9}) items.AddItem(id, "tab", nullptr, 0, "", connection, 1);
    EXPECT_TRUE(connection->statements.empty());
    EXPECT_EQ(items.Item(2)->Id(), 17);
    NodeId again = 17;
    EXPECT_THROW(items.AddItem(again, "tab", nullptr, 0, "", connection, 1), platform::Error);
    items.Remove("C17");
    items.Remove("c-3");
    items.Remove(5);
    EXPECT_EQ(items.Count(), 1);
    EXPECT_EQ(items.Item(1)->Id(), 9);
    for (const char* key : {"17", "C17", "C", "", "C9x", "C99999999999"})
        EXPECT_THROW(items.Remove(key), platform::Error) << key;
    EXPECT_THROW(items.Item(0), platform::Error);
    EXPECT_THROW(items.Item(2), platform::Error);
    EXPECT_THROW(items.Item(40000), platform::Error);
    for (NodeId id = 20; items.Count() < 40000; ++id)
        items.Append(std::make_shared<clsItem>(id, "tif", 0, "x", connection));
    EXPECT_EQ(items.Item(40000), items.Items().back());
}

// Against a plain list, through ends, gaps, ids changed behind its back and ids held twice.
TEST_F(Collection, KeepsOrderAndKeysWhateverIsRemoved) {
    clsItemCol items(machine);
    std::vector<NodeId> expected;
    const auto add = [&](NodeId id) {
        items.Append(std::make_shared<clsItem>(id, "tif", 0, "x", connection));
        expected.push_back(id);
    };
    const auto remove = [&](NodeId id) {
        items.Remove(id);
        expected.erase(std::find(expected.begin(), expected.end(), id));
    };
    const auto agree = [&] {
        ASSERT_EQ(items.Count(), static_cast<int>(expected.size()));
        std::vector<NodeId> ids;
        for (const auto& item : items.Items()) ids.push_back(item->Id());
        EXPECT_EQ(ids, expected);
    };
    for (int i = 1; i <= 300; ++i) add(i * 7 % 301); // each of 1 to 300 once
    for (int i = 0; i < 400; ++i) {
        const auto place = static_cast<std::size_t>(i * 31) % expected.size();
        remove(i % 5 == 0 ? expected.front() : i % 5 == 1 ? expected.back() : expected[place]);
        EXPECT_EQ(items.Find(expected[place % expected.size()])->Id(),
                  expected[place % expected.size()]);
        if (i % 3 == 0) agree();
        add(1000 + i);
    }
    agree();
    items.Items()[200]->SetId(5000);
    expected[200] = 5000;
    EXPECT_EQ(items.Find(5000), items.Items()[200]);
    add(5000);
    remove(5000);
    EXPECT_EQ(items.Find(5000), items.Items().back());
    agree();
    while (!expected.empty()) remove(expected[expected.size() / 2]);
    EXPECT_EQ(items.Count(), 0);
}

} // namespace
} // namespace kavidex::tests
