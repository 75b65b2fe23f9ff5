// The dispatch table as a script sees it: conversions, named and left-out arguments, default
// members, enumerators, errors.
#include <gtest/gtest.h>

#include <map>

#include "com/dispatch/Automation.h"
#include "com/dispatch/Enumerator.h"
#include "platform/Error.h"
#include "platform/win32/Late.h"

using namespace kavidex;
using com::Automation;
using com::ComPtr;
using com::Variant;
using platform::win32::Late;

namespace {

constexpr IID iidShelf = {0x11111111, 1, 1, {1, 1, 1, 1, 1, 1, 1, 1}};
constexpr IID iidBook = {0x11111111, 1, 2, {1, 1, 1, 1, 1, 1, 1, 1}};

struct Book {
    std::string title;
    std::int32_t pages = 0;
};

struct BookFace : com::Face<Book> {
    using Face::Face;
    const com::Table& Members() const override;
};

} // namespace

template <>
struct com::FaceOf<Book> {
    static ComPtr<IDispatch> Make(std::shared_ptr<Book> book) {
        return com::Make<BookFace>(std::move(book));
    }
};

namespace {

const com::Table& BookFace::Members() const {
    using Row = com::Rows<BookFace>;
    static constexpr com::Member rows[] = {
        Row::Get<[](Book& b) { return b.title; }>(L"Title", DISPID_VALUE),
        Row::Put<[](Book& b, std::string t) { b.title = t; }>(L"Title", DISPID_VALUE),
        Row::Get<[](const Book& b) { return b.pages; }>(L"Pages", 1),
    };
    static constexpr com::Table table{"Kavidex.Book", &iidBook, rows};
    return table;
}

struct Shelf : Automation {
    std::vector<std::shared_ptr<Book>> books{std::make_shared<Book>(Book{"Eén", 1}),
                                             std::make_shared<Book>(Book{"Twee", 2})};
    std::map<std::string, std::int16_t> marks;

    std::shared_ptr<Book> Item(std::int32_t place) const {
        return books.at(static_cast<std::size_t>(place - 1));
    }
    std::string Joined(const std::string& a, std::optional<std::string> b,
                       std::optional<bool> loud) {
        return a + "|" + b.value_or("-") + "|" + (loud ? (*loud ? "loud" : "soft") : "none");
    }
    std::int32_t Length(std::string_view text) { return static_cast<std::int32_t>(text.size()); }

    const com::Table& Members() const override {
        using Row = com::Rows<Shelf>;
        static constexpr com::Member rows[] = {
            Row::Get<&Shelf::Item>(L"Item", DISPID_VALUE, L"place"),
            Row::Method<&Shelf::Joined>(L"Joined", 1, L"a,b,loud"),
            Row::Method<&Shelf::Length>(L"Length", 2, L"text"),
            Row::Get<[](Shelf& s) { return ComPtr<IDispatch>(&s); }>(L"Self", 4),
            Row::Get<[](Shelf& s, std::string key) { return s.marks[key]; }>(L"Mark", 5, L"key"),
            Row::Put<[](Shelf& s, std::string key, std::int16_t v) { s.marks[key] = v; }>(
                L"Mark", 5, L"key"),
            Row::Method<[](Shelf&, std::int32_t n) {
                if (n == 1)
                    throw platform::Error(platform::errors::notFound, "Geen boek \"é\"", "Shelf");
                if (n == 2) throw platform::Error(3021, "Basic's number");
                if (n == 3) throw std::runtime_error("standard");
                if (n == 4) throw 7;
                constexpr const char* parts[] = {"EmbeddedDatabase", "ODBC 42S02", "clsSettings"};
                if (n < 8) throw platform::Error(3021, "part", parts[n - 5]);
            }>(L"Fail", 6, L"n"),
            Row::Method<[](Shelf&, std::shared_ptr<Book> b) { return b ? b->pages : -1; }>(
                L"PagesOf", 7, L"book"),
            Row::Get<[](Shelf& s) {
                std::vector<Variant> items;
                for (auto& book : s.books) items.emplace_back(com::FaceOf<Book>::Make(book));
                return com::MakeEnumerator(std::move(items));
            }>(L"_NewEnum", DISPID_NEWENUM),
        };
        static constexpr com::Table table{"Kavidex.Shelf", &iidShelf, rows};
        return table;
    }
};

class Dispatch : public testing::Test {
protected:
    void TearDown() override {
        shelf = Late();
        EXPECT_EQ(com::LiveObjects(), 0);
    }
    HRESULT Raw(DISPID id, WORD flags, std::vector<Variant> reversed, UINT* wrong = nullptr,
                EXCEPINFO* info = nullptr) {
        std::vector<VARIANT> raw;
        for (auto& v : reversed) raw.push_back(v.Get());
        DISPPARAMS parameters{raw.data(), nullptr, static_cast<UINT>(raw.size()), 0};
        return shelf.Object()->Invoke(id, IID_NULL, 0, flags, &parameters, nullptr, info, wrong);
    }
    Late shelf{com::Make<Shelf>()};
};

} // namespace

TEST_F(Dispatch, ConvertsAsBasicDoesAndFindsNamesWithoutCase) {
    EXPECT_EQ(shelf.Call(L"LENGTH", {Variant(123)}).ToInt32(), 3);
    EXPECT_EQ(shelf.Call(L"length", {Variant("é")}).ToInt32(), 2);
    EXPECT_EQ(shelf.Call(L"Length", {Variant::Null()}).ToInt32(), 0);
    shelf.Put(L"Mark", {Variant("x"), Variant("12")});
    const Variant mark = shelf.Get(L"Mark", {Variant("x")});
    EXPECT_EQ(mark.Type(), VT_I2);
    EXPECT_EQ(mark.ToInt32(), 12);
    // A property called as a method, as scripts do.
    EXPECT_EQ(shelf.Call(L"Mark", {Variant("x")}).ToInt32(), 12);
}

