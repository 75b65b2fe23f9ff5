// Every member of every class, given what it does not expect: an answer or an error that says what
// is wrong, never the end of the host, and no box where nobody is there to answer.
#include "Dossier.h"
#include "TypeInfos.h"
#include "com/class_table.h"
#include "platform/Error.h"

namespace kavidex::tests {

namespace {

using platform::win32::FromWide;

struct Call {
    DISPID id;
    INVOKEKIND kind;
    int parameters;
    std::string name;
};

class BadInput : public Dossiers {
protected:
    void SetUp() override {
        Dossiers::SetUp();
        GetCurrentDirectoryW(MAX_PATH, lclBefore);
        SetCurrentDirectoryW(lclFolder.c_str()); // where a text is taken for the name of a file
    }
    void TearDown() override {
        SetCurrentDirectoryW(lclBefore);
        Dossiers::TearDown();
    }

    // Those that block until the user moves the mouse are for the tests of drags.
    static std::vector<Call> CallsOf(const ComPtr<IDispatch>& object) {
        std::vector<Call> calls;
        ComPtr<ITypeInfo> info;
        if (FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()))) return calls;
        ForEachMember(*info.Get(), [&](const FUNCDESC& function) {
            const auto name = WordsOf(*info.Get(), function.memid).name;
            if (name != "OLEDrag")
                calls.push_back({function.memid, function.invkind, function.cParams, name});
        });
        return calls;
    }
    static HRESULT Try(const ComPtr<IDispatch>& object, const Call& call, std::size_t count,
                       const Variant& value) {
        std::vector<VARIANT> arguments(count, value.Get());
        DISPID put = DISPID_PROPERTYPUT;
        const bool puts = call.kind == INVOKE_PROPERTYPUT || call.kind == INVOKE_PROPERTYPUTREF;
        const bool named = puts && count > 0;
        DISPPARAMS given{arguments.data(), named ? &put : nullptr, static_cast<UINT>(count),
                         named ? 1U : 0U};
        Variant result;
        EXCEPINFO error{};
        UINT wrong = 0;
        const HRESULT answer =
            object->Invoke(call.id, IID_NULL, LOCALE_USER_DEFAULT, static_cast<WORD>(call.kind),
                           &given, puts ? nullptr : result.Put(), &error, &wrong);
        if (answer == DISP_E_EXCEPTION) {
            EXPECT_TRUE(error.bstrDescription && *error.bstrDescription) << call.name;
            EXPECT_TRUE(error.bstrSource && *error.bstrSource) << call.name;
            EXPECT_TRUE(FAILED(error.scode)) << call.name;
        }
        SysFreeString(error.bstrSource);
        SysFreeString(error.bstrDescription);
        SysFreeString(error.bstrHelpFile);
        return answer;
    }
    std::vector<Variant> Values() const {
        return {Variant(),
                Variant::Null(),
                Variant::Missing(),
                Variant(static_cast<IDispatch*>(nullptr)),
                Variant(Make(CLSID_clsField)), // of another class
                Variant("geen getal"),
                Variant(std::string(65536, 'x')),
                Variant(-1),
                Variant(987654),
                Variant(1e30),
                Variant(true),
                platform::win32::ArrayOf({Variant("x"), Variant()})};
    }
    void TryAll(const ComPtr<IDispatch>& object, const std::string& name) {
        for (const auto& call : CallsOf(object)) {
            SCOPED_TRACE(name + "." + call.name);
            const auto takes = static_cast<std::size_t>(call.parameters);
            for (const auto& value : Values()) {
                if (takes > 0) Try(object, call, takes, value);
            }
            const HRESULT many = Try(object, call, takes + 3, Variant("x"));
            EXPECT_TRUE(FAILED(many)) << "too many arguments";
            Pump();
        }
    }

private:
    wchar_t lclBefore[MAX_PATH] = {};
};

} // namespace

TEST_F(BadInput, NoMemberOfAnyClassEndsTheHost) {
    for (const com::ClassRow& row : com::ClassTable()) TryAll(Make(*row.clsid), FromWide(row.name));
}

TEST_F(BadInput, NoMemberEndsTheHostOnceTheConnectionOrTheControlWasClosed) {
    Variant other = Connect("b.kdb");
    {
        Container host;
        const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), other, "K1");
        Late(other).Call(L"Close");
        binder.Call(L"Refresh");
        EXPECT_LT(binder.Call(L"OpenOrCreate", {"K2"}).ToInt32(), 0);
        EXPECT_LT(binder.Call(L"AddFiles", {Variant(Path("a.kdb"))}).ToInt32(), 0);
        EXPECT_FALSE(binder.Call(L"CreateNew", {"x"}).ToBool());
        EXPECT_EQ(host.As<IOleObject>(IID_IOleObject)->Close(OLECLOSE_NOSAVE), S_OK);
        TryAll(host.control, "closed");
    }
    other = Variant();
}

TEST_F(BadInput, ADossierStaysAsItWasWhateverItsControlIsGiven) {
    Container host;
    const Late binder = Open(host, Make(CLSID_ctrlCorrespondence), lclConnection, "K1");
    const auto id = binder.Get(L"Id").ToInt32();
    const Variant text("geen getal"), none(static_cast<IDispatch*>(nullptr)),
        field(Make(CLSID_clsField));
    const auto fails = [&](const wchar_t* name, std::initializer_list<Variant> arguments) {
        try {
            const auto answer = binder.Call(name, arguments);
            return answer.IsObject() ? !answer.ToDispatch() : answer.ToInt32() < 0;
        } catch (const platform::Error& error) {
            return error.what()[0] != 0;
        }
    };
    EXPECT_TRUE(fails(L"AddItem", {text, "tab", none, 0, "x", 0}));
    EXPECT_TRUE(fails(L"AddItem", {0, "tab", field, 0, "x", 0})) << "an object of another class";
    EXPECT_TRUE(fails(L"AddItem", {0, "tab", none, 0, "x", 987654})) << "no such folder";
    EXPECT_TRUE(fails(L"AddItem", {0, Variant(std::string(65536, 't')), none, 0, "x", 0}));
    EXPECT_TRUE(fails(L"OpenOrCreate", {Variant(std::string(65536, 'k'))}));
    EXPECT_TRUE(fails(L"OpenOrCreate", {}));
    EXPECT_TRUE(fails(L"AddFiles", {Variant(std::string(65536, 'f'))}));
    EXPECT_EQ(binder.Call(L"OpenOrCreate", {"K1"}).ToInt32(), 0);
    EXPECT_EQ(binder.Get(L"Id").ToInt32(), id);
    const HWND tree = TreeOf(host);
    int folders = 0;
    for (auto node = FirstFolder(tree); node; node = Node(tree, TVGN_NEXT, node)) ++folders;
    EXPECT_EQ(folders, 3);
}

} // namespace kavidex::tests
