// What a host hears from a control at work on a real database, and what it may hand over.
#include "Container.h"
#include "com/controls/ctrlTreeFace.h"
#include "com/controls/HostObjects.h"
#include "kavidex_idl.h"

namespace kavidex::tests {

namespace {

class Work : public Library {
protected:
    void SetUp() override {
        Library::SetUp();
        wchar_t folder[MAX_PATH], name[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        GetTempFileNameW(folder, L"kvx", 0, name);
        DeleteFileW(name);
        lclFile = name;
        lclConnection = Late(Make(CLSID_EmbeddedDatabase)).Call(L"OpenOrCreate", {Variant(platform::win32::FromWide(lclFile))});
        // The binder brings the tables to the current version.
        Late(Make(CLSID_ctrlCorrespondence)).PutRef(L"DbConnection", {lclConnection});
    }
    void TearDown() override {
        if (lclConnection.IsObject()) Late(lclConnection).Call(L"Close");
        lclConnection = Variant();
        DeleteFileW(lclFile.c_str());
        Library::TearDown();
    }
    // A tree with one folder in it, shown in the container.
    void OpenTree(Container& host) {
        host.Take(Make(CLSID_ctrlTree), true);
        const Late tree(host.control);
        tree.PutRef(L"DbConnection", {lclConnection});
        ASSERT_TRUE(tree.Call(L"CreateNew", {Variant("Boom")}).ToBool());
        ASSERT_TRUE(tree.Call(L"AddTab", {Variant("Post in")}).IsObject());
    }
    static DISPID Event(std::wstring_view name) {
        for (const auto& row : com::TreeEventTable())
            if (row.name == name) return row.id;
        return DISPID_UNKNOWN;
    }
    static std::int32_t FirstId(const Late& tree) {
        const Late items = tree.Child(L"AllItems", {});
        return Late(items.Get(L"Item", {Variant(1)})).Get(L"Id").ToInt32();
    }

    std::wstring lclFile;
    Variant lclConnection;
};

} // namespace

TEST_F(Work, EventsArriveWithTheirArgumentsAndFrozenOnesDoNot) {
    Container host;
    OpenTree(host);
    const Late tree(host.control);
    const std::int32_t id = FirstId(tree);
    host.events.clear();
    As<IOleControl>(host.control, IID_IOleControl)->FreezeEvents(TRUE);
    ASSERT_TRUE(tree.Call(L"AddTab", {Variant("Stil")}).IsObject());
    const std::size_t heard = host.events.size();
    As<IOleControl>(host.control, IID_IOleControl)->FreezeEvents(FALSE);
    ASSERT_TRUE(tree.Call(L"DeleteItem", {Variant(id)}).ToBool());

    for (std::size_t i = 0; i < heard; ++i)
        for (const auto& argument : host.events[i].second) EXPECT_FALSE(argument.IsText() && argument.ToText() == "Stil");
    bool deleted = false;
    for (const auto& [event, arguments] : host.events) {
        if (event != Event(L"EvItemDelete")) continue;
        deleted = true;
        ASSERT_EQ(arguments.size(), 4u);
        EXPECT_EQ(arguments[1].ToText(), "Post in");
        EXPECT_EQ(arguments[2].ToText(), "tab");
        EXPECT_EQ(arguments[3].Type(), VT_I4);
        EXPECT_EQ(arguments[3].ToInt32(), id);
    }
    EXPECT_TRUE(deleted);
}

TEST_F(Work, AHostMayDropTheControlInsideAnEvent) {
    Container host;
    OpenTree(host);
    const std::int32_t id = FirstId(Late(host.control));
    int times = 0;
    host.onEvent = [&](DISPID event, DISPPARAMS&) {
        if (event == Event(L"EvItemDelete") && times++ == 0) host.Drop();
    };
    Late(host.control).Call(L"DeleteItem", {Variant(id)});
    EXPECT_EQ(times, 1);
    EXPECT_EQ(GetWindow(host.window, GW_CHILD), nullptr);
}

TEST_F(Work, ResultListsCanBeWalkedAndCounted) {
    Container host;
    OpenTree(host);
    const Late items = Late(host.control).Child(L"AllItems", {});
    EXPECT_EQ(items.Get(L"Count").ToInt32(), 1);
    const auto walked = platform::win32::Enumerate(items.Object());
    ASSERT_EQ(walked.size(), 1u);
    EXPECT_EQ(Late(walked[0]).Get(L"Description").ToText(), "Post in");
    EXPECT_THROW(items.Get(L"Item", {Variant(2)}), platform::Error);
}

TEST_F(Work, TextsComeFromCollectionsKeysArraysAndSingleTexts) {
    using Texts = std::vector<std::string>;
    const Variant one("a"), two("é b");
    EXPECT_EQ(com::TextsOf(one), Texts{"a"});
    EXPECT_EQ(com::TextsOf(Variant()), Texts{});
    EXPECT_EQ(com::TextsOf(Variant(static_cast<IDispatch*>(nullptr))), Texts{});
    EXPECT_EQ(com::TextsOf(platform::win32::ArrayOf({one, two})), (Texts{"a", "é b"}));
    EXPECT_EQ(com::TextsOf(com::CollectionOf(Texts{"x", "y"})), (Texts{"x", "y"}));
    const Late dictionary = Late::TryCreate("Scripting.Dictionary");
    if (!dictionary) GTEST_SKIP() << "Scripting.Dictionary is not registered here";
    dictionary.Call(L"Add", {Variant("C:\\1.tif"), Variant(true)});
    dictionary.Call(L"Add", {Variant("C:\\2.tif"), Variant(true)});
    EXPECT_EQ(com::TextsOf(Variant(dictionary.Object())), (Texts{"C:\\1.tif", "C:\\2.tif"}));
}

TEST_F(Work, FontsAndRightsComeBackAsTheyWereGiven) {
    const Late control(Make(CLSID_ctrlTree));
    EXPECT_FALSE(control.Get(L"Font").ToDispatch());
    control.PutRef(L"Font", {Variant(com::FontObject(controls::FontFace{"Liberation Sans", 11.25, 700, true, false, false}))});
    const auto font = com::FontFrom(control.Get(L"Font").ToDispatch());
    ASSERT_TRUE(font);
    EXPECT_EQ(font->name, "Liberation Sans");
    EXPECT_NEAR(font->points, 11.25, 0.3);
    EXPECT_TRUE(font->italic);

    const auto rights = Make(CLSID_clsUserAuth);
    control.PutRef(L"UserAuth", {Variant(rights)});
    EXPECT_TRUE(platform::win32::SameObject(control.Get(L"UserAuth").ToDispatch().Get(), rights.Get()));
}

} // namespace kavidex::tests
