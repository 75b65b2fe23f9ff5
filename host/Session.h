// One connection and one dossier, as a host works with them: through automation only.
#pragma once

#include <string>
#include <vector>

#include "platform/win32/Late.h"

namespace kavidex::host {

class Session {
public:
    // `binder` is the control that shows the dossier.
    explicit Session(IDispatch* binder) : lclBinder(binder) {}
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Opens or makes the database, hands it to the control and keeps the document folder in its
    // settings; an empty store leaves the setting as it is. Throws platform::Error.
    void Connect(const std::string& database, const std::string& store);
    void Disconnect();

    // OpenOrCreate's number: 0 or the negative number of the step that failed.
    int Open(const std::string& key, const std::string& description, const std::string& folders);
    void CloseDossier();
    // AddFiles' number, into the folder with this id, or at the top with 0.
    void Speak(int language);
    int AddFiles(const std::vector<std::string>& files, long folder);

    const std::string& Database() const { return lclDatabase; }
    const std::string& Store() const { return lclStore; }
    const platform::win32::ComPtr<IDispatch>& Connection() const { return lclConnection; }
    const std::string& Key() const { return lclKey; }
    // Of whoever is logged on to Windows, as they are kept now.
    platform::win32::ComPtr<IDispatch> Rights() const;

private:
    IDispatch* lclBinder;
    platform::win32::ComPtr<IDispatch> lclConnection;
    std::string lclDatabase, lclStore, lclKey;
};

} // namespace kavidex::host
