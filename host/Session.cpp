#include "host/Session.h"

#include "platform/Error.h"
#include "platform/User.h"
#include "platform/Workstation.h"

namespace kavidex::host {

using platform::win32::ArrayOf;
using platform::win32::Late;
using platform::win32::Variant;

namespace {

Late Binder(IDispatch* binder) { return Late(platform::win32::ComPtr<IDispatch>(binder)); }

} // namespace

Session::~Session() {
    try {
        Disconnect();
    } catch (const platform::Error&) { // the database went away before its host
    }
}

void Session::Connect(const std::string& database, const std::string& store) {
    const Late opened(
        Late::Create("Kavidex.EmbeddedDatabase").Call(L"OpenOrCreate", {Variant(database)}));
    Disconnect();
    lclConnection = opened.Object();
    lclDatabase = database;
    Binder(lclBinder).PutRef(L"DbConnection", {Variant(lclConnection)});
    Binder(lclBinder).PutRef(L"UserAuth", {Variant(Rights())});
    lclStore = store;
    if (store.empty()) return;
    const Late settings = Late::Create("Kavidex.clsSettings");
    settings.PutRef(L"DbConnection", {Variant(lclConnection)});
    settings.Call(L"SetSetting", {"Storage", "DocumentPath", Variant(store)});
}

platform::win32::ComPtr<IDispatch> Session::Rights() const {
    const Late rights = Late::Create("Kavidex.clsUserAuth");
    rights.PutRef(L"DbConnection", {Variant(lclConnection)});
    rights.Put(L"UserId", {Variant(platform::TheWorkstation().user.Name())});
    rights.Call(L"LoadRights");
    return rights.Object();
}

void Session::Disconnect() {
    if (!lclConnection) return;
    CloseDossier();
    Binder(lclBinder).PutRef(L"DbConnection", {Variant(static_cast<IDispatch*>(nullptr))});
    const Late closing(std::exchange(lclConnection, nullptr));
    closing.Call(L"Close");
    lclDatabase.clear();
}

int Session::Open(const std::string& key, const std::string& description,
                  const std::string& folders) {
    const int result =
        Binder(lclBinder)
            .Call(L"OpenOrCreate", {Variant(key), Variant(description), Variant(folders), "", ""})
            .ToInt32();
    lclKey = result == 0 ? key : std::string();
    return result;
}

void Session::CloseDossier() {
    if (lclKey.empty()) return;
    lclKey.clear();
    Binder(lclBinder).Call(L"CloseObject");
}

void Session::Speak(int language) { Binder(lclBinder).Put(L"Language", {Variant(language)}); }

int Session::AddFiles(const std::vector<std::string>& files, long folder) {
    std::vector<Variant> names(files.begin(), files.end());
    return Binder(lclBinder)
        .Call(L"AddFiles", {ArrayOf(names), "", Variant(folder), false, folder == 0})
        .ToInt32();
}

} // namespace kavidex::host
