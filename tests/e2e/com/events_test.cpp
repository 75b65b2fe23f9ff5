// What a host hears from a control at work on a real database, and what it may hand over.
#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <thread>

#include "Dossier.h"
#include "TypeInfos.h"
#include "com/controls/HostObjects.h"
#include "com/model/faces.h"
#include "model/clsField.h"
#include "model/clsUserAuth.h"
#include "model/rights.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "tests/e2e/doubles/Played.h"

namespace kavidex::tests {

namespace {

class Work : public Dossiers {
protected:
    DISPID OfTree(const wchar_t* name) const { return Event(DIID__ctrlTreeEvents, name); }
    DISPID OfBinder(const wchar_t* name) const {
        return Event(DIID__ctrlCorrespondenceEvents, name);
    }
};

// What a host may write in a language of its own: an object with one method that takes one text.
struct OneMethod {
    std::vector<std::string> asked;
    ComPtr<IDispatch> object;

    OneMethod(const wchar_t* name, std::function<std::string(const std::string&)> answer)
        : object(Play({{name, [this, answer](const Arguments& given) {
                            asked.push_back(given.at(0).ToText());
                            return Variant(answer(asked.back()));
                        }}})) {}
    ULONG References() const { return object->AddRef(), object->Release(); }
};

VARTYPE TypeOf(const TYPEDESC& type) {
    return type.vt == VT_PTR ? static_cast<VARTYPE>(VT_BYREF | TypeOf(*type.lptdesc)) : type.vt;
}

} // namespace

// Every event that a session raises has the arguments, in number and type, that are declared.
TEST_F(Work, EventsArriveAsTheLibraryDeclaresThem) {
    struct Declared {
        std::string name;
        std::vector<VARTYPE> types;
    };
    ComPtr<ITypeLib> types;
    ComPtr<ITypeInfo> type;
    ASSERT_EQ(LoadTypeLibEx(Library::Path().c_str(), REGKIND_NONE, types.Put()), S_OK);
    ASSERT_EQ(types->GetTypeInfoOfGuid(DIID__ctrlCorrespondenceEvents, type.Put()), S_OK);
    std::map<DISPID, Declared> declared;
    ForEachMember(*type.Get(), [&](const FUNCDESC& function) {
        auto& one = declared[function.memid];
        one.name = WordsOf(*type.Get(), function.memid).name;
        for (SHORT p = 0; p < function.cParams; ++p)
            one.types.push_back(TypeOf(function.lprgelemdescParam[p].tdesc));
    });

    Container host;
    std::set<std::string> heard;
    host.onEvent = [&](DISPID id, DISPPARAMS& given) {
        const auto& one = declared[id];
        heard.insert(one.name);
        ASSERT_EQ(given.cArgs, one.types.size()) << one.name;
        for (UINT i = 0; i < given.cArgs; ++i) {
            const VARTYPE told = given.rgvarg[given.cArgs - 1 - i].vt;
            // What is declared as a VARIANT comes as whatever it holds.
            if (one.types[i] != VT_VARIANT) {
                EXPECT_EQ(told, one.types[i]) << one.name << " " << i;
            }
        }
    };
    const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    const HWND tree = TreeOf(host);
    SetForegroundWindow(host.window);
    SetFocus(tree);
    Select(tree, FirstFolder(tree));
    AddFolder(binder, "Nieuw");
    SendMessageW(tree, WM_KEYDOWN, VK_F9, 1);
    SendMessageW(tree, WM_CHAR, L'q', 1);
    SendMessageW(tree, WM_KEYUP, VK_F9, 1);
    SendMessageW(tree, WM_MOUSEMOVE, 0, MAKELPARAM(90, 90));
    SendMessageW(tree, WM_MBUTTONDOWN, MK_MBUTTON, MAKELPARAM(90, 90));
    SendMessageW(tree, WM_MBUTTONUP, 0, MAKELPARAM(90, 90));
    binder.Call(L"OLEDrag");
    SendMessageW(tree, WM_KEYDOWN, VK_DELETE, 1); // nobody answers the question: nothing goes
    for (const char* const name :
         {"EvItemSelected", "EvItemCreated", "KeyDown", "KeyPress", "KeyUp", "MouseMove",
          "MouseDown", "MouseUp", "OLEStartDrag", "OLECompleteDrag"})
        EXPECT_TRUE(heard.contains(name)) << name;
    EXPECT_FALSE(heard.contains("ItemSelected"));
}

TEST_F(Work, ASelectedItemIsToldWithItsArguments) {
    Container host;
    Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    host.events.clear();
    Select(TreeOf(host), FirstFolder(TreeOf(host)));
    std::vector<Variant> told;
    for (const auto& [event, arguments] : host.events)
        if (event == OfBinder(L"EvItemSelected")) told = arguments;
    ASSERT_EQ(told.size(), 5u);
    EXPECT_EQ(told[0].ToText(), "Post");
    EXPECT_EQ(told[1].ToText(), "tab");
    EXPECT_GT(told[2].ToInt32(), 0);
    EXPECT_EQ(told[3].ToText(), "Dossier\\Post");
    EXPECT_EQ(told[4].ToInt32(), 0);
}

TEST_F(Work, AHostsOwnTranslatorIsAskedAndGivenBack) {
    OneMethod english(L"Translate", [](const std::string& text) { return "<" + text + ">"; });
    {
        const Variant object(english.object);
        Container host;
        host.Take(Make(CLSID_ctrlCorrespondence), true);
        const Late binder(host.control);
        binder.PutRef(L"Translate", {object});
        EXPECT_EQ(binder.Get(L"Translate").ToDispatch(), english.object);
        EXPECT_NE(std::find(english.asked.begin(), english.asked.end(),
                            "Dossier met aanwezige documenten"),
                  english.asked.end())
            << "shown by the tree";
        const auto translator = com::TranslatorOf(object.ToDispatch());
        EXPECT_EQ(translator->Translate("Map $%$", {"A"}), "<Map A>");
        OneMethod mute(L"Speak", [](const std::string&) { return ""; });
        // What lacks the member that will be called is refused, and what was there stays.
        for (const wchar_t* const property : {L"Translate", L"UserAuth", L"DbConnection"}) {
            const auto before = binder.Get(property).ToDispatch();
            try {
                binder.PutRef(property, {Variant(mute.object)});
                ADD_FAILURE() << platform::win32::FromWide(property);
            } catch (const platform::Error& error) {
                EXPECT_EQ(platform::ShownNumber(error.Number()), 380) << error.what();
            }
            EXPECT_EQ(binder.Get(property).ToDispatch().Get(), before.Get());
        }
    }
    EXPECT_EQ(english.References(), 1U);
}

TEST_F(Work, TheOwnTranslatorIsGivenBackAndServesAnotherControl) {
    const Late binder(Make(CLSID_ctrlCorrespondence)), tree(Make(CLSID_ctrlTree));
    binder.Put(L"Language", {Variant(1)});
    binder.PutRef(L"DbConnection", {lclConnection});
    const Variant own = binder.Get(L"Translate");
    EXPECT_EQ(Late(own).Call(L"Translate", {"Nieuwe map"}).ToText(), "New folder");
    tree.PutRef(L"Translate", {own});
    EXPECT_EQ(tree.Get(L"NameForInsert").ToText(), "New folder;New note");
    binder.PutRef(L"Translate", {own});
    binder.Put(L"Language", {Variant(0)});
    EXPECT_EQ(Late(own).Call(L"Translate", {"Nieuwe map"}).ToText(), "Nieuwe map")
        << "it is still the control's own";
}

TEST_F(Work, UseRightsIsReachableAndErrorsNameTheClassThatWasCalled) {
    const Late auth(Make(CLSID_clsUserAuth)), settings(Make(CLSID_clsSettings));
    EXPECT_TRUE(auth.Call(L"UseRights").ToBool()) << "without a connection";
    auth.PutRef(L"DbConnection", {lclConnection});
    settings.PutRef(L"DbConnection", {lclConnection});
    EXPECT_FALSE(auth.Call(L"UseRights").ToBool());
    settings.Call(L"SetSetting", {"Rights", "Use", "True"});
    EXPECT_TRUE(auth.Call(L"UseRights").ToBool());
    try {
        Late(Make(CLSID_ctrlTree)).PutRef(L"UserAuth", {lclConnection});
        ADD_FAILURE();
    } catch (const platform::Error& error) {
        EXPECT_EQ(error.Source(), "Kavidex.ctrlTree");
    }
}

TEST(SharedFaces, TwoApartmentsMakeAndDropThemAtTheSameTime) {
    std::vector<std::thread> apartments;
    for (int i = 0; i < 3; ++i)
        apartments.emplace_back([] {
            for (int n = 0; n < 20000; ++n)
                ASSERT_TRUE(Late(com::NewModelObject<model::clsField>()));
        });
    for (auto& apartment : apartments) apartment.join();
    EXPECT_EQ(com::LiveObjects(), 0);
}

TEST_F(Work, AHostsOwnRightsAreAskedOnceEach) {
    OneMethod rights(L"GetRight", [](const std::string& right) { return "about " + right; });
    {
        const Variant object(rights.object);
        const auto known = com::RightsOf(object.ToDispatch());
        EXPECT_EQ(known->GetRight("Delete"), "about Delete");
        EXPECT_EQ(rights.asked.size(), model::Rights().size());
        const Late binder(Make(CLSID_ctrlCorrespondence));
        binder.PutRef(L"DbConnection", {lclConnection});
        binder.PutRef(L"UserAuth", {object});
        EXPECT_EQ(binder.Get(L"UserAuth").ToDispatch(), rights.object);
    }
    EXPECT_EQ(rights.References(), 1U);
    const Late tree(Make(CLSID_ctrlTree));
    const auto own = Make(CLSID_clsUserAuth);
    tree.PutRef(L"UserAuth", {Variant(own)});
    EXPECT_TRUE(platform::win32::SameObject(tree.Get(L"UserAuth").ToDispatch().Get(), own.Get()));
}

TEST_F(Work, EventsArriveWithTheirArgumentsAndFrozenOnesDoNot) {
    Container host;
    const Late tree = OpenTree(host);
    const auto id = Late(tree.Child(L"AllItems", {}).Get(L"Item", {1})).Get(L"Id").ToInt32();
    host.events.clear();
    As<IOleControl>(host.control, IID_IOleControl)->FreezeEvents(TRUE);
    ASSERT_TRUE(tree.Call(L"AddTab", {Variant("Stil")}).IsObject());
    const std::size_t heard = host.events.size();
    As<IOleControl>(host.control, IID_IOleControl)->FreezeEvents(FALSE);
    ASSERT_TRUE(tree.Call(L"DeleteItem", {Variant(id)}).ToBool());

    for (std::size_t i = 0; i < heard; ++i)
        for (const auto& argument : host.events[i].second)
            EXPECT_FALSE(argument.IsText() && argument.ToText() == "Stil");
    bool deleted = false;
    for (const auto& [event, arguments] : host.events) {
        EXPECT_TRUE(event < OfTree(L"ItemSelected") || event > OfTree(L"ItemRenamed")) << event;
        if (event != OfTree(L"EvItemDelete")) continue;
        deleted = true;
        ASSERT_EQ(arguments.size(), 4u);
        EXPECT_EQ(arguments[1].ToText(), "A");
        EXPECT_EQ(arguments[2].ToText(), "tab");
        EXPECT_EQ(arguments[3].Type(), VT_I4);
        EXPECT_EQ(arguments[3].ToInt32(), id);
    }
    EXPECT_TRUE(deleted);
}

TEST_F(Work, ADragByTheMouseTellsTheHostEachOfItsSteps) {
    Container host;
    host.place = {0, 0, 380, 240};
    Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    const HWND tree = TreeOf(host);
    const auto post = FirstFolder(tree), archive = Node(tree, TVGN_NEXT, post);
    const auto place = [&](LRESULT of) {
        RECT text{};
        memcpy(&text, &of, sizeof of);
        SendMessageW(tree, TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&text));
        POINT middle{text.left + 6, (text.top + text.bottom) / 2};
        ClientToScreen(tree, &middle);
        return middle;
    };
    const auto from = place(post), to = place(archive);
    SetForegroundWindow(host.window);
    std::map<DISPID, Variant> told; // with its first argument
    const DISPID completed = OfBinder(L"OLECompleteDrag");
    host.onEvent = [&](DISPID id, DISPPARAMS& given) {
        if (given.cArgs > 0) told[id] = Variant(given.rgvarg[given.cArgs - 1]);
    };
    std::thread hand([=] {
        const auto mouse = [](DWORD flags, LONG x, LONG y) {
            SetCursorPos(x, y);
            INPUT input{};
            input.type = INPUT_MOUSE;
            input.mi.dwFlags = flags;
            SendInput(1, &input, sizeof input);
            Sleep(80);
        };
        Sleep(300);
        mouse(MOUSEEVENTF_LEFTDOWN, from.x, from.y);
        for (LONG step = 1; step <= 6; ++step)
            mouse(MOUSEEVENTF_MOVE, from.x + 2 * step, from.y + step * (to.y - from.y) / 6);
        mouse(MOUSEEVENTF_LEFTUP, from.x + 12, to.y);
    });
    const DWORD begun = GetTickCount();
    while (!told.contains(completed) && GetTickCount() - begun < 5000) {
        Pump();
        Sleep(5);
    }
    hand.join();
    for (const wchar_t* const name :
         {L"OLEStartDrag", L"OLESetData", L"OLEGiveFeedback", L"OLEDragOver", L"OLECompleteDrag"})
        EXPECT_TRUE(told.contains(OfBinder(name))) << platform::win32::FromWide(name);
    EXPECT_EQ(told[completed].ToInt32(), controls::drop::move);
    EXPECT_EQ(TextOf(tree, FirstFolder(tree)), "Archief") << "one holds the other";
}

