// The ways on which a connection can reach the ADO engine, each over the embedded engine's objects.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "com/adodb/CommandObject.h"
#include "com/adodb/ConnectionFace.h"
#include "com/adodb/ConnectionObject.h"
#include "com/adodb/RecordsetObject.h"
#include "com/dispatch/LiveObjects.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/win32/LateAdoConnection.h"
#include "platform/win32/Late.h"
#include "tests/e2e/doubles/AdoClasses.h"

namespace kavidex::tests {

enum class Road { OwnObjects, AdoClasses, ExecuteOnly };

inline std::string RoadName(const testing::TestParamInfo<Road>& info) {
    constexpr const char* names[] = {"OwnObjects", "AdoClasses", "ExecuteOnly"};
    return names[static_cast<int>(info.param)];
}

// One embedded database in memory, reached directly (`engine`) and by name (`late`). Afterwards no
// object is left.
class ObjectTest : public testing::Test {
protected:
    void SetUp() override {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        engine = data::EmbeddedDatabase::CreateInMemory();
        engine->Execute(
            "create table tblThing (Id COUNTER CONSTRAINT IdThing PRIMARY KEY, "
            "Name TEXT(50), Amount LONG, Price DOUBLE, Done BIT, Made DATETIME, Words MEMO)");
    }
    void TearDown() override {
        engine.reset();
        EXPECT_EQ(com::LiveObjects(), 0);
        CoUninitialize();
    }

    void Fill(int rows) {
        engine->BeginTrans();
        for (int i = 1; i <= rows; ++i)
            engine->Execute("insert into tblThing (Name, Amount, Price) values ('name " +
                            std::to_string(i) + "', " + std::to_string(i * 10) + ", " +
                            std::to_string(i) + ".5)");
        engine->CommitTrans();
    }

    data::ConnectionPtr engine;
};

} // namespace kavidex::tests
