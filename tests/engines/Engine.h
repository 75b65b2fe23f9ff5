// The engines that the suite runs over, each with the quirks that a test may ask about.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "data/Connection.h"
#include "data/schema/schema.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/On.h"

namespace kavidex::tests {

// A new database of its own, gone with the object.
class TestDatabase {
public:
    virtual ~TestDatabase() = default;
    virtual data::ConnectionPtr Connect() = 0; // a further connection each time
};

struct Engine {
    std::string name;
    data::schema::Dialect dialect;
    std::string (*missing)(); // why it cannot be tested here; empty when it can
    std::unique_ptr<TestDatabase> (*make)();

    // Quirks.
    bool DoublesBackslashesOnExecute() const { return dialect == data::schema::Dialect::MySql; }
    bool HasAccessLikeWildcards() const { return dialect == data::schema::Dialect::Access; }
    // Definitions of tables end an open transaction.
    bool CommitsOnDefinition() const { return dialect == data::schema::Dialect::MySql; }
    bool HasServerSessions() const { return dialect != data::schema::Dialect::Access; }
    // Texts of a CHAR column come back with the blanks that fill it.
    bool PadsTexts() const { return dialect == data::schema::Dialect::SqlServer; }
    bool HasProcedures() const { return HasServerSessions(); }
    // Objects of ADODB belong to the thread that made them.
    bool ServesSeveralThreads() const {
        return name != "strict" && name != "handedOver" && name != "executeOnly" &&
               !name.starts_with("ado");
    }
    // A new database has the base schema already.
    bool ComesWithSchema() const { return dialect == data::schema::Dialect::Access; }
    std::int64_t FirstAutoNumber() const {
        return dialect == data::schema::Dialect::Access ? 1 : 1000;
    }
};

inline void PrintTo(const Engine& engine, std::ostream* out) { *out << engine.name; }

const std::vector<Engine>& Engines();

// A fresh database and one connection to it; skipped with the reason where the engine is missing.
class EngineTest : public testing::TestWithParam<Engine> {
protected:
    void SetUp() override;
    void TearDown() override;

    const Engine& engine = GetParam();
    FakeWorkstation machine;
    std::unique_ptr<TestDatabase> database;
    data::ConnectionPtr connection;

    data::RecordsetPtr Open(const std::string& statement) { return connection->Open({statement}); }
    // The first value of the first row.
    data::Value One(const std::string& statement);
    // The text that was stored, whatever the column was filled with.
    std::string Text(const data::Value& value) const;
};

// A test fixture that runs over all engines, one instance each.
#define KAVIDEX_OVER_ENGINES(Fixture)                                                              \
    INSTANTIATE_TEST_SUITE_P(Engines, Fixture, testing::ValuesIn(kavidex::tests::Engines()),       \
                             [](const auto& param) { return param.param.name; })

} // namespace kavidex::tests
