// Properties to and from a host's bag, a stream and a storage.
#include <map>

#include "Container.h"
#include "com/controls/HostObjects.h"
#include "kavidex_idl.h"

namespace kavidex::tests {

namespace {

// A property bag in memory, as a form's file would be.
class Bag final : public IPropertyBag {
public:
    std::map<std::wstring, Variant> items;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        return *object = nullptr, E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
        const auto found = items.find(name);
        if (found == items.end()) return E_INVALIDARG;
        const VARTYPE wanted = value->vt;
        if (wanted == VT_EMPTY) return VariantCopy(value, found->second.Address());
        value->vt = VT_EMPTY;
        return VariantChangeType(value, found->second.Address(), VARIANT_ALPHABOOL, wanted);
    }
    HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* value) override {
        items[name] = Variant(*value);
        return S_OK;
    }
};

class Persistence : public Library {
protected:
    static ComPtr<IStream> Stream(const std::string& bytes = {}) {
        ComPtr<IStream> stream;
        CreateStreamOnHGlobal(nullptr, TRUE, stream.Put());
        stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
        Rewind(*stream);
        return stream;
    }
    static void Rewind(IStream& stream) { stream.Seek({}, STREAM_SEEK_SET, nullptr); }
    static std::string Rest(IStream& stream) {
        std::string bytes(65536, '\0');
        ULONG got = 0;
        stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), &got);
        bytes.resize(got);
        return bytes;
    }
    std::string Saved(const Late& control) {
        auto stream = Stream();
        EXPECT_EQ(Init(control)->Save(stream.Get(), TRUE), S_OK);
        Rewind(*stream);
        return Rest(*stream);
    }
    static ComPtr<IPersistStreamInit> Init(const Late& control) {
        return As<IPersistStreamInit>(control.Object(), IID_IPersistStreamInit);
    }
    static ComPtr<IPersistPropertyBag> InBag(const Late& control) {
        return As<IPersistPropertyBag>(control.Object(), IID_IPersistPropertyBag);
    }
    static HRESULT Load(const Late& control, const std::string& bytes) {
        auto stream = Stream(bytes);
        return Init(control)->Load(stream.Get());
    }
    static void Fill(const Late& control) {
        control.Put(L"Description", {Variant("Cliënt 4711")});
        control.Put(L"SelectItems", {Variant(true)});
        control.Put(L"BackColor", {Variant(0x123456)});
    }
    static void ExpectFilled(const Late& control) {
        EXPECT_EQ(control.Get(L"Description").ToText(), "Cliënt 4711");
        EXPECT_TRUE(control.Get(L"SelectItems").ToBool());
        EXPECT_EQ(control.Get(L"BackColor").ToInt32(), 0x123456);
    }
};

} // namespace

TEST_F(Persistence, StreamsRoundTripAndKeepWhatFollowsThem) {
    for (const CLSID* clsid : {&CLSID_ctrlTree, &CLSID_ctrlCorrespondence}) {
        const Late first(Make(*clsid)), second(Make(*clsid));
        Fill(first);
        SIZEL size{4000, 3000};
        As<IOleObject>(first.Object(), IID_IOleObject)->SetExtent(DVASPECT_CONTENT, &size);
        const std::string saved = Saved(first);
        EXPECT_EQ(Init(first)->IsDirty(), S_FALSE);
        ULARGE_INTEGER most{};
        Init(first)->GetSizeMax(&most);
        EXPECT_EQ(most.QuadPart, saved.size());

        auto stream = Stream(saved + "behind");
        ASSERT_EQ(Init(second)->Load(stream.Get()), S_OK);
        EXPECT_EQ(Rest(*stream), "behind");
        ExpectFilled(second);
        SIZEL got{};
        As<IOleObject>(second.Object(), IID_IOleObject)->GetExtent(DVASPECT_CONTENT, &got);
        EXPECT_EQ(got.cx, 4000);
    }
}

