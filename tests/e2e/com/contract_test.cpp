// The type library in the built file against the tables that serve its members.
#include <cstring>
#include <map>
#include <set>

#include "Library.h"
#include "com/adodb/Collections.h"
#include "com/adodb/CommandObject.h"
#include "com/adodb/ConnectionObject.h"
#include "com/adodb/RecordsetObject.h"
#include "com/class_table.h"
#include "com/controls/ctlViewerFace.h"
#include "com/controls/ctrlCorrespondenceFace.h"
#include "com/controls/ctrlExtViewerFace.h"
#include "com/controls/ctrlNoteFace.h"
#include "com/controls/ctrlTreeFace.h"
#include "com/dispatch/Automation.h"
#include "kavidex_idl.h"

namespace kavidex::tests {

namespace {

// One member in words, so that a difference reads well.
struct Entry {
    std::wstring name, parameters;
    std::vector<VARTYPE> types;
    std::vector<bool> optional;
    VARTYPE result;
    bool operator==(const Entry&) const = default;
};
using Entries = std::map<std::pair<DISPID, int>, Entry>;

std::ostream& operator<<(std::ostream& out, const Entry& entry) {
    out << platform::win32::FromWide(entry.name) << "("
        << platform::win32::FromWide(entry.parameters) << ":";
    for (std::size_t i = 0; i < entry.types.size(); ++i)
        out << " " << entry.types[i] << (entry.optional[i] ? "?" : "");
    return out << ") -> " << entry.result;
}

class Contract : public Library {
protected:
    void SetUp() override {
        Library::SetUp();
        ASSERT_EQ(LoadTypeLibEx(Path().c_str(), REGKIND_NONE, lclTypes.Put()), S_OK);
    }
    ComPtr<ITypeInfo> Find(REFGUID guid) const {
        ComPtr<ITypeInfo> info;
        lclTypes->GetTypeInfoOfGuid(guid, info.Put());
        return info;
    }
    Entries Read(ITypeInfo& info) const;
    void Compare(const com::Table& table) const;
    ComPtr<ITypeLib> lclTypes;
};

// A type library keeps one spelling of a name, whatever its case: names are held against each other
// without it.
std::wstring Lower(std::wstring name) {
    CharLowerW(name.data());
    return name;
}

// As the tables count: aliases and enumerations are their numbers, objects are IDispatch.
VARTYPE Plain(ITypeInfo& info, const TYPEDESC& type) {
    if (type.vt == VT_PTR) {
        const VARTYPE inner = Plain(info, *type.lptdesc);
        const bool object = inner == VT_DISPATCH || inner == VT_UNKNOWN;
        return object ? inner : static_cast<VARTYPE>(VT_BYREF | inner);
    }
    if (type.vt == VT_UI4 || type.vt == VT_INT) return VT_I4;
    if (type.vt != VT_USERDEFINED) return type.vt;
    ComPtr<ITypeInfo> other;
    TYPEATTR* attributes = nullptr;
    if (FAILED(info.GetRefTypeInfo(type.hreftype, other.Put())) ||
        FAILED(other->GetTypeAttr(&attributes)))
        return VT_EMPTY;
    const TYPEKIND kind = attributes->typekind;
    const bool unknown = attributes->guid == IID_IUnknown;
    VARTYPE plain = unknown ? VT_UNKNOWN : VT_DISPATCH;
    if (kind == TKIND_ALIAS) plain = Plain(*other, attributes->tdescAlias);
    if (kind == TKIND_ENUM) plain = VT_I4;
    other->ReleaseTypeAttr(attributes);
    return plain;
}

Entries Contract::Read(ITypeInfo& info) const {
    Entries entries;
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(info.GetTypeAttr(&attributes), S_OK);
    const UINT count = attributes->cFuncs;
    EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
    info.ReleaseTypeAttr(attributes);
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* function = nullptr;
        EXPECT_EQ(info.GetFuncDesc(i, &function), S_OK);
        if (function->memid < 0x60000000) { // not IDispatch's own
            BSTR names[32];
            UINT known = 0;
            info.GetNames(function->memid, names, 32, &known);
            Entry entry{Lower(names[0]), {}, {}, {}, Plain(info, function->elemdescFunc.tdesc)};
            for (SHORT p = 0; p < function->cParams; ++p) {
                const ELEMDESC& parameter = function->lprgelemdescParam[p];
                entry.types.push_back(Plain(info, parameter.tdesc));
                entry.optional.push_back(parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT);
                const bool value =
                    (function->invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF)) &&
                    p == function->cParams - 1;
                if (!value && static_cast<UINT>(p) + 1 < known)
                    entry.parameters += (p ? L"," : L"") + Lower(names[p + 1]);
            }
            for (UINT n = 0; n < known; ++n) SysFreeString(names[n]);
            entries[{function->memid, function->invkind}] = entry;
        }
        info.ReleaseFuncDesc(function);
    }
    return entries;
}

