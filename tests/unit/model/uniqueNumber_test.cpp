// The running number of letters on an engine that does not tell how many rows it touched.
#include "model/uniqueNumber.h"

#include <utility>

#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {
namespace {

struct Silent : RecordingConnection {
    using RecordingConnection::RecordingConnection;
    std::function<void()> afterRead; // once
    data::RecordsetPtr Open(const data::Command& command) override {
        auto rows = RecordingConnection::Open(command);
        if (afterRead) std::exchange(afterRead, nullptr)();
        return rows;
    }
    std::int64_t Execute(std::string_view statement) override {
        RecordingConnection::Execute(statement);
        return -1;
    }
};

class SilentEngine : public ModelDatabase {};

TEST_F(SilentEngine, GivesNoNumberTwice) {
    const auto mine = std::make_shared<Silent>("", database),
               theirs = std::make_shared<Silent>("", database);
    EXPECT_GT(model::RaiseUniqueNumber(mine), 0);
    for (int i = 0; i < 3; ++i) {
        std::int64_t other = 0; // raised after this one was read
        mine->afterRead = [&] { other = model::RaiseUniqueNumber(theirs); };
        EXPECT_GT(model::RaiseUniqueNumber(mine), other);
        EXPECT_GT(other, 0);
    }
}

} // namespace
} // namespace kavidex::tests
