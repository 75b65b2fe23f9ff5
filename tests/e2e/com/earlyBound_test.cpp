// Hosts that bind to the type library rather than to names at run time: C++ with its ids and types,
// Visual Basic and .NET alike.
#include "Dossier.h"

namespace kavidex::tests {

namespace {

using platform::win32::FromWide;

class EarlyBound : public Dossiers {
protected:
    void SetUp() override {
        Dossiers::SetUp();
        ASSERT_EQ(LoadTypeLibEx(Library::Path().c_str(), REGKIND_NONE, lclTypes.Put()), S_OK);
    }
    ComPtr<ITypeInfo> Type(REFGUID guid) const {
        ComPtr<ITypeInfo> info;
        EXPECT_EQ(lclTypes->GetTypeInfoOfGuid(guid, info.Put()), S_OK);
        return info;
    }
    // Through the type information alone, as a compiler would have bound it.
    static Variant Call(const ComPtr<ITypeInfo>& of, IUnknown* object, const wchar_t* name,
                        WORD kind, std::vector<Variant> arguments = {}) {
        ITypeInfo& type = *of.Get();
        MEMBERID id = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
        auto* text = const_cast<LPOLESTR>(name);
        EXPECT_EQ(type.GetIDsOfNames(&text, 1, &id), S_OK) << FromWide(name);
        std::vector<VARIANT> reversed;
        for (auto i = arguments.size(); i-- > 0;) reversed.push_back(arguments[i].Get());
        const bool puts = (kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        DISPPARAMS given{reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()),
                         puts ? 1U : 0U};
        Variant result;
        EXCEPINFO error{};
        EXPECT_EQ(
            type.Invoke(object, id, kind, &given, puts ? nullptr : result.Put(), &error, nullptr),
            S_OK)
            << FromWide(name);
        return result;
    }
    ComPtr<ITypeLib> lclTypes;
};

} // namespace

TEST_F(EarlyBound, AProgramWorksThroughTheTypesAndIdsOfTheLibrary) {
    Container host;
    host.Take(Make(CLSID_ctrlCorrespondence), true);
    const auto binder = host.As<_ctrlCorrespondence>(DIID__ctrlCorrespondence);
    ASSERT_TRUE(binder);
    const auto type = Type(DIID__ctrlCorrespondence), item = Type(DIID__clsItem),
               items = Type(DIID__Collection);
    const auto call = [&](const wchar_t* name, std::vector<Variant> arguments) {
        return Call(type, binder.Get(), name, DISPATCH_METHOD, std::move(arguments));
    };
    Call(type, binder.Get(), L"DbConnection", DISPATCH_PROPERTYPUTREF, {lclConnection});
    Call(type, binder.Get(), L"Language", DISPATCH_PROPERTYPUT, {Variant(int{kdxEnglish})});
    EXPECT_EQ(call(L"OpenOrCreate", {"K1", "Dossier", "Post", "", ""}).ToInt32(), kdxOpened);
    const Variant none(static_cast<IDispatch*>(nullptr));
    const Variant folder = call(L"AddItem", {0, "tab", none, 0, "Nieuw", std::int16_t{0}});
    const auto typed = As<_clsItem>(folder.ToDispatch(), DIID__clsItem);
    ASSERT_TRUE(typed) << "the result is what the library says";
    EXPECT_EQ(Call(item, typed.Get(), L"Description", DISPATCH_PROPERTYGET).ToText(), "Nieuw");
    const Variant copies = call(L"ExportSelectedFiles", {Variant(true), Variant(false)});
    const auto collection = As<_Collection>(copies.ToDispatch(), DIID__Collection);
    ASSERT_TRUE(collection);
    EXPECT_EQ(Call(items, collection.Get(), L"Count", DISPATCH_PROPERTYGET).ToInt32(), 0);
    EXPECT_EQ(call(L"AddFiles", {Variant(Path("absent.txt")), "", 0, false, true}).ToInt32(),
              kdxNoFile);
    EXPECT_EQ(call(L"CloseObject", {}).ToInt32(), kdxFiled);
}

} // namespace kavidex::tests
