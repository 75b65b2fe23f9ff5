#include "com/dispatch/Resolve.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

#include "platform/win32/Late.h"

namespace kavidex::com {

namespace {

constexpr WORD puts = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

const Member* Find(const Table& table, DISPID id, WORD kinds) {
    const auto row =
        std::find_if(table.members.begin(), table.members.end(), [&](const Member& member) {
            return member.id == id && (member.kind & kinds);
        });
    return row == table.members.end() ? nullptr : &*row;
}

// A property may be stored by either kind of put: late-bound callers cannot know which one it has.
const Member* FindPut(const Table& table, DISPID id, WORD flags) {
    const Member* exact = Find(table, id, flags & puts);
    return exact ? exact : Find(table, id, puts);
}

bool IsMissing(const VARIANT& value) {
    return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

// The arguments in the order of the parameters; the value of a put comes last.
struct Ordered {
    std::vector<VARIANT*> positional;
    std::vector<std::pair<DISPID, VARIANT*>> named;
    VARIANT* value = nullptr;
};

Ordered Order(const DISPPARAMS& parameters) {
    Ordered result;
    for (UINT i = 0; i < parameters.cNamedArgs; ++i) {
        VARIANT* argument = &parameters.rgvarg[i];
        if (parameters.rgdispidNamedArgs[i] == DISPID_PROPERTYPUT)
            result.value = argument;
        else
            result.named.emplace_back(parameters.rgdispidNamedArgs[i], argument);
    }
    for (UINT i = parameters.cArgs; i-- > parameters.cNamedArgs;) {
        VARIANT* argument = &parameters.rgvarg[i];
        result.positional.push_back(IsMissing(*argument) ? nullptr : argument);
    }
    return result;
}

std::vector<VARIANT*> Arguments(const Member& member, const Ordered& given, std::size_t count) {
    std::vector<VARIANT*> list(member.types.size(), nullptr);
    std::copy_n(given.positional.begin(), count, list.begin());
    for (const auto& [place, argument] : given.named) {
        if (place < 0 || static_cast<std::size_t>(place) >= list.size())
            throw Refusal{DISP_E_PARAMNOTFOUND};
        list[static_cast<std::size_t>(place)] = IsMissing(*argument) ? nullptr : argument;
    }
    return list;
}

// The rest of a call goes to the default member of the object that a property gave.
Variant Forward(const Variant& object, const Ordered& given, std::size_t used, WORD flags) {
    if (!object.IsObject() || !object.Get().pdispVal) throw Refusal{DISP_E_BADPARAMCOUNT};
    std::vector<Variant> arguments;
    for (auto i = used; i < given.positional.size(); ++i)
        arguments.push_back(given.positional[i] ? Variant(*given.positional[i])
                                                : Variant::Missing());
    if (given.value) arguments.emplace_back(*given.value);
    return platform::win32::Late(object).Invoke(DISPID_VALUE, flags, arguments,
                                                L"the default member");
}

Variant Get(Automation& self, const Member& member, const Ordered& given, WORD flags) {
    const std::size_t takes = std::min(member.types.size(), given.positional.size());
    Variant result = member.invoke(self, Arguments(member, given, takes));
    if (takes == given.positional.size() && !given.value) return result;
    return Forward(result, given, takes, flags);
}

} // namespace

Variant Resolve(Automation& self, DISPID id, WORD flags, const DISPPARAMS& parameters) {
    const Table& table = self.Members();
    const Ordered given = Order(parameters);
    if (flags & puts) {
        const Member* put = FindPut(table, id, flags);
        // Without an index to spare for it, a put of a deeper object is the getter's affair.
        if (put && given.value && given.positional.size() < put->types.size()) {
            auto list = Arguments(*put, given, given.positional.size());
            list.back() = given.value;
            return put->invoke(self, list);
        }
        const Member* getter = Find(table, id, DISPATCH_PROPERTYGET);
        if (!getter || given.positional.empty()) throw Refusal{DISP_E_MEMBERNOTFOUND};
        return Get(self, *getter, given, flags);
    }
    if (const Member* method = Find(table, id, flags & DISPATCH_METHOD)) {
        if (given.positional.size() > method->types.size()) throw Refusal{DISP_E_BADPARAMCOUNT};
        return method->invoke(self, Arguments(*method, given, given.positional.size()));
    }
    // Scripts call a property with arguments as if it were a method.
    const Member* getter = Find(table, id, DISPATCH_PROPERTYGET);
    if (!getter) throw Refusal{DISP_E_MEMBERNOTFOUND};
    return Get(self, *getter, given, DISPATCH_METHOD | DISPATCH_PROPERTYGET);
}

DISPID IdOfMember(const Table& table, const wchar_t* name) {
    for (const Member& member : table.members)
        if (_wcsicmp(member.name, name) == 0) return member.id;
    return DISPID_UNKNOWN;
}

DISPID IdOfParameter(const Table& table, DISPID id, const wchar_t* name) {
    for (const Member& member : table.members) {
        if (member.id != id) continue;
        std::wstring_view names = member.parameters;
        const std::size_t length = std::wcslen(name);
        for (DISPID place = 0; !names.empty(); ++place) {
            const std::wstring_view one = names.substr(0, names.find(L','));
            if (one.size() == length && _wcsnicmp(one.data(), name, length) == 0) return place;
            names.remove_prefix(std::min(names.size(), one.size() + 1));
        }
    }
    return DISPID_UNKNOWN;
}

} // namespace kavidex::com
