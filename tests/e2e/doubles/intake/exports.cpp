// A library for the tests alone: the scanning control and the letter generator under the
// identifiers of the real ones, as long as it is registered.
#include "tests/e2e/doubles/Factories.h"
#include "tests/e2e/doubles/StandIns.h"
#include "tests/e2e/doubles/intake/LetterGenerator.h"
#include "tests/e2e/doubles/intake/ScanControl.h"

using namespace kavidex;

namespace {

constexpr CLSID letterClass = {
    0xc307d478, 0x6baa, 0x479a, {0x9b, 0xc1, 0x40, 0x91, 0x23, 0x7c, 0x68, 0x8d}};

template <class Object>
IClassFactory* Factory() {
    static tests::FactoryOf<Object> factory;
    return &factory;
}

constexpr tests::StandIn all[] = {
    {L"Tessaro.ctrlScan", L"{70604CFB-7E37-4C0B-8FBA-5A3C9C6C143A}", &tests::scanClass,
     &Factory<tests::ScanControlDouble>},
    {L"LumaformWordGen.clsWord", L"{C307D478-6BAA-479A-9BC1-4091237C688D}", &letterClass,
     &Factory<tests::LetterGeneratorDouble>},
};

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return tests::FactoryFor(all, clsid, iid, object);
}
STDAPI DllCanUnloadNow() { return S_FALSE; }
STDAPI DllRegisterServer() { return tests::RegisterAll(all); }
STDAPI DllUnregisterServer() { return tests::UnregisterAll(all); }
