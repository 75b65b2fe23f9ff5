// The type library in the built file against the tables that serve its members, against the help
// that a host's developer reads, and against the contract as it was agreed.
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "ContractText.h"
#include "Library.h"
#include "TypeInfos.h"
#include "com/adodb/Collections.h"
#include "com/adodb/CommandObject.h"
#include "com/adodb/ConnectionObject.h"
#include "com/adodb/RecordsetObject.h"
#include "com/class_table.h"
#include "com/controls/adminFaces.h"
#include "com/controls/ctlViewerFace.h"
#include "com/controls/ctrlCorrespondenceFace.h"
#include "com/controls/ctrlExtViewerFace.h"
#include "com/controls/ctrlNoteFace.h"
#include "com/controls/ctrlTreeFace.h"
#include "com/dispatch/Automation.h"
#include "kavidex_idl.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::tests {

namespace {

// One member in words, so that a difference reads well.
struct Entry {
    std::string name, parameters;
    std::vector<VARTYPE> types;
    std::vector<bool> optional;
    VARTYPE result;
    bool operator==(const Entry&) const = default;
};
using Entries = std::map<std::pair<DISPID, int>, Entry>;

std::ostream& operator<<(std::ostream& out, const Entry& entry) {
    out << entry.name << "(" << entry.parameters << ":";
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
    void Compare(const com::Table& table) const;
    ComPtr<ITypeLib> lclTypes;
};

// A type library keeps one spelling of a name, whatever its case: names are held against each other
// without it.
std::string Lower(const wchar_t* name) {
    return platform::LowerCase(platform::win32::FromWide(name));
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
    VARTYPE plain = VT_EMPTY;
    if (FAILED(info.GetRefTypeInfo(type.hreftype, other.Put()))) return plain;
    WithAttributes(*other.Get(), [&](const TYPEATTR& attributes) {
        plain = attributes.guid == IID_IUnknown ? VT_UNKNOWN : VT_DISPATCH;
        if (attributes.typekind == TKIND_ALIAS) plain = Plain(*other, attributes.tdescAlias);
        if (attributes.typekind == TKIND_ENUM) plain = VT_I4;
    });
    return plain;
}

Entries Read(ITypeInfo& info) {
    Entries entries;
    ForEachMember(info, [&](const FUNCDESC& function) {
        const auto names = ParametersOf(info, function);
        Entry entry{platform::LowerCase(WordsOf(info, function.memid).name),
                    {},
                    {},
                    {},
                    Plain(info, function.elemdescFunc.tdesc)};
        const bool puts = function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF);
        for (SHORT p = 0; p < function.cParams; ++p) {
            const ELEMDESC& parameter = function.lprgelemdescParam[p];
            entry.types.push_back(Plain(info, parameter.tdesc));
            entry.optional.push_back(parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT);
            const auto place = static_cast<std::size_t>(p);
            const bool value = puts && p == function.cParams - 1;
            if (!value && place < names.size())
                entry.parameters += (p ? "," : "") + platform::LowerCase(names[place]);
        }
        entries[{function.memid, function.invkind}] = entry;
    });
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

// Each behind the type that it belongs to, so that a difference tells where it is.
std::vector<std::string> SortedLines(const std::string& text) {
    std::istringstream lines(text);
    std::vector<std::string> all;
    for (std::string line, type; std::getline(lines, line);) {
        const bool member = line.starts_with(' ') || line.starts_with('|');
        if (!line.empty() && !member) type = line;
        all.push_back(member ? type + ": " + line : line);
    }
    std::sort(all.begin(), all.end());
    return all;
}

// A control with events adds its line.
const struct Source {
    const IID& iid;
    std::span<const com::EventRow> rows;
} sources[] = {{DIID__ctrlTreeEvents, com::TreeEventTable()},
               {DIID__ctrlCorrespondenceEvents, com::BinderEventTable()},
               {DIID__ctlViewerEvents, com::ViewerEventTable()},
               {DIID__ctrlNoteEvents, com::NoteEventTable()},
               {DIID__ctrlExtViewerEvents, com::ExtViewerEventTable()},
               {DIID__ctlChecklistEvents, com::ChecklistEventTable()},
               {DIID__ctlAdministrationEvents, com::AdministrationEventTable()}};

TEST_F(Contract, EveryEventHasItsRowAndTheOtherWayRound) {
    for (const com::ClassRow& row : com::ClassTable()) {
        const bool listed =
            !row.events || std::any_of(std::begin(sources), std::end(sources),
                                       [&](const Source& one) { return one.iid == *row.events; });
        EXPECT_TRUE(listed) << platform::win32::FromWide(row.name) << " has no line in `sources`";
    }
    for (const auto& source : sources) {
        const auto info = Find(source.iid);
        ASSERT_TRUE(info);
        std::map<DISPID, std::string> written, raised;
        for (const auto& [key, entry] : Read(*info)) written[key.first] = entry.name;
        for (const auto& row : source.rows) raised[row.id] = Lower(row.name);
        EXPECT_EQ(written, raised);
    }
}

// What an object browser shows of each member: what it does, and each of its parameters by name.
TEST_F(Contract, EveryMemberAndEventTellsWhatItDoesAndWhatItsParametersAre) {
    std::map<std::string, std::set<std::string>> silent;
    ForEachType(*lclTypes.Get(), [&](ITypeInfo& info, const TYPEATTR& attributes) {
        const auto about = WordsOf(info);
        EXPECT_NE(about.help, "") << about.name;
        if (attributes.typekind != TKIND_DISPATCH) return;
        for (const auto& [key, entry] : Read(info)) {
            std::string words = " " + platform::LowerCase(WordsOf(info, key.first).help) + " ";
            EXPECT_GT(words.size(), 6u) << about.name << " " << entry;
            if (words.find(" never raised") != words.npos) silent[about.name].insert(entry.name);
            for (char& letter : words)
                if (!isalnum(static_cast<unsigned char>(letter))) letter = ' ';
            if (key.first == DISPID_VALUE) continue; // the index of a collection needs no words
            for (const std::string& name : platform::Split(entry.parameters, ','))
                EXPECT_NE(words.find(" " + name + " "), words.npos)
                    << about.name << " " << entry << ": " << name;
        }
    });
    const std::set<std::string> older = {"itemselected",
                                         "itemselectedexternal",
                                         "itemselectedrightmouse",
                                         "itemdropped",
                                         "itemdroppedandhandled",
                                         "itemdragover",
                                         "itemcreated",
                                         "itemdelete",
                                         "itemcopy",
                                         "itemcut",
                                         "itempaste",
                                         "itemrenamed"};
    EXPECT_EQ(silent["_ctrlTreeEvents"], older);
    EXPECT_EQ(silent["_ctrlCorrespondenceEvents"], std::set<std::string>{"itemselected"});
}

// A change of an id, a name, a type or an argument shows here. `./kavidex contract` writes both
// files anew; what it then changes is for the reviewer to judge.
TEST_F(Contract, TheContractIsTheOneThatWasAgreed) {
    const struct {
        std::string file, present;
    } texts[] = {{KAVIDEX_SOURCES "\\com\\idl\\contract.txt", ContractText(*lclTypes.Get())},
                 {KAVIDEX_SOURCES "\\docs\\members.md", MembersText(*lclTypes.Get())}};
    auto& files = platform::TheWorkstation().files;
    for (const auto& text : texts) {
        if (std::getenv("KAVIDEX_RENEW")) files.WriteAll(text.file, text.present);
        const auto before = SortedLines(files.ReadAll(text.file)),
                   after = SortedLines(text.present);
        std::vector<std::string> gone, added;
        std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                            std::back_inserter(gone));
        std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                            std::back_inserter(added));
        for (const auto& line : gone) ADD_FAILURE() << text.file << " has, and gone is: " << line;
        for (const auto& line : added)
            ADD_FAILURE() << text.file << " lacks (./kavidex contract writes it): " << line;
    }
}

TEST_F(Contract, EveryCoclassCanBeMadeAndNamesItsInterfaces) {
    std::set<std::string> described, made;
    ForEachType(*lclTypes.Get(), [&](ITypeInfo& info, const TYPEATTR& attributes) {
        if (attributes.typekind == TKIND_COCLASS) described.insert(WordsOf(info).name);
    });
    for (const com::ClassRow& row : com::ClassTable()) {
        const auto name = platform::win32::FromWide(row.name);
        made.insert(name);
        EXPECT_TRUE(As<IDispatch>(Make(*row.clsid), *row.iid)) << name;
        const auto info = Find(*row.clsid);
        ASSERT_TRUE(info);
        int interfaces = 0;
        ForEachInterface(*info.Get(), [&](ITypeInfo&, bool) { ++interfaces; });
        EXPECT_EQ(interfaces, row.events ? 2 : 1);
    }
    EXPECT_EQ(described, made);
}

} // namespace kavidex::tests