TEST_F(Dispatch, LeavesOptionalArgumentsOutAndTakesThemByName) {
    EXPECT_EQ(shelf.Call(L"Joined", {Variant("a")}).ToText(), "a|-|none");
    EXPECT_EQ(shelf.Call(L"Joined", {Variant("a"), Variant::Missing(), Variant(true)}).ToText(),
              "a|-|loud");

    LPOLESTR names[] = {const_cast<wchar_t*>(L"joined"), const_cast<wchar_t*>(L"LOUD"),
                        const_cast<wchar_t*>(L"a")};
    DISPID ids[3];
    ASSERT_EQ(shelf.Object()->GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
    Variant loud(false), a("x"), result;
    VARIANT arguments[] = {loud.Get(), a.Get()};
    DISPPARAMS parameters{arguments, &ids[1], 2, 2};
    ASSERT_EQ(shelf.Object()->Invoke(ids[0], IID_NULL, 0, DISPATCH_METHOD, &parameters,
                                     result.Put(), nullptr, nullptr),
              S_OK);
    EXPECT_EQ(result.ToText(), "x|-|soft");

    names[1] = const_cast<wchar_t*>(L"volume");
    EXPECT_EQ(shelf.Object()->GetIDsOfNames(IID_NULL, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
}

TEST_F(Dispatch, PassesSpareArgumentsToTheDefaultMemberOfWhatAPropertyGives) {
    EXPECT_EQ(shelf
                  .Invoke(DISPID_VALUE, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                          std::vector<Variant>{Variant(2)})
                  .IsObject(),
              true);
    EXPECT_EQ(Late(shelf.Get(L"Self", {Variant(2)})).Get(L"Pages").ToInt32(), 2);
    shelf.Put(L"Self", {Variant(1), Variant("Nieuw")}); // Self(1) = "Nieuw" reaches Title
    EXPECT_EQ(Late(shelf.Get(L"Item", {Variant(1)})).Get(L"Title").ToText(), "Nieuw");
}

TEST_F(Dispatch, GivesOurObjectsBackAsThemselvesAndRefusesOthers) {
    EXPECT_EQ(shelf.Call(L"PagesOf", {shelf.Get(L"Item", {Variant(2)})}).ToInt32(), 2);
    EXPECT_EQ(shelf.Call(L"PagesOf", {Variant(static_cast<IDispatch*>(nullptr))}).ToInt32(), -1);
    UINT wrong = 9;
    EXPECT_EQ(Raw(7, DISPATCH_METHOD, {Variant(shelf.Object())}, &wrong), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 0u);
}

TEST_F(Dispatch, EnumeratesAndKeepsItsPlaceInACopy) {
    const auto items = platform::win32::Enumerate(shelf.Object());
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(Late(items[0]).Get(L"Title").ToText(), "Eén");

    auto walker = com::MakeEnumerator({Variant(1), Variant(2), Variant(3)}).Query<IEnumVARIANT>();
    ASSERT_EQ(walker->Skip(1), S_OK);
    ComPtr<IEnumVARIANT> copy;
    ASSERT_EQ(walker->Clone(copy.Put()), S_OK);
    VARIANT got[3];
    ULONG fetched = 0;
    EXPECT_EQ(copy->Next(3, got, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(got[0].lVal, 2);
    EXPECT_EQ(walker->Skip(5), S_FALSE);
}

TEST_F(Dispatch, TurnsExceptionsIntoTheHostsErrors) {
    struct {
        std::int32_t n;
        HRESULT scode;
        const char* text;
        const char* source;
    } cases[] = {
        {1, platform::errors::notFound, "Geen boek \"é\"", "Shelf"},
        {2, static_cast<HRESULT>(0x800A0BCD), "Basic's number", "Kavidex.Shelf"},
        {3, E_FAIL, "standard", "Kavidex.Shelf"},
        {4, E_UNEXPECTED, "An unknown failure", "Kavidex.Shelf"},
        {5, static_cast<HRESULT>(0x800A0BCD), "part", "Kavidex.Shelf"},
        {6, static_cast<HRESULT>(0x800A0BCD), "part", "Kavidex.Shelf"},
        {7, static_cast<HRESULT>(0x800A0BCD), "part", "Kavidex.Shelf"},
    };
    for (const auto& one : cases) {
        EXCEPINFO info{};
        EXPECT_EQ(Raw(6, DISPATCH_METHOD, {Variant(one.n)}, nullptr, &info), DISP_E_EXCEPTION);
        EXPECT_EQ(info.scode, one.scode);
        EXPECT_EQ(platform::win32::FromBstr(info.bstrDescription), one.text);
        EXPECT_EQ(platform::win32::FromBstr(info.bstrSource), one.source);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrSource);
    }
}

TEST_F(Dispatch, RefusesWrongCallsWithTheirPlace) {
    UINT wrong = 9;
    EXPECT_EQ(Raw(2, DISPATCH_METHOD, {}), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_EQ(Raw(2, DISPATCH_METHOD, {Variant("a"), Variant("b")}), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(Raw(99, DISPATCH_METHOD, {}), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(Raw(1, DISPATCH_METHOD, {Variant("maybe"), Variant("b"), Variant("a")}, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 0u); // rgvarg counts from the last argument
    EXPECT_EQ(Raw(5, DISPATCH_PROPERTYGET, {}), DISP_E_PARAMNOTOPTIONAL);
    EXPECT_THROW(shelf.Put(L"Mark", {Variant("x"), Variant(40000)}),
                 platform::Error); // overflows 16 bits
}
