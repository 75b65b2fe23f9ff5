// What a host hears from a control at work on a real database, and what it may hand over.
#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <thread>

#include "Dossier.h"
#include "com/controls/HostObjects.h"
#include "com/model/faces.h"
#include "model/clsField.h"
#include "model/clsUserAuth.h"
#include "model/rights.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"

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
class OneMethod final : public IDispatch {
public:
    OneMethod(const wchar_t* name, std::function<std::string(const std::string&)> answer)
        : lclName(name), lclAnswer(std::move(answer)) {}

    std::vector<std::string> asked;
    long references = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch;
        *object = known ? this : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* id) override {
        *id = _wcsicmp(names[0], lclName.c_str()) == 0 ? 1 : DISPID_UNKNOWN;
        return *id == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given,
                                     VARIANT* result, EXCEPINFO*, UINT*) override {
        if (id != 1 || given->cArgs != 1) return DISP_E_BADPARAMCOUNT;
        asked.push_back(Variant(given->rgvarg[0]).ToText());
        if (result) *result = Variant(lclAnswer(asked.back())).Detach();
        return S_OK;
    }

private:
    std::wstring lclName;
    std::function<std::string(const std::string&)> lclAnswer;
};

} // namespace

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
        const Variant object(static_cast<IDispatch*>(&english));
        Container host;
        host.Take(Make(CLSID_ctrlCorrespondence), true);
        const Late binder(host.control);
        binder.PutRef(L"Translate", {object});
        EXPECT_EQ(binder.Get(L"Translate").ToDispatch().Get(), static_cast<IDispatch*>(&english));
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
                binder.PutRef(property, {Variant(static_cast<IDispatch*>(&mute))});
                ADD_FAILURE() << platform::win32::FromWide(property);
            } catch (const platform::Error& error) {
                EXPECT_EQ(platform::ShownNumber(error.Number()), 380) << error.what();
            }
            EXPECT_EQ(binder.Get(property).ToDispatch().Get(), before.Get());
        }
    }
    EXPECT_EQ(english.references, 1);
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
        const Variant object(static_cast<IDispatch*>(&rights));
        const auto known = com::RightsOf(object.ToDispatch());
        EXPECT_EQ(known->GetRight("Delete"), "about Delete");
        EXPECT_EQ(rights.asked.size(), model::Rights().size());
        const Late binder(Make(CLSID_ctrlCorrespondence));
        binder.PutRef(L"DbConnection", {lclConnection});
        binder.PutRef(L"UserAuth", {object});
        EXPECT_EQ(binder.Get(L"UserAuth").ToDispatch().Get(), static_cast<IDispatch*>(&rights));
    }
    EXPECT_EQ(rights.references, 1);
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
