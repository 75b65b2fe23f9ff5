// The base of every object that scripts and hosts call: IUnknown, IDispatch over a table of rows,
// error information, and the way back to the C++ object.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <memory>
#include <span>
#include <typeinfo>
#include <utility>

#include "com/dispatch/LiveObjects.h"
#include "com/dispatch/Member.h"
#include "com/dispatch/Native.h"

namespace kavidex::com {

struct Table {
    const char* source; // who an error without a source comes from: "Kavidex.clsTree"
    const IID* iid;     // the dispinterface in the type library
    std::span<const Member> members;
};

class Automation : public IDispatch, public ISupportErrorInfo, public INative {
public:
    Automation() = default;
    Automation(const Automation&) = delete;
    Automation& operator=(const Automation&) = delete;

    virtual const Table& Members() const = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* error,
                                     UINT* wrongArgument) override;

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;

    void STDMETHODCALLTYPE NativeObject(const std::type_info& wanted,
                                        std::shared_ptr<void>& object) override;

protected:
    virtual ~Automation() = default;
    // The last reference is gone.
    virtual void Destroy() { delete this; }

    // Interfaces beyond the base's; no AddRef, null when there is none.
    virtual void* Further(REFIID) { return nullptr; }
    // The C++ object behind the face as `wanted`, or null.
    virtual std::shared_ptr<void> Native(const std::type_info&) { return nullptr; }

private:
    long lclReferences = 1;
    LiveCount lclCount;
};

// A face over one shared C++ object; rows bind to T's members directly.
template <class T>
class Face : public Automation {
public:
    explicit Face(std::shared_ptr<T> logic) : lclLogic(std::move(logic)) {}
    T& Logic() const { return *lclLogic; }
    const std::shared_ptr<T>& Shared() const { return lclLogic; }

protected:
    std::shared_ptr<void> Native(const std::type_info& wanted) override {
        return wanted == typeid(T) ? lclLogic : nullptr;
    }

private:
    std::shared_ptr<T> lclLogic;
};

// A new object with its first reference.
template <class Object, class... Arguments>
ComPtr<IDispatch> Make(Arguments&&... arguments) {
    return ComPtr<IDispatch>::Attach(new Object(std::forward<Arguments>(arguments)...));
}

} // namespace kavidex::com
