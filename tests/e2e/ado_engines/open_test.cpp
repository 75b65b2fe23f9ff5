// DbOpenConnection with ADO's own identifiers: what a host gets that sets DbProvider and DbPath.
#include "data/ConnectionOpener.h"
#include "data/clsSettings.h"
#include "data/modData.h"
#include "data/win32/LateAdoFactory.h"
#include "tests/e2e/doubles/AdoClasses.h"
#include "tests/fakes/FakeWorkstation.h"

#include <gtest/gtest.h>

namespace kavidex::tests {

namespace {

class NoRepair : public data::AccessRepair {
    void Configure(std::string_view, std::string_view) override {}
};

class DbOpenConnection : public testing::Test {
protected:
    void SetUp() override {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        classes = std::make_unique<AdoClasses>();
        ASSERT_TRUE(classes->Registered());
    }
    void TearDown() override {
        connection.reset();
        classes.reset();
        CoUninitialize();
    }
    data::OpenResult Open(const char* provider, const std::string& path) {
        data::win32::LateAdoFactory factory;
        NoRepair repair;
        data::ConnectionOpener opener(machine, factory, repair);
        return opener.DbOpenConnection(
            provider, path, opened,
            [this](const data::ConnectionPtr& given) { connection = given; });
    }

    FakeWorkstation machine;
    std::unique_ptr<AdoClasses> classes;
    data::ConnectionPtr connection;
    bool opened = false;
};

} // namespace

TEST_F(DbOpenConnection, OpensAnAccessFileWithTheBuiltInPassword) {
    const std::string path = machine.Path("kavidex.mdb");
    data::EmbeddedDatabase::Create(path)->Close();
    ASSERT_EQ(Open("MsAccess", path), data::openDone)
        << (machine.messages.shown.empty() ? "" : machine.messages.shown[0].text);
    EXPECT_TRUE(opened);
    ASSERT_TRUE(connection && connection->IsOpen());
    EXPECT_TRUE(data::IsAccessConnection(connection));
    data::clsSettings settings(machine);
    settings.SetDbConnection(connection);
    std::string version;
    EXPECT_TRUE(settings.GetSetting("Build", "DbVersion", version));
    EXPECT_EQ(version, "1.0.8");
}

TEST_F(DbOpenConnection, GivesAClosedConnectionWithoutAWordForWhatIsNotThere) {
    for (const auto& [provider, path] :
         {std::pair{"msaccess", machine.Path("missing.mdb")},
          std::pair{"sqlserver", std::string("nowhere.invalid;DATABASE=x")}}) {
        connection.reset();
        EXPECT_EQ(Open(provider, path), data::openDone);
        ASSERT_TRUE(connection) << provider;
        EXPECT_FALSE(connection->IsOpen());
        EXPECT_TRUE(machine.messages.shown.empty());
    }
}

} // namespace kavidex::tests
