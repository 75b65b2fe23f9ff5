// A library for the tests alone: the mail program of MailProgram.h under "outlook.Application", as
// long as it is registered.
#include "tests/e2e/doubles/Factories.h"
#include "tests/e2e/doubles/MailProgram.h"
#include "tests/e2e/doubles/StandIns.h"

using namespace kavidex;

namespace {

constexpr CLSID mailClass = {
    0xf81b00fe, 0xeee4, 0x4755, {0x8f, 0xec, 0xe3, 0x2a, 0x47, 0x9c, 0x0f, 0xc9}};

IClassFactory* MailFactory() {
    static tests::FactoryOf<tests::OutlookDouble> factory;
    return &factory;
}

constexpr tests::StandIn all[] = {
    {L"outlook.Application", L"{F81B00FE-EEE4-4755-8FEC-E32A479C0FC9}", &mailClass, &MailFactory}};

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return tests::FactoryFor(all, clsid, iid, object);
}
STDAPI DllCanUnloadNow() { return S_FALSE; }
STDAPI DllRegisterServer() { return tests::RegisterAll(all); }
STDAPI DllUnregisterServer() { return tests::UnregisterAll(all); }
