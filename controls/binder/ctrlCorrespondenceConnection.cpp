// The connection that a host hands over, or has the control open.
#include "controls/binder/ctrlCorrespondence.h"
#include "controls/checklist/ctlChecklist.h"
#include "controls/common/OwnTranslator.h"
#include "controls/tree/ctrlTree.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "data/AdoFactory.h"
#include "data/ConnectionAssignment.h"
#include "data/ConnectionOpener.h"
#include "data/schema/AccessRepair.h"
#include "model/clsUserAuth.h"
#include "platform/Error.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

namespace {

class NoAdo : public data::AdoFactory {
public:
    std::shared_ptr<data::AdoConnection> Create() override {
        throw platform::Error(platform::errors::notFound, "There is no ADO on this machine",
                              "Kavidex");
    }
};

class NoRepair : public data::AccessRepair {
public:
    void Configure(std::string_view, std::string_view) override {
        throw platform::Error(platform::errors::notFound,
                              "There is no ODBC installer on this machine");
    }
};

} // namespace

const data::ConnectionPtr& ctrlCorrespondence::DbConnection() const {
    return lclAssignment->DbConnection();
}

void ctrlCorrespondence::SetDbConnection(const data::ConnectionPtr& connection) {
    const auto before = DbConnection();
    // What the control opened itself is the host's once the host hands it over.
    if (before && connection && before->SameAs(*connection)) lclState.DbOpened = false;
    const bool owned = lclState.DbOpened;
    if (!lclAssignment->SetDbConnection(connection)) return;
    lclState.DbOpened = false;
    if (owned && before && before->IsOpen()) before->Close();
}

void ctrlCorrespondence::ConnectionHandedOver(const data::ConnectionPtr& connection) {
    if (!connection) ShowTree(0, lclTurn);
    if (lclOwnTranslator) lclOwnTranslator->SetDbConnection(connection);
    lclTree->SetDbConnection(connection);
    lclViewer->SetDbConnection(connection);
    lclExtViewer->SetDbConnection(connection);
    lclChecklist->SetDbConnection(connection);
    if (lclUserAuth && !lclUserAuth->DbConnection()) lclUserAuth->SetDbConnection(connection);
    ToolbarChanged();
}

void ctrlCorrespondence::SetDbProvider(const std::string& provider) {
    lclState.DbProvider = provider;
    PropertyChanged.Raise("DbProvider");
    OpenWhereTold();
}

void ctrlCorrespondence::SetDbPath(const std::string& path) {
    lclState.DbPath = path;
    PropertyChanged.Raise("DbPath");
    OpenWhereTold();
}

void ctrlCorrespondence::OpenWhereTold() {
    if (lclState.DbProvider.empty() || lclState.DbPath.empty()) return;
    if (!lclDesigning || !lclDesigning()) DbOpenConnection();
}

std::int32_t ctrlCorrespondence::DbOpenConnection() {
    NoAdo noAdo;
    NoRepair noRepair;
    data::ConnectionOpener opener(lclWorkstation, lclAdo ? *lclAdo : noAdo,
                                  lclRepair ? *lclRepair : noRepair, TranslationBy(lclTranslator));
    bool opened = false;
    data::ConnectionPtr made;
    const auto result = opener.DbOpenConnection(lclState.DbProvider, lclState.DbPath, opened,
                                                [&](const data::ConnectionPtr& connection) {
                                                    made = connection;
                                                    SetDbConnection(connection);
                                                });
    // A second connection to the database in use is not taken: nobody else would close it.
    if (made && made == DbConnection())
        lclState.DbOpened = opened;
    else if (made && made->IsOpen())
        made->Close();
    return result;
}

} // namespace kavidex::controls