Entries Served(const com::Table& table) {
    Entries entries;
    for (const com::Member& member : table.members) {
        Entry entry{Lower(member.name), Lower(member.parameters), {}, {}, member.result};
        for (const auto& parameter : member.types) {
            entry.types.push_back(parameter.type);
            entry.optional.push_back(parameter.optional);
        }
        entries[{member.id, member.kind}] = entry;
    }
    return entries;
}

// Both ways: what is written is served, and what is served is written.
void Contract::Compare(const com::Table& table) const {
    const auto info = Find(*table.iid);
    ASSERT_TRUE(info);
    const Entries written = Read(*info), served = Served(table);
    for (const auto& [key, entry] : written) {
        const auto found = served.find(key);
        if (found == served.end())
            ADD_FAILURE() << "not served: " << key.first << "/" << key.second << " " << entry;
        else
            EXPECT_EQ(found->second, entry) << key.first;
    }
    for (const auto& [key, entry] : served)
        EXPECT_TRUE(written.contains(key))
            << "not in the type library: " << key.first << "/" << key.second << " " << entry;
}

} // namespace

TEST_F(Contract, EveryClassServesExactlyWhatTheTypeLibrarySays) {
    for (const com::ClassRow& row : com::ClassTable()) {
        SCOPED_TRACE(platform::win32::FromWide(row.name));
        const auto object = row.create();
        const com::Table& table = static_cast<com::Automation*>(object.Get())->Members();
        EXPECT_EQ(*table.iid, *row.iid);
        Compare(table);
    }
}

TEST_F(Contract, EveryAdodbInterfaceServesExactlyWhatTheTypeLibrarySays) {
    using namespace com::adodb;
    const ComPtr<IDispatch> objects[] = {
        com::Make<ConnectionObject>(),
        com::Make<RecordsetObject>(),
        com::Make<FieldsObject>(ComPtr<RecordsetObject>()),
        com::Make<FieldObject>(ComPtr<RecordsetObject>(), std::size_t{0}),
        com::Make<CommandObject>(),
        com::Make<ParametersObject>(ComPtr<CommandObject>()),
        com::Make<ParameterObject>(),
        com::Make<PropertiesObject>(std::vector<std::string>(), nullptr),
        com::Make<PropertyObject>(Property{}),
        com::Make<ErrorsObject>(ComPtr<ConnectionObject>()),
        com::Make<ErrorObject>(data::ErrorDetail{}),
    };
    for (const auto& object : objects) {
        const com::Table& table = static_cast<com::Automation*>(object.Get())->Members();
        SCOPED_TRACE(table.source);
        Compare(table);
    }
}

