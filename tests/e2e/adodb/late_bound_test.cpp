// The ADO engine on every road, held against the embedded engine that stands behind it.
#include "Roads.h"

#include "com/data/faces.h"
#include "data/Error.h"
#include "data/clsTable.h"
#include "data/modData.h"
#include "platform/Workstation.h"
#include "tests/fakes/Failures.h"
#include "tests/fakes/RecordingConnection.h"

namespace kavidex::tests {

namespace {

using data::Value;

class AdoEngine : public ObjectTest, public testing::WithParamInterface<Road> {
protected:
    void SetUp() override {
        ObjectTest::SetUp();
        if (GetParam() == Road::AdoClasses) {
            classes = std::make_unique<AdoClasses>();
            ASSERT_TRUE(classes->Registered()) << "no ProgIDs of ADO here";
        }
        late = std::make_shared<data::win32::LateAdoConnection>(Late(Hand(engine)));
    }
    void TearDown() override {
        late.reset();
        classes.reset();
        ObjectTest::TearDown();
    }
    ComPtr<IDispatch> Hand(const data::ConnectionPtr& connection) {
        return GetParam() == Road::OwnObjects ? com::Make<com::adodb::ConnectionObject>(connection)
                                              : com::Make<Stranger>(connection);
    }
    data::RecordsetPtr Open(const std::string& statement) { return late->Open({statement}); }

    std::shared_ptr<data::win32::LateAdoConnection> late;
    std::unique_ptr<AdoClasses> classes;
};

} // namespace

TEST_P(AdoEngine, LeavesTheHostsOwnTransactionToTheHost) {
    engine->BeginTrans();
    engine->Execute("insert into tblThing (Name) values ('host')");
    EXPECT_EQ(NumberOf([&] { late->RollbackTrans(); }), data::errors::noTransaction);
    EXPECT_EQ(NumberOf([&] { late->CommitTrans(); }), data::errors::noTransaction);
    engine->CommitTrans();
    EXPECT_EQ(Open("select * from tblThing")->RecordCount(), 1);
    EXPECT_EQ(late->DefaultDatabase(), engine->DefaultDatabase());
}

TEST_P(AdoEngine, CarriesTheParametersOfAStoredProcedure) {
    if (GetParam() == Road::ExecuteOnly) GTEST_SKIP() << "Execute alone carries no parameters";
    auto recording = std::make_shared<RecordingConnection>("SQL Server");
    data::win32::LateAdoConnection connection{Late(Hand(recording))};
    connection.Open({"AddToSettings",
                     data::CommandType::StoredProcedure,
                     {{"Section", data::AdoType::Char, 1, 5, std::string("Build")},
                      {"Key", data::AdoType::Char, 1, 9, std::string("DbVersion")},
                      {"Value", data::AdoType::Char, 1, 1, Value()}}});
    ASSERT_EQ(recording->commands.size(), 1u);
    const data::Command& sent = recording->commands[0];
    EXPECT_EQ(sent.text, "AddToSettings");
    EXPECT_EQ(sent.type, data::CommandType::StoredProcedure);
    ASSERT_EQ(sent.parameters.size(), 3u);
    EXPECT_EQ(sent.parameters[1].name, "Key");
    EXPECT_EQ(sent.parameters[1].size, 9);
    EXPECT_EQ(sent.parameters[1].type, data::AdoType::Char);
    EXPECT_EQ(sent.parameters[1].value, Value(std::string("DbVersion")));
    EXPECT_EQ(sent.parameters[2].value, Value());
}

TEST_P(AdoEngine, ATableHandsOutTheObjectItselfAndEachReadAnother) {
    Fill(2);
    engine->Execute("update tblThing set Price = null");
    auto table = std::make_shared<data::clsTable>(platform::TheWorkstation());
    table->SetDbConnection(late);
    table->SetTableName("tblThing");
    ASSERT_TRUE(table->OpenDbConnection());
    const Late face(com::FaceOf<data::clsTable>::Make(table));
    table->MoveNext();
    const Late rows = face.Child(L"RecordSet");
    const auto name = [](const Late& of) {
        return of.Child(L"Fields").Child(L"Item", {"Name"}).Get(L"Value").ToText();
    };
    EXPECT_EQ(name(rows), "name 2") << "it stands where the table stands";
    EXPECT_EQ(face.Call(L"GetFieldLength", {"Name"}).Type(), VT_I4);
    EXPECT_EQ(face.Call(L"GetField", {"Price"}).Type(), VT_I2);
    EXPECT_EQ(face.Call(L"GetField", {"Words"}).Type(), VT_BSTR) << "null by its type";
    if (GetParam() != Road::ExecuteOnly) {
        EXPECT_EQ(face.Child(L"RecordSet").Object(), rows.Object()) << "no wrapper, made anew";
        rows.Call(L"MoveFirst");
        EXPECT_EQ(table->GetField("Name"), Value(std::string("name 1"))) << "one current row";
        table->SetField("Name", std::string("new"));
        ASSERT_TRUE(table->UpdateCurrentRow());
        EXPECT_EQ(name(rows), "new");
        rows.Call(L"MoveLast");
    }
    engine->Execute("delete from tblThing where Amount = 20");
    ASSERT_TRUE(table->OpenDbConnection());
    EXPECT_EQ(table->RecordCount(), 1);
    EXPECT_EQ(rows.Get(L"RecordCount").ToInt32(), 2) << "an old reference keeps its rows";
    EXPECT_EQ(name(rows), "name 2");
}

INSTANTIATE_TEST_SUITE_P(Roads, AdoEngine,
                         testing::Values(Road::OwnObjects, Road::AdoClasses, Road::ExecuteOnly),
                         RoadName);

namespace {

// Fails the first time that a connection is put into it, as on a busy machine.
class MoodyCommand : public com::adodb::CommandObject {
public:
    static inline int moods = 0;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD kind,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* info,
                                     UINT* bad) override {
        if ((kind & DISPATCH_PROPERTYPUTREF) != 0 && moods > 0) return --moods, E_OUTOFMEMORY;
        return CommandObject::Invoke(id, iid, locale, kind, parameters, result, info, bad);
    }
};

// Cannot be made the first time.
class MoodyRecordset : public com::adodb::RecordsetObject {
public:
    static inline int moods = 0;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (moods > 0) return --moods, E_OUTOFMEMORY;
        return RecordsetObject::QueryInterface(iid, object);
    }
};

