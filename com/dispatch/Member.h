// One row a member: its name, id and kind, and a function whose types say how to convert. A table
// is
//
//     using Row = Rows<clsTreeFace>;
//     constexpr Member members[] = {
//         Row::Get<&model::clsTree::TreeId>(L"TreeId", 1),
//         Row::Put<&model::clsTree::SetTreeId>(L"TreeId", 1),
//         Row::Method<[](model::clsTree& tree, std::string name, std::optional<int> place) {...}>(
//             L"Add", 2, L"name,place"),
//     };
//
// A function is a member of the face or of the object that the face's Logic() gives, or a
// captureless lambda or free function whose first parameter is one of the two. Parameters are the
// types that have a Convert, std::optional of those (left out by the caller: nullopt), and ByRef of
// those, optional or not.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "com/dispatch/Convert.h"
#include "platform/Error.h"

namespace kavidex::com {

class Automation;

struct Parameter {
    VARTYPE type;
    bool optional;
};

// The arguments of one call in the order of the parameters, null where the caller left one out.
using ArgumentList = std::span<VARIANT* const>;

struct Member {
    const wchar_t* name;
    DISPID id;
    WORD kind;                 // DISPATCH_METHOD, _PROPERTYGET, _PROPERTYPUT or _PROPERTYPUTREF
    const wchar_t* parameters; // names separated by commas; the value of a put has none
    std::span<const Parameter> types; // the value of a put is the last
    VARTYPE result;                   // VT_VOID for none
    Variant (*invoke)(Automation& self, ArgumentList arguments);
};

namespace binding {

template <class F>
struct Signature;
template <class R, class... A>
struct Signature<R (*)(A...)> {
    using Result = R;
    using All = std::tuple<A...>;
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
    using Result = R;
    using All = std::tuple<C&, A...>;
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) noexcept> : Signature<R (C::*)(A...)> {};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...)> {};

// A lambda's own object is not its first parameter.
template <class L, class = void>
struct Callable : Signature<L> {};
template <class L>
struct Callable<L, std::void_t<decltype(&L::operator())>> {
    template <class S>
    struct Tail;
    template <class Self, class... A>
    struct Tail<std::tuple<Self, A...>> {
        using All = std::tuple<A...>;
    };
    using Whole = Signature<decltype(&L::operator())>;
    using Result = typename Whole::Result;
    using All = typename Tail<typename Whole::All>::All;
};

// One argument during a call.
template <class T>
class Holder {
public:
    explicit Holder(VARIANT* argument) : lclValue(Convert<T>::From(Need(argument))) {}
    T& Value() { return lclValue; }
    void Finish() {}

    static constexpr Parameter description{Convert<T>::type, false};

private:
    static Variant Need(VARIANT* argument) {
        if (!argument) throw Refusal{DISP_E_PARAMNOTOPTIONAL};
        return Variant(*argument);
    }
    T lclValue;
};

template <class T>
class Holder<std::optional<T>> {
public:
    explicit Holder(VARIANT* argument) {
        if (argument) lclValue = Convert<T>::From(Variant(*argument));
    }
    std::optional<T>& Value() { return lclValue; }
    void Finish() {}

    static constexpr Parameter description{Convert<T>::type, true};

private:
    std::optional<T> lclValue;
};

template <>
class Holder<std::string_view> { // a view needs the text behind it for the call's length
public:
    explicit Holder(VARIANT* argument) : lclText(argument) {}
    std::string_view& Value() { return lclView = lclText.Value(); }
    void Finish() {}

    static constexpr Parameter description{VT_BSTR, false};

private:
    Holder<std::string> lclText;
    std::string_view lclView;
};

template <class T>
class Holder<ByRef<T>> {
public:
    explicit Holder(VARIANT* argument) : lclArgument(argument) {
        if (!argument) throw Refusal{DISP_E_PARAMNOTOPTIONAL};
        lclValue.value = Convert<T>::From(Variant(*argument));
    }
    ByRef<T>& Value() { return lclValue; }
    void Finish() { platform::win32::StoreByRef(*lclArgument, Convert<T>::To(lclValue.value)); }

    static constexpr Parameter description{VT_BYREF | VT_VARIANT, false};

private:
    VARIANT* lclArgument;
    ByRef<T> lclValue;
};

// Left out by the caller: a value that nobody looks at.
template <class T>
class Holder<std::optional<ByRef<T>>> {
public:
    explicit Holder(VARIANT* argument) : lclArgument(argument) {
        if (argument) lclValue = ByRef<T>{Convert<T>::From(Variant(*argument))};
    }
    std::optional<ByRef<T>>& Value() { return lclValue; }
    void Finish() {
        if (lclArgument) platform::win32::StoreByRef(*lclArgument, Convert<T>::To(lclValue->value));
    }

