#include "ContractText.h"

#include <map>
#include <vector>

#include "TypeInfos.h"

namespace kavidex::tests {

namespace {

using platform::win32::Variant;

std::string TypeName(ITypeInfo& info, const TYPEDESC& type) {
    static const std::map<VARTYPE, const char*> names{
        {VT_I2, "short"},          {VT_I4, "long"},         {VT_INT, "int"},
        {VT_R4, "float"},          {VT_R8, "double"},       {VT_BSTR, "BSTR"},
        {VT_BOOL, "Boolean"},      {VT_VARIANT, "VARIANT"}, {VT_DISPATCH, "IDispatch*"},
        {VT_UNKNOWN, "IUnknown*"}, {VT_VOID, "void"},       {VT_HRESULT, "HRESULT"}};
    if (type.vt == VT_PTR) return TypeName(info, *type.lptdesc) + "*";
    if (type.vt == VT_USERDEFINED) {
        platform::win32::ComPtr<ITypeInfo> other;
        info.GetRefTypeInfo(type.hreftype, other.Put());
        return other ? WordsOf(*other.Get()).name : "?";
    }
    const auto known = names.find(type.vt);
    return known == names.end() ? "type " + std::to_string(type.vt) : known->second;
}

std::string DefaultOf(const ELEMDESC& parameter) {
    if (!(parameter.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT)) return {};
    const Variant value(parameter.paramdesc.pparamdescex->varDefaultValue);
    return value.IsText() ? " = '" + value.ToText() + "'" : " = " + std::to_string(value.ToInt32());
}

std::string Parameters(ITypeInfo& info, const FUNCDESC& function) {
    const auto names = ParametersOf(info, function);
    std::string text;
    for (SHORT p = 0; p < function.cParams; ++p) {
        const ELEMDESC& parameter = function.lprgelemdescParam[p];
        const auto flags = parameter.paramdesc.wParamFlags;
        const auto place = static_cast<std::size_t>(p);
        text += p > 0 ? ", " : "";
        if (flags & PARAMFLAG_FOPT) text += "optional ";
        if (flags & PARAMFLAG_FOUT) text += flags & PARAMFLAG_FIN ? "in out " : "out ";
        text += TypeName(info, parameter.tdesc);
        if (place < names.size()) text += " " + names[place];
        text += DefaultOf(parameter);
    }
    return text;
}

std::string MemberLine(ITypeInfo& info, const FUNCDESC& function) {
    static const std::map<INVOKEKIND, const char*> kinds{{INVOKE_FUNC, "method"},
                                                         {INVOKE_PROPERTYGET, "get"},
                                                         {INVOKE_PROPERTYPUT, "let"},
                                                         {INVOKE_PROPERTYPUTREF, "set"}};
    std::string line = "    " + std::to_string(function.memid) + " " + kinds.at(function.invkind) +
                       " " + WordsOf(info, function.memid).name + "(" + Parameters(info, function) +
                       ")";
    const auto result = TypeName(info, function.elemdescFunc.tdesc);
    return result == "void" ? line : line + " -> " + result;
}

std::string Members(ITypeInfo& info, const TYPEATTR& attributes) {
    std::multimap<std::pair<MEMBERID, int>, std::string> lines;
    ForEachMember(info, [&](const FUNCDESC& function) {
        lines.emplace(std::pair(function.memid, static_cast<int>(function.invkind)),
                      MemberLine(info, function));
    });
    std::string text;
    for (const auto& [key, line] : lines) text += line + "\n";
    for (UINT i = 0; i < attributes.cVars; ++i) {
        VARDESC* constant = nullptr;
        if (FAILED(info.GetVarDesc(i, &constant))) continue;
        text += "    " + WordsOf(info, constant->memid).name + " = " +
                std::to_string(Variant(*constant->lpvarValue).ToInt32()) + "\n";
        info.ReleaseVarDesc(constant);
    }
    return text;
}

} // namespace

std::string ContractText(ITypeLib& library) {
    static const std::map<TYPEKIND, const char*> kinds{
        {TKIND_DISPATCH, "dispinterface"}, {TKIND_COCLASS, "coclass"}, {TKIND_ENUM, "enum"}};
    std::map<std::string, std::string> types;
    ForEachType(library, [&](ITypeInfo& info, const TYPEATTR& attributes) {
        const auto kind = kinds.find(attributes.typekind);
        wchar_t guid[40];
        StringFromGUID2(attributes.guid, guid, 40);
        const auto name = WordsOf(info).name;
        auto& lines = types[name];
        lines = std::string(kind == kinds.end() ? "type" : kind->second) + " " + name + " " +
                platform::win32::FromWide(guid) + "\n";
        if (attributes.typekind != TKIND_COCLASS) {
            lines += Members(info, attributes);
            return;
        }
        ForEachInterface(info, [&](ITypeInfo& other, bool events) {
            lines += (events ? "    source " : "    default ") + WordsOf(other).name + "\n";
        });
    });
    std::string text;
    for (const auto& [name, lines] : types) text += (text.empty() ? "" : "\n") + lines;
    return text;
}

} // namespace kavidex::tests
