// What happens when a binder control gets its connection: hand-over to the children, database
// check, template path, schema upgrade. The control owns one and forwards its DbConnection to it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "data/Connection.h"
#include "data/Texts.h"
#include "data/clsSettings.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data {

// Called in this order while a connection is assigned; each may be empty.
struct ConnectionListeners {
    // The connection in use gives way to another database or to none; it is still the current one.
    std::function<void()> leaving{};
    std::function<void()> changed; // property "DbConnection" changed
    // To the folder tree and the checklist; before the schema is checked. Null on release.
    std::function<void(const ConnectionPtr&)> handOver;
    // After check, template path and upgrade; not called for a null connection.
    std::function<void(const ConnectionPtr&)> ready;
};

class ConnectionAssignment {
public:
    ConnectionAssignment(const platform::Workstation& workstation, ConnectionListeners listeners,
                         Translation translation = {});

    const ConnectionPtr& DbConnection() const { return lclConnection; }
    // False, and nothing done, when both are null or both are open on the same DefaultDatabase of
    // one server.
    // Where that is empty, only the same object is the same.
    bool SetDbConnection(const ConnectionPtr& connection);
    // Where the database was when it was assigned (address.h).
    const std::string& Address() const { return lclAddress; }
    // Whether its owner has opened the connection on another database since it was assigned:
    // nothing of the dossier may be written there.
    bool IsElsewhere() const;
    // Without a word to anybody, for the end of the control.
    void Release();

    // Null until the first connection came.
    clsSettings* Settings() { return lclSettings.get(); }
    const std::string& TemplatePath() const { return lclTemplatePath; }
    void SetTemplatePath(std::string_view path) { lclTemplatePath = path; }
    // Reads the setting "Template"/"Path" again; where it cannot be read, the path stays.
    void ReadTemplatePath();

private:
    bool IsCurrent(const ConnectionPtr& connection) const;
    void CheckDatabase();
    void CheckLetters();

    const platform::Workstation& lclWorkstation;
    ConnectionListeners lclListeners;
    Translation lclTranslation;
    ConnectionPtr lclConnection;
    bool lclLive = false;    // it was open when it was assigned
    std::string lclDatabase; // and on this database
    std::string lclAddress;
    std::unique_ptr<clsSettings> lclSettings;
    std::string lclTemplatePath;
};

} // namespace kavidex::data
