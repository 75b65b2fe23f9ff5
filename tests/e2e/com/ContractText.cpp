#include "ContractText.h"

#include <map>
#include <vector>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Variant.h"

namespace kavidex::tests {

namespace {

using platform::win32::Bstr;
using platform::win32::ComPtr;
using platform::win32::FromWide;
using platform::win32::Variant;

constexpr MEMBERID ownOfDispatch = 0x60000000; // and above: IDispatch's own members

std::string NameOf(ITypeInfo& info, MEMBERID member = MEMBERID_NIL) {
    Bstr name;
    info.GetDocumentation(member, name.Put(), nullptr, nullptr, nullptr);
    return name.Get() ? FromWide(name.Get()) : std::string("?");
}

std::string TypeName(ITypeInfo& info, const TYPEDESC& type) {
    static const std::map<VARTYPE, const char*> names{
        {VT_I2, "short"},          {VT_I4, "long"},         {VT_INT, "int"},
        {VT_R4, "float"},          {VT_R8, "double"},       {VT_BSTR, "BSTR"},
        {VT_BOOL, "Boolean"},      {VT_VARIANT, "VARIANT"}, {VT_DISPATCH, "IDispatch*"},
        {VT_UNKNOWN, "IUnknown*"}, {VT_VOID, "void"},       {VT_HRESULT, "HRESULT"}};
    if (type.vt == VT_PTR) return TypeName(info, *type.lptdesc) + "*";
    if (type.vt == VT_USERDEFINED) {
        ComPtr<ITypeInfo> other;
        info.GetRefTypeInfo(type.hreftype, other.Put());
        return other ? NameOf(*other.Get()) : "?";
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
    std::vector<BSTR> names(static_cast<std::size_t>(function.cParams) + 1, nullptr);
    UINT known = 0;
    info.GetNames(function.memid, names.data(), static_cast<UINT>(names.size()), &known);
    std::string text;
    for (SHORT p = 0; p < function.cParams; ++p) {
        const ELEMDESC& parameter = function.lprgelemdescParam[p];
        const auto flags = parameter.paramdesc.wParamFlags;
        const auto place = static_cast<std::size_t>(p) + 1;
        text += p > 0 ? ", " : "";
        if (flags & PARAMFLAG_FOPT) text += "optional ";
        if (flags & PARAMFLAG_FOUT) text += flags & PARAMFLAG_FIN ? "in out " : "out ";
        text += TypeName(info, parameter.tdesc);
        if (place < known) text += " " + FromWide(names[place]);
        text += DefaultOf(parameter);
    }
    for (UINT n = 0; n < known; ++n) SysFreeString(names[n]);
    return text;
}

std::string MemberLine(ITypeInfo& info, const FUNCDESC& function) {
    static const std::map<INVOKEKIND, const char*> kinds{{INVOKE_FUNC, "method"},
                                                         {INVOKE_PROPERTYGET, "get"},
                                                         {INVOKE_PROPERTYPUT, "let"},
                                                         {INVOKE_PROPERTYPUTREF, "set"}};
    std::string line = "    " + std::to_string(function.memid) + " " + kinds.at(function.invkind) +
                       " " + NameOf(info, function.memid) + "(" + Parameters(info, function) + ")";
    const auto result = TypeName(info, function.elemdescFunc.tdesc);
    return result == "void" ? line : line + " -> " + result;
}

std::string Members(ITypeInfo& info, const TYPEATTR& attributes) {
    std::multimap<std::pair<MEMBERID, int>, std::string> lines;
    for (UINT i = 0; i < attributes.cFuncs; ++i) {
        FUNCDESC* function = nullptr;
        if (FAILED(info.GetFuncDesc(i, &function))) continue;
        if (function->memid < ownOfDispatch)
            lines.emplace(std::pair(function->memid, static_cast<int>(function->invkind)),
                          MemberLine(info, *function));
        info.ReleaseFuncDesc(function);
    }
    std::string text;
    for (const auto& [key, line] : lines) text += line + "\n";
    for (UINT i = 0; i < attributes.cVars; ++i) {
        VARDESC* constant = nullptr;
        if (FAILED(info.GetVarDesc(i, &constant))) continue;
        text += "    " + NameOf(info, constant->memid) + " = " +
                std::to_string(Variant(*constant->lpvarValue).ToInt32()) + "\n";
        info.ReleaseVarDesc(constant);
    }
    return text;
}

std::string Interfaces(ITypeInfo& info, const TYPEATTR& attributes) {
    std::string text;
    for (UINT i = 0; i < attributes.cImplTypes; ++i) {
        HREFTYPE reference = 0;
        INT flags = 0;
        ComPtr<ITypeInfo> other;
        info.GetRefTypeOfImplType(i, &reference);
        info.GetImplTypeFlags(i, &flags);
        info.GetRefTypeInfo(reference, other.Put());
        text += "    " + std::string(flags & IMPLTYPEFLAG_FSOURCE ? "source " : "default ") +
                (other ? NameOf(*other.Get()) : "?") + "\n";
    }
    return text;
}

} // namespace

std::string ContractText(ITypeLib& library) {
    static const std::map<TYPEKIND, const char*> kinds{
        {TKIND_DISPATCH, "dispinterface"}, {TKIND_COCLASS, "coclass"}, {TKIND_ENUM, "enum"}};
    std::map<std::string, std::string> types;
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        if (FAILED(library.GetTypeInfo(i, info.Put())) || FAILED(info->GetTypeAttr(&attributes)))
            continue;
        const auto kind = kinds.find(attributes->typekind);
        wchar_t guid[40];
        StringFromGUID2(attributes->guid, guid, 40);
        const auto name = NameOf(*info.Get());
        const std::string head = kind == kinds.end() ? "type" : kind->second;
        types[name] = head + " " + name + " " + FromWide(guid) + "\n" +
                      (attributes->typekind == TKIND_COCLASS ? Interfaces(*info.Get(), *attributes)
                                                             : Members(*info.Get(), *attributes));
        info->ReleaseTypeAttr(attributes);
    }
    std::string text;
    for (const auto& [name, lines] : types) text += (text.empty() ? "" : "\n") + lines;
    return text;
}

} // namespace kavidex::tests
