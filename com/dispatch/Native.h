// The way from one of our own COM objects back to the C++ object behind it. Objects of other
// libraries, a second copy of this one among them, and proxies from other apartments do not have
// this interface: they are called late-bound.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <cstdint>
#include <memory>
#include <typeinfo>

namespace kavidex::com {

// An interface id that only this module knows, in this process: two copies of the library, perhaps
// of two versions, share no C++ objects and no exceptions.
inline IID ModuleIid(unsigned char number) {
    static const char here = 0;
    const auto place = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&here));
    return {static_cast<DWORD>(place),
            static_cast<WORD>(place >> 32),
            0x4c51,
            {0x9a, 0x2e, 0x71, 0x5d, 0x3f, 0x88, 0x10, number}};
}

inline const IID iidNative = ModuleIid(0x6b);

struct INative : public IUnknown {
    // The object as `wanted`, or null when it is something else.
    virtual void STDMETHODCALLTYPE NativeObject(const std::type_info& wanted,
                                                std::shared_ptr<void>& object) = 0;
};

// Null when `object` is null or not one of ours of that type.
template <class T>
std::shared_ptr<T> NativeOf(IUnknown* object) {
    void* found = nullptr;
    if (!object || FAILED(object->QueryInterface(iidNative, &found))) return nullptr;
    auto* native = static_cast<INative*>(found);
    std::shared_ptr<void> inner;
    native->NativeObject(typeid(T), inner);
    native->Release();
    return std::static_pointer_cast<T>(inner);
}

} // namespace kavidex::com
