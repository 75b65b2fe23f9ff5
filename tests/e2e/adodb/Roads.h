// The ways on which a connection can reach the ADO engine, each over the embedded engine's objects.
#pragma once

#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>

#include <string>

#include "com/adodb/CommandObject.h"
#include "com/adodb/ConnectionFace.h"
#include "com/adodb/ConnectionObject.h"
#include "com/adodb/RecordsetObject.h"
#include "com/dispatch/LiveObjects.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/win32/LateAdoConnection.h"
#include "platform/win32/Late.h"

namespace kavidex::tests {

using com::ComPtr;
using platform::win32::Late;
using platform::win32::Variant;

// A connection as a host's own library has it: it makes no commands and recordsets itself.
class Stranger : public com::adodb::ConnectionObject {
public:
    using ConnectionObject::ConnectionObject;
    const com::Table& Members() const override {
        static const com::Table without = [this] {
            com::Table table = ConnectionObject::Members();
            table.members = table.members.first(table.members.size() - 2);
            return table;
        }();
        return without;
    }
};

// Makes objects of one of our classes under a class id that is another library's, in this process.
template <class Object>
class ClassUnder : public IClassFactory {
public:
    explicit ClassUnder(const wchar_t* progId) {
        CLSID clsid;
        if (SUCCEEDED(CLSIDFromProgID(progId, &clsid)))
            CoRegisterClassObject(clsid, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                  &lclCookie);
    }
    virtual ~ClassUnder() { CoRevokeClassObject(lclCookie); }
    bool Registered() const { return lclCookie != 0; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; } // lives as long as the test
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
        return com::Make<Object>()->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    DWORD lclCookie = 0;
};

enum class Road { OwnObjects, AdoClasses, ExecuteOnly };

inline std::string RoadName(const testing::TestParamInfo<Road>& info) {
    constexpr const char* names[] = {"OwnObjects", "AdoClasses", "ExecuteOnly"};
    return names[static_cast<int>(info.param)];
}

// One embedded database in memory, reached directly (`engine`) and by name (`late`). Afterwards no
// object is left.
class ObjectTest : public testing::Test {
protected:
    void SetUp() override {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        engine = data::EmbeddedDatabase::CreateInMemory();
        engine->Execute(
            "create table tblThing (Id COUNTER CONSTRAINT IdThing PRIMARY KEY, "
            "Name TEXT(50), Amount LONG, Price DOUBLE, Done BIT, Made DATETIME, Words MEMO)");
    }
    void TearDown() override {
        engine.reset();
        EXPECT_EQ(com::LiveObjects(), 0);
        CoUninitialize();
    }

    void Fill(int rows) {
        engine->BeginTrans();
        for (int i = 1; i <= rows; ++i)
            engine->Execute("insert into tblThing (Name, Amount, Price) values ('name " +
                            std::to_string(i) + "', " + std::to_string(i * 10) + ", " +
                            std::to_string(i) + ".5)");
        engine->CommitTrans();
    }

    data::ConnectionPtr engine;
};

} // namespace kavidex::tests