TEST_F(Work, RefreshPaintsAnewAndTheBackStyleFillsOrDoesNot) {
    Container host;
    const Late tree = OpenTree(host);
    const HWND label = Find(host.ControlWindow(), L"Static");
    const auto pixel = [&](HWND window) {
        const HDC device = GetDC(window);
        RECT area{};
        GetClientRect(window, &area);
        const COLORREF colour = GetPixel(device, area.right - 3, area.bottom - 3);
        ReleaseDC(window, device);
        return colour;
    };
    constexpr COLORREF red = RGB(255, 0, 0), white = RGB(255, 255, 255);
    tree.Put(L"BackColor", {static_cast<std::int32_t>(red)});
    tree.Put(L"ForeColor", {static_cast<std::int32_t>(white)});
    for (const int style : {0, 1, 0}) {
        tree.Put(L"BackStyle", {style});
        RedrawWindow(host.window, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
        EXPECT_EQ(pixel(label) == red, style == 1);
    }
    Container around;
    around.Take(Make(CLSID_ctrlCorrespondence), true);
    const HWND view = TreeOf(around);
    RedrawWindow(around.window, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
    const COLORREF painted = pixel(view);
    const HDC device = GetDC(view);
    const RECT all{0, 0, 1000, 1000};
    FillRect(device, &all, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    ReleaseDC(view, device);
    ASSERT_NE(pixel(view), painted);
    Late(around.control).Call(L"Refresh");
    EXPECT_EQ(pixel(view), painted);
}

TEST_F(Work, TextsComeFromCollectionsKeysArraysAndSingleTexts) {
    using Texts = std::vector<std::string>;
    const Variant one("a"), two("é b");
    EXPECT_EQ(com::TextsOf(one), Texts{"a"});
    EXPECT_FALSE(com::TextsOf(Variant())) << "nothing given is not an empty list";
    EXPECT_FALSE(com::TextsOf(Variant(static_cast<IDispatch*>(nullptr))));
    EXPECT_EQ(com::TextsOf(platform::win32::ArrayOf({one, two})), (Texts{"a", "é b"}));
    EXPECT_EQ(com::TextsOf(com::CollectionOf(Texts{"x", "y"})), (Texts{"x", "y"}));
    const Late dictionary = Late::TryCreate("Scripting.Dictionary");
    if (!dictionary) GTEST_SKIP() << "Scripting.Dictionary is not registered here";
    dictionary.Call(L"Add", {Variant("C:\\1.tif"), Variant(true)});
    dictionary.Call(L"Add", {Variant("C:\\2.tif"), Variant(true)});
    EXPECT_EQ(com::TextsOf(Variant(dictionary.Object())), (Texts{"C:\\1.tif", "C:\\2.tif"}));
}

} // namespace kavidex::tests
