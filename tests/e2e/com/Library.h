// Kavidex.ocx as a host has it: loaded beside the test, its classes made through its own exports.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>
#include <ole2.h>

#include <string>

#include "platform/win32/Late.h"

namespace kavidex::tests {

using platform::win32::ComPtr;
using platform::win32::Late;
using platform::win32::Variant;

class Library : public testing::Test {
protected:
    void SetUp() override;
    // Every test gives back all it made: the library could be unloaded.
    void TearDown() override;

    template <class Function>
    Function* Export(const char* name) const {
        return reinterpret_cast<Function*>(
            reinterpret_cast<void*>(GetProcAddress(lclModule, name)));
    }
    ComPtr<IDispatch> Make(REFCLSID clsid) const;
    std::wstring Path() const;

private:
    HMODULE lclModule = nullptr;
};

template <class Interface, class From>
ComPtr<Interface> As(const ComPtr<From>& object, REFIID iid) {
    ComPtr<Interface> result;
    if (object) object->QueryInterface(iid, reinterpret_cast<void**>(result.Put()));
    return result;
}

} // namespace kavidex::tests