TEST_F(Contract, EveryEventHasItsRowAndTheOtherWayRound) {
    const struct {
        const IID& iid;
        std::span<const com::EventRow> rows;
    } sources[] = {{DIID__ctrlTreeEvents, com::TreeEventTable()},
                   {DIID__ctrlCorrespondenceEvents, com::BinderEventTable()},
                   {DIID__ctlViewerEvents, com::ViewerEventTable()},
                   {DIID__ctrlNoteEvents, com::NoteEventTable()},
                   {DIID__ctrlExtViewerEvents, com::ExtViewerEventTable()}};
    for (const auto& source : sources) {
        const auto info = Find(source.iid);
        ASSERT_TRUE(info);
        std::map<DISPID, std::wstring> written, raised;
        for (const auto& [key, entry] : Read(*info)) written[key.first] = entry.name;
        for (const auto& row : source.rows) raised[row.id] = Lower(row.name);
        EXPECT_EQ(written, raised);
    }
}

TEST_F(Contract, EveryEventTellsWhatItsParametersAreAndTheOlderOnesThatTheyAreNotRaised) {
    std::map<IID, std::set<std::wstring>, bool (*)(const IID&, const IID&)> silent(
        [](const IID& a, const IID& b) { return std::memcmp(&a, &b, sizeof a) < 0; });
    for (const IID& iid :
         {DIID__ctrlTreeEvents, DIID__ctrlCorrespondenceEvents, DIID__ctlViewerEvents,
          DIID__ctrlNoteEvents, DIID__ctrlExtViewerEvents}) {
        const auto info = Find(iid);
        ASSERT_TRUE(info);
        for (const auto& [key, entry] : Read(*info)) {
            platform::win32::Bstr text;
            info->GetDocumentation(key.first, nullptr, text.Put(), nullptr, nullptr);
            std::wstring words = L" " + Lower(text.Get() ? text.Get() : L"");
            EXPECT_GT(words.size(), 10u) << entry;
            if (words.find(L" never raised") != words.npos) silent[iid].insert(entry.name);
            for (wchar_t& letter : words)
                if (!iswalnum(letter)) letter = L' ';
            for (std::size_t at = 0; at < entry.parameters.size();) {
                const auto end = std::min(entry.parameters.find(L',', at), entry.parameters.size());
                const auto name = L" " + entry.parameters.substr(at, end - at) + L" ";
                EXPECT_NE(words.find(name), words.npos)
                    << entry << ": " << platform::win32::FromWide(name);
                at = end + 1;
            }
        }
    }
    const std::set<std::wstring> older = {L"itemselected",
                                          L"itemselectedexternal",
                                          L"itemselectedrightmouse",
                                          L"itemdropped",
                                          L"itemdroppedandhandled",
                                          L"itemdragover",
                                          L"itemcreated",
                                          L"itemdelete",
                                          L"itemcopy",
                                          L"itemcut",
                                          L"itempaste",
                                          L"itemrenamed"};
    EXPECT_EQ(silent[DIID__ctrlTreeEvents], older);
    EXPECT_EQ(silent[DIID__ctrlCorrespondenceEvents], std::set<std::wstring>{L"itemselected"});
}

TEST_F(Contract, EveryCoclassCanBeMadeAndNamesItsInterfaces) {
    std::set<std::wstring> described, made;
    for (UINT i = 0; i < lclTypes->GetTypeInfoCount(); ++i) {
        TYPEKIND kind{};
        platform::win32::Bstr name;
        lclTypes->GetTypeInfoType(i, &kind);
        lclTypes->GetDocumentation(static_cast<INT>(i), name.Put(), nullptr, nullptr, nullptr);
        if (kind == TKIND_COCLASS) described.insert(name.Get());
    }
    for (const com::ClassRow& row : com::ClassTable()) {
        made.insert(row.name);
        EXPECT_TRUE(Make(*row.clsid)) << platform::win32::FromWide(row.name);
        const auto info = Find(*row.clsid);
        ASSERT_TRUE(info);
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
        EXPECT_EQ(attributes->cImplTypes, row.events ? 2 : 1);
        info->ReleaseTypeAttr(attributes);
    }
    EXPECT_EQ(described, made);
}

} // namespace kavidex::tests
