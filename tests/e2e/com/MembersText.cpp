// The members and events of every class for docs/members.md, from the help in the type library.
#include <map>
#include <vector>

#include "ContractText.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Variant.h"

namespace kavidex::tests {

namespace {

using platform::win32::Bstr;
using platform::win32::ComPtr;
using platform::win32::FromWide;

constexpr MEMBERID ownOfDispatch = 0x60000000;

struct Words {
    std::string name, help;
};

Words WordsOf(ITypeInfo& info, MEMBERID member) {
    Bstr name, help;
    info.GetDocumentation(member, name.Put(), help.Put(), nullptr, nullptr);
    return {name.Get() ? FromWide(name.Get()) : std::string(),
            help.Get() ? FromWide(help.Get()) : std::string()};
}

// "Name", or "Name(first, [second])" with what may be left out in brackets.
std::string Heading(ITypeInfo& info, const FUNCDESC& function) {
    std::vector<BSTR> names(static_cast<std::size_t>(function.cParams) + 1, nullptr);
    UINT known = 0;
    info.GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &known);
    std::string text = WordsOf(info, function.memid).name, list;
    for (UINT p = 1; p < known; ++p) {
        const bool optional =
            function.lprgelemdescParam[p - 1].paramdesc.wParamFlags & PARAMFLAG_FOPT;
        const auto name = FromWide(names[p]);
        list += (p > 1 ? ", " : "") + (optional ? "[" + name + "]" : name);
    }
    for (UINT n = 0; n < known; ++n) SysFreeString(names[n]);
    const bool property = function.invkind != INVOKE_FUNC;
    return property && list.empty() ? text : text + "(" + list + ")";
}

std::string Rows(ITypeInfo& info, const char* title) {
    TYPEATTR* attributes = nullptr;
    if (FAILED(info.GetTypeAttr(&attributes))) return {};
    const UINT count = attributes->cFuncs;
    info.ReleaseTypeAttr(attributes);
    std::vector<MEMBERID> order;
    std::map<MEMBERID, std::string> rows;
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(info.GetFuncDesc(i, &function))) continue;
        const auto id = function->memid;
        if (id < ownOfDispatch && !rows.contains(id)) {
            order.push_back(id);
            rows[id] = "| `" + Heading(info, *function) + "` | " + WordsOf(info, id).help + " |\n";
        }
        info.ReleaseFuncDesc(function);
    }
    std::string text = std::string("| ") + title + " | |\n|---|---|\n";
    for (const auto id : order) text += rows[id];
    return text;
}

std::string ClassText(ITypeInfo& coclass) {
    const auto about = WordsOf(coclass, MEMBERID_NIL);
    std::string text = "\n## Kavidex." + about.name + "\n\n" + about.help + ".\n";
    TYPEATTR* attributes = nullptr;
    if (FAILED(coclass.GetTypeAttr(&attributes))) return text;
    const UINT count = attributes->cImplTypes;
    coclass.ReleaseTypeAttr(attributes);
    for (UINT i = 0; i < count; ++i) {
        HREFTYPE reference = 0;
        INT flags = 0;
        ComPtr<ITypeInfo> other;
        coclass.GetRefTypeOfImplType(i, &reference);
        coclass.GetImplTypeFlags(i, &flags);
        if (SUCCEEDED(coclass.GetRefTypeInfo(reference, other.Put())))
            text += "\n" + Rows(*other.Get(), flags & IMPLTYPEFLAG_FSOURCE ? "event" : "member");
    }
    return text;
}

} // namespace

std::string MembersText(ITypeLib& library) {
    std::string text = "# Members and events\n\nEvery class that a host can make, with each member "
                       "and event. `./kavidex contract` writes this from\nthe help in the type "
                       "library; numbers by name are in its enumerations.\n";
    std::map<std::string, std::string> classes;
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        TYPEKIND kind{};
        ComPtr<ITypeInfo> info;
        library.GetTypeInfoType(i, &kind);
        if (kind != TKIND_COCLASS || FAILED(library.GetTypeInfo(i, info.Put()))) continue;
        classes[WordsOf(*info.Get(), MEMBERID_NIL).name] = ClassText(*info.Get());
    }
    for (const auto& [name, one] : classes) text += one;
    return text;
}

} // namespace kavidex::tests
