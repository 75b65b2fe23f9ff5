// The members and events of every class for docs/members.md, from the help in the type library.
#include <map>
#include <vector>

#include "ContractText.h"
#include "TypeInfos.h"

namespace kavidex::tests {

namespace {

// "Name", or "Name(first, [second])" with what may be left out in brackets.
std::string Heading(ITypeInfo& info, const FUNCDESC& function) {
    std::string text = WordsOf(info, function.memid).name, list;
    int place = 0;
    for (const std::string& name : ParametersOf(info, function)) {
        const auto flags = function.lprgelemdescParam[place].paramdesc.wParamFlags;
        list += place++ > 0 ? ", " : "";
        list += flags & PARAMFLAG_FOPT ? "[" + name + "]" : name;
    }
    return function.invkind != INVOKE_FUNC && list.empty() ? text : text + "(" + list + ")";
}

std::string Rows(ITypeInfo& info, const char* title) {
    std::vector<MEMBERID> order;
    std::map<MEMBERID, std::string> rows;
    ForEachMember(info, [&](const FUNCDESC& function) {
        if (rows.contains(function.memid)) return;
        order.push_back(function.memid);
        rows[function.memid] =
            "| `" + Heading(info, function) + "` | " + WordsOf(info, function.memid).help + " |\n";
    });
    std::string text = std::string("| ") + title + " | |\n|---|---|\n";
    for (const auto id : order) text += rows[id];
    return text;
}

std::string ClassText(ITypeInfo& coclass) {
    const auto about = WordsOf(coclass);
    std::string text = "\n## Kavidex." + about.name + "\n\n" + about.help + ".\n";
    ForEachInterface(coclass, [&](ITypeInfo& info, bool events) {
        text += "\n" + Rows(info, events ? "event" : "member");
    });
    return text;
}

} // namespace

std::string MembersText(ITypeLib& library) {
    std::string text = "# Members and events\n\nEvery class that a host can make, with each member "
                       "and event. `./kavidex contract` writes this from\nthe help in the type "
                       "library; numbers by name are in its enumerations.\n";
    std::map<std::string, std::string> classes;
    ForEachType(library, [&](ITypeInfo& info, const TYPEATTR& attributes) {
        if (attributes.typekind == TKIND_COCLASS) classes[WordsOf(info).name] = ClassText(info);
    });
    for (const auto& [name, one] : classes) text += one;
    return text;
}

} // namespace kavidex::tests
