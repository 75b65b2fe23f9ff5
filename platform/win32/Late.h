// Automation objects called by the names of their members, as a script calls them. Used for every
// component that is not ours: the database objects of a host, the mail client, the letter
// generator.
#pragma once

#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/win32/ComPtr.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

// A failing call throws platform::Error with the object's own number, text and source. The ids of
// names are looked up once an object.
class Late {
public:
    using Arguments = std::initializer_list<Variant>;

    Late() = default;
    explicit Late(ComPtr<IDispatch> object) : lclObject(std::move(object)) {}
    explicit Late(const Variant& object) : lclObject(object.ToDispatch()) {}

    // A new object of the class, in process or local; throws when it is not registered or fails.
    static Late Create(std::string_view progId);
    // The same, empty when there is no such class.
    static Late TryCreate(std::string_view progId);

    explicit operator bool() const { return static_cast<bool>(lclObject); }
    const ComPtr<IDispatch>& Object() const { return lclObject; }

    // What its type information calls it, as a script's TypeName does; empty without any.
    std::string TypeName() const;
    bool Has(const wchar_t* name) const;
    Variant Get(const wchar_t* name, Arguments arguments = {}) const;
    // Read as a property alone: a script's own object takes the usual asking for a call of a
    // function.
    Variant Property(const wchar_t* name) const;
    Variant Call(const wchar_t* name, Arguments arguments = {}) const;
    // The last argument is the value; those before it are the property's indexes.
    void Put(const wchar_t* name, Arguments arguments) const;
    void PutRef(const wchar_t* name, Arguments arguments) const;
    // A property that is itself an object; throws when it is nothing.
    Late Child(const wchar_t* name, Arguments arguments = {}) const;

    // By id: DISPID_VALUE for the default member.
    Variant Invoke(DISPID id, WORD kind, std::span<const Variant> arguments,
                   const wchar_t* name = L"") const;

private:
    std::optional<DISPID> IdOf(const wchar_t* name) const;
    DISPID NeedId(const wchar_t* name) const;

    ComPtr<IDispatch> lclObject;
    mutable std::vector<std::pair<const wchar_t*, DISPID>> lclIds; // names are literals
};

// What For Each walks, in its order. Throws when the object has no enumerator.
std::vector<Variant> Enumerate(const ComPtr<IDispatch>& collection);

// The system's own words for an HRESULT, without a line end; "0x80004005" when it has none.
std::string HresultText(HRESULT result);
// Throws platform::Error for a failed HRESULT, with the text of the thread's IErrorInfo where the
// callee left one.
void Check(HRESULT result, std::string_view source);

} // namespace kavidex::platform::win32
