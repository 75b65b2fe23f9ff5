// What a type library tells, walked through.
#pragma once

#include <oaidl.h>

#include <string>
#include <vector>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Variant.h"

namespace kavidex::tests {

// A name and its help.
struct Words {
    std::string name, help;
};
inline Words WordsOf(ITypeInfo& info, MEMBERID member = MEMBERID_NIL) {
    platform::win32::Bstr name, help;
    info.GetDocumentation(member, name.Put(), help.Put(), nullptr, nullptr);
    return {name.Get() ? platform::win32::FromWide(name.Get()) : "?",
            help.Get() ? platform::win32::FromWide(help.Get()) : ""};
}

// The names of its parameters, as far as they have one.
inline std::vector<std::string> ParametersOf(ITypeInfo& info, const FUNCDESC& function) {
    std::vector<BSTR> raw(static_cast<std::size_t>(function.cParams) + 1, nullptr);
    std::vector<std::string> names;
    UINT known = 0;
    info.GetNames(function.memid, raw.data(), static_cast<UINT>(raw.size()), &known);
    for (UINT n = 1; n < known; ++n) names.push_back(platform::win32::FromWide(raw[n]));
    for (UINT n = 0; n < known; ++n) SysFreeString(raw[n]);
    return names;
}

// work(const TYPEATTR&)
template <class Work>
void WithAttributes(ITypeInfo& info, Work work) {
    TYPEATTR* attributes = nullptr;
    if (FAILED(info.GetTypeAttr(&attributes))) return;
    work(*attributes);
    info.ReleaseTypeAttr(attributes);
}

// work(const FUNCDESC&) for each member that is not IDispatch's own
template <class Work>
void ForEachMember(ITypeInfo& info, Work work) {
    WithAttributes(info, [&](const TYPEATTR& attributes) {
        for (UINT i = 0; i < attributes.cFuncs; ++i) {
            FUNCDESC* function = nullptr;
            if (FAILED(info.GetFuncDesc(i, &function))) continue;
            if (function->memid < 0x60000000) work(*function);
            info.ReleaseFuncDesc(function);
        }
    });
}

// work(ITypeInfo&, const TYPEATTR&)
template <class Work>
void ForEachType(ITypeLib& library, Work work) {
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        platform::win32::ComPtr<ITypeInfo> info;
        if (FAILED(library.GetTypeInfo(i, info.Put()))) continue;
        WithAttributes(*info.Get(),
                       [&](const TYPEATTR& attributes) { work(*info.Get(), attributes); });
    }
}

// work(ITypeInfo&, is a source of events) for each interface of a class
template <class Work>
void ForEachInterface(ITypeInfo& coclass, Work work) {
    WithAttributes(coclass, [&](const TYPEATTR& attributes) {
        for (UINT i = 0; i < attributes.cImplTypes; ++i) {
            HREFTYPE reference = 0;
            INT flags = 0;
            platform::win32::ComPtr<ITypeInfo> other;
            coclass.GetRefTypeOfImplType(i, &reference);
            coclass.GetImplTypeFlags(i, &flags);
            if (SUCCEEDED(coclass.GetRefTypeInfo(reference, other.Put())))
                work(*other.Get(), (flags & IMPLTYPEFLAG_FSOURCE) != 0);
        }
    });
}

} // namespace kavidex::tests
