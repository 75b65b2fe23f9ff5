// A counted reference to a COM object: the one place where AddRef and Release are written.
#pragma once

#include <cstddef>
#include <utility>

#include <unknwn.h>

namespace kavidex::platform::win32 {

template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {} // NOLINT: null is a pointer of every kind
    explicit ComPtr(Interface* object) : lclObject(object) {
        if (lclObject) lclObject->AddRef();
    }
    ComPtr(const ComPtr& other) : ComPtr(other.lclObject) {}
    ComPtr(ComPtr&& other) noexcept : lclObject(std::exchange(other.lclObject, nullptr)) {}
    ~ComPtr() { Reset(); }
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(lclObject, other.lclObject);
        return *this;
    }

    // Takes over a reference that the caller owns already.
    static ComPtr Attach(Interface* object) {
        ComPtr result;
        result.lclObject = object;
        return result;
    }
    // Gives the reference away; the receiver releases it.
    [[nodiscard]] Interface* Detach() noexcept { return std::exchange(lclObject, nullptr); }
    void Reset() noexcept {
        if (Interface* old = std::exchange(lclObject, nullptr)) old->Release();
    }

    Interface* Get() const noexcept { return lclObject; }
    Interface* operator->() const noexcept { return lclObject; }
    Interface& operator*() const noexcept { return *lclObject; }
    explicit operator bool() const noexcept { return lclObject != nullptr; }

    // For out parameters: releases what is held first.
    Interface** Put() noexcept {
        Reset();
        return &lclObject;
    }

    // Null when the object has no such interface.
    template <class Other>
    ComPtr<Other> Query(REFIID iid = __uuidof(Other)) const {
        ComPtr<Other> result;
        if (lclObject) lclObject->QueryInterface(iid, reinterpret_cast<void**>(result.Put()));
        return result;
    }

    friend bool operator==(const ComPtr& a, const ComPtr& b) { return a.lclObject == b.lclObject; }

private:
    Interface* lclObject = nullptr;
};

// Two references name one object when their IUnknown is the same.
template <class A, class B>
bool SameObject(A* a, B* b) {
    if (!a || !b) return !a && !b;
    return ComPtr<A>(a).template Query<IUnknown>() == ComPtr<B>(b).template Query<IUnknown>();
}

} // namespace kavidex::platform::win32
