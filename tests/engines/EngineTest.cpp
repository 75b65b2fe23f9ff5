#include "tests/engines/Engine.h"

namespace kavidex::tests {

void EngineTest::SetUp() {
    machine.guids.real = true;
    if (const std::string reason = engine.missing(); !reason.empty()) GTEST_SKIP() << reason;
    database = engine.make();
    connection = database->Connect();
}

void EngineTest::TearDown() {
    connection.reset();
    database.reset();
}

data::Value EngineTest::One(const std::string& statement) {
    const data::RecordsetPtr rows = Open(statement);
    return rows->Eof() ? data::Value() : rows->Get(0);
}

std::string EngineTest::Text(const data::Value& value) const {
    std::string text = data::ToText(value);
    if (engine.PadsTexts()) text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace kavidex::tests