TEST_F(Persistence, BagItemsHaveTheirToldWidthAndAFontIsAnObject) {
    const Late first(Make(CLSID_ctrlTree)), second(Make(CLSID_ctrlTree));
    first.Put(L"BorderStyle", {Variant(1)});
    first.PutRef(L"Font",
                 {Variant(com::FontObject(controls::FontFace{"Liberation Sans", 9, 700}))});
    Bag bag;
    ASSERT_EQ(InBag(first)->Save(&bag, TRUE, TRUE), S_OK);
    EXPECT_EQ(bag.items[L"BorderStyle"].Type(), VT_I2);
    EXPECT_EQ(bag.items[L"TreeId"].Type(), VT_I2);
    EXPECT_EQ(bag.items[L"BackColor"].Type(), VT_I4);
    EXPECT_EQ(bag.items[L"SelectItems"].Type(), VT_BOOL);
    EXPECT_TRUE(bag.items[L"Font"].IsObject());
    ASSERT_EQ(InBag(second)->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(Late(second.Get(L"Font")).Get(L"Name").ToText(), "Liberation Sans");
    EXPECT_EQ(Late(second.Get(L"Font")).Get(L"Weight").ToInt32(), 700);
    EXPECT_EQ(second.Get(L"BorderStyle").ToInt32(), 1);
}

TEST_F(Persistence, DamagedStreamsAreRefusedAndChangeNothing) {
    const Late control(Make(CLSID_ctrlTree));
    Fill(control);
    const std::string good = Saved(control);
    std::string tooLong = good;
    tooLong[7] = '\x7f'; // the length, far beyond the stream
    for (const std::string& bad : {std::string(), std::string("KVX1"), "NOPE" + good.substr(4),
                                   good.substr(0, good.size() - 3), tooLong}) {
        EXPECT_EQ(Load(control, bad), STG_E_DOCFILECORRUPT);
        ExpectFilled(control);
    }
}

TEST_F(Persistence, UnknownItemsArePassedOver) {
    const Late control(Make(CLSID_ctrlTree));
    Fill(control);
    std::string bytes = Saved(control);
    const std::string stranger("\6\0Future\143\3\0\0\0abc", 16); // an unknown kind
    bytes += stranger;
    std::uint32_t length = 0;
    memcpy(&length, bytes.data() + 4, 4);
    length += static_cast<std::uint32_t>(stranger.size());
    memcpy(bytes.data() + 4, &length, 4);
    const Late other(Make(CLSID_ctrlTree));
    ASSERT_EQ(Load(other, bytes), S_OK);
    ExpectFilled(other);
}

TEST_F(Persistence, ABagOfAHostMayHoldATextWhereTheDefaultIsANumber) {
    const Late control(Make(CLSID_ctrlCorrespondence));
    Bag bag;
    bag.items[L"IniFile"] = Variant("C:\\host.ini");
    ASSERT_EQ(InBag(control)->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(control.Get(L"IniFile").ToText(), "C:\\host.ini");
    EXPECT_EQ(control.Get(L"OLEDropMode").ToInt32(), 0) << "absent; a new control has 1";
    EXPECT_EQ(Late(Make(CLSID_ctrlCorrespondence)).Get(L"OLEDropMode").ToInt32(), 1);
}

TEST_F(Persistence, StoragesHoldTheSame) {
    const Late first(Make(CLSID_ctrlTree)), second(Make(CLSID_ctrlTree));
    Fill(first);
    ComPtr<IStorage> storage;
    ASSERT_EQ(StgCreateDocfile(nullptr,
                               STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_DELETEONRELEASE, 0,
                               storage.Put()),
              S_OK);
    auto store = As<IPersistStorage>(first.Object(), IID_IPersistStorage);
    ASSERT_EQ(store->Save(storage.Get(), FALSE), S_OK);
    EXPECT_EQ(store->SaveCompleted(nullptr), S_OK);
    EXPECT_EQ(store->IsDirty(), S_FALSE);
    ASSERT_EQ(As<IPersistStorage>(second.Object(), IID_IPersistStorage)->Load(storage.Get()), S_OK);
    ExpectFilled(second);
}

} // namespace kavidex::tests
