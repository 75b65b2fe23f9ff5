// The ADODB-compatible objects as scripts call them, and connections crossing the border.
#include "Roads.h"

#include "com/data/faces.h"
#include "com/model/faces.h"
#include "data/Error.h"
#include "data/clsTable.h"
#include "data/schema/clsUpdateDb.h"
#include "data/win32/Convert.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "platform/Workstation.h"
#include "tests/fakes/Failures.h"

namespace kavidex::tests {

namespace {

using data::Value;

class Objects : public ObjectTest {
protected:
    void SetUp() override {
        ObjectTest::SetUp();
        connection = Late(com::adodb::ObjectOf(engine));
    }
    void TearDown() override {
        connection = {};
        ObjectTest::TearDown();
    }
    Late Recordset(const char* statement) { return Late(connection.Call(L"Execute", {statement})); }
    static Variant Default(const Late& object, std::initializer_list<Variant> arguments) {
        return object.Invoke(DISPID_VALUE, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments);
    }

    Late connection;
};

} // namespace

TEST_F(Objects, GetRowsGivesColumnsByRowsFromTheCurrentRowOn) {
    Fill(4);
    const Late rows = Recordset("select Id, Name, Amount from tblThing order by Id");
    rows.Call(L"MoveNext");
    const auto two = platform::win32::ColumnsOf(
        rows.Call(L"GetRows", {2, Variant::Missing(), platform::win32::ArrayOf({"Amount", "Name"})})
            .Get());
    ASSERT_EQ(two.size(), 2u);
    ASSERT_EQ(two[0].size(), 2u);
    EXPECT_EQ(two[0][1].ToInt32(), 30);
    EXPECT_EQ(two[1][0].ToText(), "name 2");
    EXPECT_EQ(platform::win32::ColumnsOf(rows.Call(L"GetRows").Get())[0].size(), 1u);
    EXPECT_TRUE(rows.Get(L"EOF").ToBool());
    EXPECT_EQ(NumberOf([&] { rows.Call(L"GetRows"); }), data::errors::badEof);
}

TEST_F(Objects, RowsAreFoundPrintedAndLeafedThrough) {
    Fill(25);
    const Late rows = Recordset("select Name, Amount from tblThing order by Id");
    rows.Call(L"Find", {"Amount >= 120"});
    EXPECT_EQ(rows.Get(L"AbsolutePosition").ToInt32(), 12);
    rows.Call(L"Find", {"Name like 'name 1*'", 1, -1});
    EXPECT_EQ(rows.Get(L"AbsolutePosition").ToInt32(), 11);
    rows.Call(L"Find", {"Amount = 10", 0, 1, 1}); // from the first row on
    EXPECT_EQ(rows.Call(L"GetString", {2, 2, "|", ";"}).ToText(), "name 1|10;name 2|20;");
    EXPECT_EQ(NumberOf([&] { rows.Call(L"GetString", {1}); }), data::errors::invalidArgument);

    EXPECT_EQ(rows.Get(L"PageCount").ToInt32(), 3); // of ten rows each
    rows.Put(L"AbsolutePage", {3});
    EXPECT_EQ(rows.Get(L"AbsolutePosition").ToInt32(), 21);
    rows.Put(L"PageSize", {5});
    EXPECT_EQ(rows.Get(L"AbsolutePage").ToInt32(), 5);
    EXPECT_EQ(NumberOf([&] { rows.Put(L"PageSize", {0}); }), data::errors::invalidArgument);
    EXPECT_EQ(NumberOf([&] { rows.Put(L"AbsolutePage", {0}); }), data::errors::invalidArgument);
    rows.Put(L"AbsolutePage", {6});
    EXPECT_TRUE(rows.Get(L"EOF").ToBool());
    EXPECT_EQ(rows.Get(L"AbsolutePage").ToInt32(), -3);
    EXPECT_EQ(NumberOf([&] { rows.Call(L"Find", {"Amount = 10"}); }), data::errors::badEof);
    rows.Call(L"MoveFirst");
    EXPECT_EQ(NumberOf([&] { rows.Call(L"Find", {"Amount"}); }), data::errors::invalidArgument);
    rows.Call(L"Find", {"Amount = 9", 0, -1});
    EXPECT_TRUE(rows.Get(L"BOF").ToBool()) << "backward and not there";
}

TEST_F(Objects, RowsAreReadOnWithoutTheirConnectionAndInACopy) {
    Fill(3);
    const Late rows = Recordset("select * from tblThing order by Id");
    rows.Call(L"MoveLast");
    const Late copy = rows.Child(L"Clone");
    EXPECT_EQ(Default(copy, {"Name"}).ToText(), "name 1");
    EXPECT_EQ(copy.Get(L"LockType").ToInt32(), 1);
    EXPECT_EQ(rows.Get(L"AbsolutePosition").ToInt32(), 3);
    copy.Put(L"Bookmark", {rows.Get(L"Bookmark")});
    EXPECT_EQ(Default(copy, {"Name"}).ToText(), "name 3");

    const auto other = com::adodb::ObjectOf(data::EmbeddedDatabase::CreateInMemory());
    EXPECT_EQ(NumberOf([&] { rows.PutRef(L"ActiveConnection", {other}); }),
              data::errors::objectOpen);
    rows.PutRef(L"ActiveConnection", {static_cast<IDispatch*>(nullptr)});
    EXPECT_FALSE(rows.Get(L"ActiveConnection").ToDispatch());
    connection.Call(L"Close");
    EXPECT_EQ(Default(rows, {"Name"}).ToText(), "name 3");
    EXPECT_EQ(NumberOf([&] { rows.Call(L"Delete"); }), data::errors::featureNotAvailable);
    rows.Call(L"Close");
    EXPECT_EQ(Default(copy, {"Name"}).ToText(), "name 3") << "a copy has a life of its own";
}

TEST_F(Objects, LeavingARowEndsItsChange) {
    Fill(2);
    const Late rows = Recordset("select * from tblThing order by Id");
    for (const auto& leave : std::vector<std::function<void()>>{
             [&] { rows.Call(L"MoveNext"); }, [&] { rows.Call(L"MoveFirst"); },
             [&] { rows.Put(L"AbsolutePosition", {2}); }, [&] { rows.Put(L"Filter", {""}); },
             [&] { rows.Put(L"Sort", {"Name"}); }, [&] { rows.Call(L"Requery"); }}) {
        rows.Child(L"Fields").Child(L"Item", {"Amount"}).Put(L"Value", {77});
        EXPECT_EQ(rows.Get(L"EditMode").ToInt32(), 1);
        leave();
        EXPECT_EQ(rows.Get(L"EditMode").ToInt32(), 0);
    }
    rows.Child(L"Fields").Child(L"Item", {"Name"}).Put(L"Value", {"mine"});
    engine->Execute("update tblThing set Amount = 1");
    EXPECT_EQ(NumberOf([&] { rows.Call(L"MoveNext"); }), data::errors::rowChanged);
    EXPECT_EQ(rows.Get(L"EditMode").ToInt32(), 1); // still there, not written
}

TEST_F(Objects, ARecordsetObeysItsLockAndItsState) {
    Fill(1);
    const Late rows(connection.Call(L"NewRecordset"));
    EXPECT_EQ(rows.Get(L"State").ToInt32(), 0);
    EXPECT_EQ(NumberOf([&] { rows.Get(L"EOF"); }), data::errors::objectClosed);
    rows.Call(L"Open", {"tblThing", connection.Object()}); // a table's name, locked for reading
    EXPECT_EQ(rows.Get(L"RecordCount").ToInt32(), 1);
    EXPECT_EQ(NumberOf([&] { rows.Call(L"AddNew"); }), data::errors::featureNotAvailable);
    constexpr int find = 0x80000, addNew = 0x1000400, resync = 0x20000;
    EXPECT_TRUE(rows.Call(L"Supports", {find}).ToBool());
    EXPECT_FALSE(rows.Call(L"Supports", {addNew}).ToBool());
    EXPECT_EQ(NumberOf([&] { rows.Put(L"LockType", {3}); }), data::errors::objectOpen);
    rows.Call(L"Close");
    rows.Put(L"LockType", {3});
    rows.Call(L"Open");
    EXPECT_TRUE(rows.Call(L"Supports", {addNew}).ToBool());
    EXPECT_FALSE(rows.Call(L"Supports", {resync}).ToBool());
    rows.Call(L"AddNew",
              {platform::win32::ArrayOf({"Name", "Amount"}), platform::win32::ArrayOf({"new", 3})});
    EXPECT_EQ(rows.Get(L"RecordCount").ToInt32(), 2);
    EXPECT_EQ(rows.Get(L"EditMode").ToInt32(), 0);
}

TEST_F(Objects, ExecuteTellsTheRowsTouchedThroughItsByReferenceArgument) {
    Fill(3);
    Variant touched;
    const Late closed(connection.Call(
        L"Execute", {"update tblThing set Amount = 1 where Id > 1", Variant::Reference(touched)}));
    EXPECT_EQ(touched.ToInt32(), 2);
    EXPECT_EQ(closed.Get(L"State").ToInt32(), 0);
    EXPECT_EQ(connection.Child(L"Properties").Child(L"Item", {"dbms name"}).Get(L"Value").ToText(),
              "ACCESS");
    const Late schema(connection.Call(
        L"OpenSchema", {20, platform::win32::ArrayOf({Variant(), Variant(), "tblThing"})}));
    EXPECT_EQ(schema.Get(L"RecordCount").ToInt32(), 1);
}

TEST_F(Objects, OurOwnConnectionIsRecognisedUnlessItAsksToBeAStranger) {
    EXPECT_EQ(com::adodb::ConnectionFrom(connection.Object()), engine);
    EXPECT_EQ(com::adodb::ObjectOf(engine), connection.Object());
    connection.Put(L"LateBound", {true});
    const auto stranger = com::adodb::ConnectionFrom(connection.Object());
    EXPECT_NE(stranger, engine);
    EXPECT_EQ(com::adodb::ConnectionFrom(connection.Object()), stranger); // one engine an object
    EXPECT_EQ(com::adodb::ObjectOf(stranger), connection.Object());
    EXPECT_EQ(com::adodb::ConnectionFrom({}), nullptr);
}

TEST_F(Objects, OneObjectHasOneFaceWhileItLives) {
    data::clsUpdateDb upgrade(platform::TheWorkstation());
    upgrade.SetDbConnection(engine);
    upgrade.fncUpdateDb();
    upgrade.SetDbConnection(nullptr);
    const Late tree(com::NewModelObject<model::clsTree>());
    tree.PutRef(L"DbConnection", {connection.Object()});
    EXPECT_EQ(tree.Get(L"DbConnection").ToDispatch(), connection.Object());
    tree.Put(L"Description", {"Dossier"});
    ASSERT_TRUE(tree.Call(L"CreateNew").ToBool());
    const std::int32_t root = tree.Child(L"Item").Get(L"Id").ToInt32();
    const Late tab = Late(tree.Call(L"AddChildTab", {"Post", root}));
    EXPECT_EQ(tree.Call(L"GetItem", {0, "POST"}).ToDispatch(), tab.Object());
    const Late children = tree.Child(L"Item").Child(L"ChildCollection");
    EXPECT_EQ(children.Get(L"Item", {1}).ToDispatch(), tab.Object());
    const auto walked = platform::win32::Enumerate(children.Object());
    ASSERT_EQ(walked.size(), 1u);
    EXPECT_EQ(walked[0].ToDispatch(), tab.Object());
    EXPECT_NE(NumberOf([&] { children.Get(L"Item", {2}); }), 0);

    Variant item(tab.Object());
    EXPECT_TRUE(tree.Call(L"DeleteItem", {Variant::Reference(item), tab.Get(L"Id")}).ToBool());
    EXPECT_FALSE(item.ToDispatch()); // the caller's reference is cleared
}

TEST(Values, CrossTheBorderUnharmed) {
    using data::AdoType;
    const std::pair<Value, AdoType> values[] = {
        {Value(), AdoType::Integer},
        {Value(true), AdoType::Boolean},
        {Value(std::int64_t{-32768}), AdoType::SmallInt},
        {Value(std::int64_t{9007199254740993}), AdoType::BigInt}, // beyond a double's whole numbers
        {Value(0.1), AdoType::Double},
        {Value(std::string("2026-02-28 23:59:59")), AdoType::Date},
        {Value(std::string("1899-12-29 06:00:00")), AdoType::Date}, // before the first day
        {Value(std::string("a\xf0\x9f\x98\x80'%\n")), AdoType::VarWChar},
        {Value(data::Bytes{0, 1, 255}), AdoType::VarBinary},
        {Value(data::Bytes{}), AdoType::VarBinary},
    };
    for (const auto& [value, type] : values)
        EXPECT_EQ(data::win32::FromVariant(data::win32::ToVariant(value, type).Get(), type), value)
            << data::ToText(value);
    EXPECT_EQ(data::win32::ToVariant(std::int64_t{5}, AdoType::Integer).Type(), VT_I4);
    EXPECT_EQ(data::win32::ToVariant(std::int64_t{5}, AdoType::SmallInt).Type(), VT_I2);
    EXPECT_EQ(data::win32::ToVariant(std::string("no date"), AdoType::Date).ToText(), "no date");
}

} // namespace kavidex::tests