struct AdoConnection : ObjectTest {};

} // namespace

TEST_F(AdoConnection, IsWholeAgainOnceAFailureHasPassed) {
    Fill(1);
    const ClassUnder<MoodyCommand> command{L"ADODB.Command"};
    const ClassUnder<MoodyRecordset> recordset{L"ADODB.Recordset"};
    for (int* const moods : {&MoodyCommand::moods, &MoodyRecordset::moods}) {
        data::win32::LateAdoConnection late{Late(ComPtr<IDispatch>(com::Make<Stranger>(engine)))};
        *moods = 1;
        EXPECT_EQ(late.Open({"select * from tblThing"})->RecordCount(), 1);
        EXPECT_EQ(*moods, 0);
        const auto found =
            late.Open({"select * from tblThing where Amount = ?",
                       data::CommandType::Text,
                       {{"Amount", data::AdoType::Integer, 1, 4, std::int64_t{10}}}});
        EXPECT_EQ(found->RecordCount(), 1) << "by Execute alone there are no parameters";
    }
}

TEST_F(AdoConnection, SpeaksTheDialectOfWhateverItsObjectIsOpenedOn) {
    std::shared_ptr<RecordingConnection> server;
    const auto opener = [&](const std::string& name) {
        return server = std::make_shared<RecordingConnection>(name);
    };
    const Late object(ComPtr<IDispatch>(com::Make<Stranger>(com::adodb::Opener(opener))));
    const data::ConnectionPtr late = std::make_shared<data::win32::LateAdoConnection>(object);
    object.Call(L"Open", {"ACCESS"});
    EXPECT_TRUE(data::IsAccessConnection(late));
    object.Call(L"Close");
    object.Call(L"Open", {"MariaDB"}); // speaks as MySQL does, and needs its backslashes doubled
    EXPECT_TRUE(data::IsMySqlConnection(late));
    data::OpenRecordset(platform::TheWorkstation(), "select 'a\\b'", late);
    ASSERT_EQ(server->commands.size(), 1u);
    EXPECT_EQ(server->commands[0].text, "select 'a\\\\b'");
}

} // namespace kavidex::tests