    static constexpr Parameter description{VT_BYREF | VT_VARIANT, true};

private:
    VARIANT* lclArgument;
    std::optional<ByRef<T>> lclValue;
};

template <class Wanted, class Face>
Wanted& Target(Face& face) {
    if constexpr (std::is_base_of_v<Wanted, Face>)
        return face;
    else
        return face.Logic();
}

// Converts the i-th argument; a failure of the conversion names its place.
template <class T>
Holder<T> Fetch(ArgumentList arguments, std::size_t place) {
    try {
        return Holder<T>(place < arguments.size() ? arguments[place] : nullptr);
    } catch (const Refusal& refusal) {
        throw Refusal{refusal.result, static_cast<int>(place)};
    } catch (const platform::Error& error) {
        if (HRESULT_FACILITY(error.Number()) != FACILITY_DISPATCH) throw;
        throw Refusal{error.Number(), static_cast<int>(place)};
    }
}

template <class Face, auto function, class All>
struct Call;
template <class Face, auto function, class Self, class... A>
struct Call<Face, function, std::tuple<Self, A...>> {
    static constexpr std::array<Parameter, sizeof...(A)> parameters{
        Holder<std::remove_cvref_t<A>>::description...};
    using Result = typename Callable<std::decay_t<decltype(function)>>::Result;

    static Variant Invoke(Automation& self, ArgumentList arguments) {
        return Run(self, arguments, std::index_sequence_for<A...>{});
    }

    template <std::size_t... place>
    static Variant Run(Automation& self, [[maybe_unused]] ArgumentList arguments,
                       std::index_sequence<place...>) {
        auto& target = Target<std::remove_cvref_t<Self>>(static_cast<Face&>(self));
        [[maybe_unused]] std::tuple<Holder<std::remove_cvref_t<A>>...> held{
            Fetch<std::remove_cvref_t<A>>(arguments, place)...};
        if constexpr (std::is_void_v<Result>) {
            Once(target, std::get<place>(held).Value()...);
            (std::get<place>(held).Finish(), ...);
            return {};
        } else {
            Variant result = Convert<std::remove_cvref_t<Result>>::To(
                Once(target, std::get<place>(held).Value()...));
            (std::get<place>(held).Finish(), ...);
            return result;
        }
    }

    template <class T, class... V>
    static Result Once(T& target, V&... values) {
        if constexpr (std::is_member_function_pointer_v<decltype(function)>)
            return (target.*function)(static_cast<Pass<A>>(values)...);
        else
            return function(target, static_cast<Pass<A>>(values)...);
    }
    // By-value parameters are moved in, references get the held value.
    template <class P>
    using Pass = std::conditional_t<std::is_reference_v<P>, P, std::remove_cv_t<P>&&>;
};

template <class Result>
constexpr VARTYPE ResultType() {
    if constexpr (std::is_void_v<Result>)
        return VT_VOID;
    else
        return Convert<std::remove_cvref_t<Result>>::type;
}

} // namespace binding

template <class Face>
struct Rows {
    template <auto function>
    static constexpr Member Method(const wchar_t* name, DISPID id,
                                   const wchar_t* parameters = L"") {
        return Row<function>(name, id, DISPATCH_METHOD, parameters);
    }
    template <auto function>
    static constexpr Member Get(const wchar_t* name, DISPID id, const wchar_t* parameters = L"") {
        return Row<function>(name, id, DISPATCH_PROPERTYGET, parameters);
    }
    template <auto function>
    static constexpr Member Put(const wchar_t* name, DISPID id, const wchar_t* parameters = L"") {
        return Row<function>(name, id, DISPATCH_PROPERTYPUT, parameters);
    }
    template <auto function>
    static constexpr Member PutRef(const wchar_t* name, DISPID id,
                                   const wchar_t* parameters = L"") {
        return Row<function>(name, id, DISPATCH_PROPERTYPUTREF, parameters);
    }

private:
    template <auto function>
    static constexpr Member Row(const wchar_t* name, DISPID id, WORD kind,
                                const wchar_t* parameters) {
        using Signature = binding::Callable<std::decay_t<decltype(function)>>;
        using Call = binding::Call<Face, function, typename Signature::All>;
        return {name,
                id,
                kind,
                parameters,
                Call::parameters,
                binding::ResultType<typename Signature::Result>(),
                &Call::Invoke};
    }
};

} // namespace kavidex::com
