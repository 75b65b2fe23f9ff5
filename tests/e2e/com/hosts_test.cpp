// Hosts of every manner: several controls at once, odd containers, form designers.
#include "Dossier.h"
#include "com/class_table.h"

namespace kavidex::tests {

namespace {

class Hosts : public Dossiers {
protected:
    static std::vector<std::string> Folders(const Container& host) {
        std::vector<std::string> names;
        const HWND tree = TreeOf(host);
        for (auto node = FirstFolder(tree); node; node = Node(tree, TVGN_NEXT, node))
            names.push_back(TextOf(tree, node));
        return names;
    }
    static std::size_t Heard(const Container& host, DISPID event) {
        std::size_t count = 0;
        for (const auto& [id, arguments] : host.events) count += id == event;
        return count;
    }
    static DISPID Id(const ComPtr<IDispatch>& object, const wchar_t* name) {
        DISPID id = DISPID_UNKNOWN;
        auto* text = const_cast<LPOLESTR>(name);
        object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
        return id;
    }
    static std::string Selected(const Container& host) {
        const HWND tree = TreeOf(host);
        return TextOf(tree, Node(tree, TVGN_CARET, 0));
    }
};

} // namespace

TEST_F(Hosts, TwoBindersOnOneDatabaseDoNotDisturbEachOtherAndSeeTheOthersWorkAtRefresh) {
    Container left, right;
    const Late one = Open(left, Make(CLSID_ctrlCorrespondence), lclConnection, "K1"),
               two = Open(right, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    ASSERT_EQ(one.Get(L"Id").ToInt32(), two.Get(L"Id").ToInt32());
    Select(TreeOf(right), Node(TreeOf(right), TVGN_NEXT, FirstFolder(TreeOf(right))));
    ASSERT_EQ(Selected(right), "Archief");
    right.events.clear();
    left.events.clear();
    ASSERT_TRUE(AddFolder(one, "Nieuw").IsObject());
    EXPECT_EQ(Folders(left).size(), 4U);
    EXPECT_EQ(Folders(right).size(), 3U);
    EXPECT_TRUE(right.events.empty()) << "the other's work is no event of its own";
    two.Call(L"Refresh");
    EXPECT_EQ(Folders(right), Folders(left));
    EXPECT_EQ(Selected(right), "Archief") << "the selection stays";
    EXPECT_EQ(Heard(right, Event(DIID__ctrlCorrespondenceEvents, L"EvItemSelected")), 0U);
    one.Put(L"Language", {1});
    one.Put(L"SelectItems", {true});
    EXPECT_EQ(two.Get(L"Language").ToInt32(), 0);
    EXPECT_FALSE(two.Get(L"SelectItems").ToBool());
    left.Drop();
    two.Call(L"Refresh");
    EXPECT_EQ(Folders(right).size(), 4U) << "the connection is the host's, and still open";
}

TEST_F(Hosts, AHandlerThatFailsEndsNothing) {
    Container host;
    const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    int heard = 0;
    host.onEvent = [&](DISPID, DISPPARAMS&) {
        ++heard;
        throw std::runtime_error("the host's own");
    };
    Select(TreeOf(host), FirstFolder(TreeOf(host)));
    EXPECT_TRUE(AddFolder(binder, "Nieuw").IsObject());
    EXPECT_GE(heard, 2);
    EXPECT_EQ(Selected(host), "Post");
}

TEST_F(Hosts, AControlIsSitedLateResizedToNothingAndBack) {
    for (const com::ClassRow& row : com::ClassTable()) {
        if (!row.IsControl()) continue;
        SCOPED_TRACE(platform::win32::FromWide(row.name));
        const auto control = Make(*row.clsid);
        const Late late(control);
        Container host;
        host.Take(control, false); // long after it was made
        const auto ole = host.As<IOleObject>(IID_IOleObject);
        ASSERT_EQ(ole->DoVerb(OLEIVERB_SHOW, nullptr, host.Site(), 0, host.window, &host.place),
                  S_OK);
        const auto inPlace = host.As<IOleInPlaceObject>(IID_IOleInPlaceObject);
        const RECT clip{0, 0, 1000, 1000};
        for (const RECT place : {RECT{0, 0, 0, 0}, RECT{5, 5, 5, 200}, RECT{0, 0, 1, 1},
                                 RECT{100, 100, 50, 50}, RECT{0, 0, 380, 260}}) {
            EXPECT_EQ(inPlace->SetObjectRects(&place, &clip), S_OK);
            RedrawWindow(host.window, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
        }
        RECT now{};
        HWND window = nullptr;
        ASSERT_EQ(inPlace->GetWindow(&window), S_OK);
        GetWindowRect(window, &now);
        EXPECT_EQ(now.right - now.left, 380);
        const SIZEL nothing{0, 0};
        SIZEL size = nothing;
        EXPECT_EQ(ole->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    }
}

// --- Form designers -----------------------------------------------------------------------------

TEST_F(Hosts, AFormDesignerReadsTheValuesOfAPropertyByName) {
    const auto control = Make(CLSID_ctrlCorrespondence);
    const Late binder(control);
    const auto browsing = As<IPerPropertyBrowsing>(control, IID_IPerPropertyBrowsing);
    ASSERT_TRUE(browsing);
    const DISPID language = Id(control, L"Language"), description = Id(control, L"Description");
    CALPOLESTR names{};
    CADWORD cookies{};
    ASSERT_EQ(browsing->GetPredefinedStrings(language, &names, &cookies), S_OK);
    ASSERT_EQ(names.cElems, 4U);
    EXPECT_STREQ(names.pElems[1], L"1 - English");
    VARIANT value{};
    ASSERT_EQ(browsing->GetPredefinedValue(language, cookies.pElems[1], &value), S_OK);
    EXPECT_EQ(Variant::Attach(value).ToInt32(), 1);
    for (ULONG i = 0; i < names.cElems; ++i) CoTaskMemFree(names.pElems[i]);
    CoTaskMemFree(names.pElems);
    CoTaskMemFree(cookies.pElems);
    binder.Put(L"Language", {2});
    platform::win32::Bstr shown;
    ASSERT_EQ(browsing->GetDisplayString(language, shown.Put()), S_OK);
    EXPECT_STREQ(shown.Get(), L"2 - Deutsch");
    EXPECT_EQ(browsing->GetPredefinedStrings(description, &names, &cookies), S_FALSE);
    EXPECT_EQ(browsing->GetPredefinedValue(language, 9, &value), E_INVALIDARG);
    CLSID page{};
    EXPECT_EQ(browsing->MapPropertyToPage(language, &page), PERPROP_E_NOPAGEAVAILABLE);
}

TEST_F(Hosts, AFormDesignerFindsASizeAVerbAndAPictureForTheToolbox) {
    for (const com::ClassRow& row : com::ClassTable()) {
        if (!row.IsControl()) continue;
        SCOPED_TRACE(platform::win32::FromWide(row.name));
        const auto ole = As<IOleObject>(Make(*row.clsid), IID_IOleObject);
        SIZEL size{};
        ASSERT_EQ(ole->GetExtent(DVASPECT_CONTENT, &size), S_OK);
        EXPECT_NEAR(size.cx, MulDiv(row.pixels.cx, 2540, 96), 30);
        ComPtr<IEnumOLEVERB> verbs;
        ASSERT_EQ(ole->EnumVerbs(verbs.Put()), S_OK);
        OLEVERB verb{};
        ASSERT_EQ(verbs->Next(1, &verb, nullptr), S_OK);
        EXPECT_EQ(verb.lVerb, OLEIVERB_PRIMARY);
        EXPECT_STREQ(verb.lpszVerbName, L"&Edit");
        CoTaskMemFree(verb.lpszVerbName);
        EXPECT_EQ(verbs->Next(1, &verb, nullptr), S_FALSE);
        const auto picture = static_cast<HBITMAP>(
            LoadImageW(GetModuleHandleW(Library::Path().c_str()),
                       MAKEINTRESOURCEW(row.toolboxBitmap), IMAGE_BITMAP, 0, 0, 0));
        BITMAP facts{};
        ASSERT_TRUE(picture && GetObjectW(picture, sizeof facts, &facts));
        EXPECT_EQ(facts.bmWidth, 16);
        EXPECT_EQ(facts.bmHeight, 16);
        DeleteObject(picture);
    }
}

TEST_F(Hosts, AFormDesignerSetsThePathOfADatabaseWithoutOpeningIt) {
    Container host;
    host.userMode = false;
    host.Take(Make(CLSID_ctrlCorrespondence), false);
    const Late binder(host.control);
    binder.Put(L"DbProvider", {"Microsoft.Jet.OLEDB.4.0"});
    binder.Put(L"DbPath", {Variant(Path("design.mdb"))});
    EXPECT_FALSE(binder.Get(L"DbConnection").ToDispatch());
    EXPECT_EQ(binder.Get(L"DbPath").ToText(), Path("design.mdb"));
    EXPECT_EQ(GetFileAttributesA(Path("design.mdb").c_str()), INVALID_FILE_ATTRIBUTES);
}

} // namespace kavidex::tests
