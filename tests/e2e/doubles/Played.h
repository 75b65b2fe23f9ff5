// An automation object made of functions by name: what a component that is called late-bound
// answers, in a test.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "com/dispatch/Automation.h"
#include "platform/Error.h"
#include "platform/win32/Variant.h"

namespace kavidex::tests {

using platform::win32::Variant;
using Arguments = std::vector<Variant>; // in the order of the call; of a property the new value
using Answer = std::function<Variant(const Arguments&)>;

// A method, or a property in both directions.
struct PlayedMember {
    const wchar_t* name;
    Answer answer;
    PlayedMember(const wchar_t* called, Answer acts) : name(called), answer(std::move(acts)) {}
    PlayedMember(const wchar_t* called, Variant always)
        : name(called), answer([always](const Arguments&) { return always; }) {}
};

class Played : public com::Automation {
public:
    explicit Played(std::vector<PlayedMember> members) : lclMembers(std::move(members)) {}
    const com::Table& Members() const override {
        static constexpr com::Table none{"Played", &IID_IDispatch, {}};
        return none;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* id) override {
        for (*id = 0; *id < static_cast<DISPID>(lclMembers.size()); ++*id)
            if (_wcsicmp(names[0], At(*id).name) == 0) return S_OK;
        *id = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* given,
                                     VARIANT* result, EXCEPINFO* error, UINT*) override {
        try {
            Arguments arguments;
            for (UINT i = given->cArgs; i-- > 0;) arguments.emplace_back(given->rgvarg[i]);
            Variant answer = At(id).answer(arguments);
            if (result) *result = answer.Detach();
            return S_OK;
        } catch (const platform::Error& failure) {
            if (!error) return failure.Number();
            *error = {};
            error->scode = failure.Number();
            error->bstrDescription = platform::win32::NewBstr(failure.what());
            return DISP_E_EXCEPTION;
        }
    }

private:
    const PlayedMember& At(DISPID id) const { return lclMembers.at(static_cast<std::size_t>(id)); }
    std::vector<PlayedMember> lclMembers;
};

inline com::ComPtr<IDispatch> Play(std::vector<PlayedMember> members) {
    return com::Make<Played>(std::move(members));
}
inline Variant Nothing() { return Variant(static_cast<IDispatch*>(nullptr)); }

} // namespace kavidex::tests
