// Makes the model and the controls send every statement that they have.
#pragma once

#include <memory>
#include <string>

#include "controls/common/OwnTranslator.h"
#include "controls/tree/DefaultTabs.h"
#include "controls/tree/TreeGrid.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/external/ctrlExtViewer.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/modData.h"
#include "data/schema/clsUpdateDb.h"
#include "model/Checklist.h"
#include "model/IntegrityCheck.h"
#include "model/clsCheckListType.h"
#include "model/clsDocument.h"
#include "model/clsDossier.h"
#include "model/clsDossierDbRelations.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/clsUserAuth.h"
#include "model/filing.h"
#include "model/post.h"
#include "model/uniqueNumber.h"
#include "model/userRights.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/On.h"
#include "tests/fakes/RecordingConnection.h"

namespace kavidex::tests {

// As an engine without transactions.
class Stepwise : public RecordingConnection {
public:
    using RecordingConnection::RecordingConnection;
    void BeginTrans() override {
        throw data::Error(data::errors::featureNotAvailable, "no transactions", "Stepwise");
    }
    data::Value Property(std::string_view property) const override {
        if (property == "Transaction DDL") return std::int64_t{0};
        return RecordingConnection::Property(property);
    }
    // The rows behind know no locking reads.
    data::RecordsetPtr Open(const data::Command& command) override {
        if (command.type == data::CommandType::StoredProcedure && command.text == "AddToSettings") {
            statements.push_back(command.text);
            std::string values;
            for (const auto& given : command.parameters)
                values += (values.empty() ? "" : ", ") + data::SqlValue(data::ToText(given.value));
            return inner->Open(
                {"insert into tblSettings (Section, SKey, [Value]) values (" + values + ")"});
        }
        constexpr std::string_view lock = " for update";
        if (!command.text.ends_with(lock)) return RecordingConnection::Open(command);
        statements.push_back(command.text);
        return inner->Open({command.text.substr(0, command.text.size() - lock.size())});
    }
};

class EveryStatement {
public:
    // What a server of that name is sent; an embedded database at the current version keeps the
    // rows, whatever the name says.
    EveryStatement(FakeWorkstation& workstation, const std::string& dbmsName)
        : machine(workstation), kept(data::EmbeddedDatabase::CreateInMemory()),
          connection(std::make_shared<Stepwise>(dbmsName, kept)) {
        On<data::clsUpdateDb>(machine, kept).fncUpdateDb();
        machine.files.CreateDirectories(machine.Path("store"));
        kept->Execute("insert into tblSettings (Section, SKey, [Value]) values ('Storage', "
                      "'DocumentPath', '" +
                      machine.Path("store") + "')");
        kept->Execute("insert into tblDossierTypes (TypeId, DossierType) values (7, 'Zaak')");
        kept->Execute("insert into tblDossierTabs (DossierTypeId, TabDescription) values (7, "
                      "'Post')");
    }

    std::vector<std::string> Run() {
        Trees();
        Documents();
        Dossiers();
        RightsAndChecklists();
        for (int letter = 0; letter < 2; ++letter) model::RaiseUniqueNumber(connection);
        Administration();
        model::CheckIntegrity(machine, connection);
        Controls();
        return connection->statements;
    }

private:
    std::shared_ptr<model::clsTree> Tree(std::int32_t id = 0) {
        auto made = std::make_shared<model::clsTree>(machine);
        made->SetDbConnection(connection);
        made->SetDescription("Dossier");
        if (id != 0) made->SetTreeId(id);
        return made;
    }

    void Trees() {
        const auto made = Tree();
        made->CreateNew();
        made->SetDeleteEnabled(true);
        const auto root = made->Item()->Id();
        const auto post = made->AddChildTab("Post", root), old = made->AddChildTab("Oud", root);
        const auto letter = made->AddChildItem(0, "tif", nullptr, 1, "Brief", post->Id());
        letter->SetDescription("Brief 2");
        made->MoveItem(letter->Id(), old->Id(), post->Id());
        model::clsItemPtr doomed = letter;
        made->DeleteItem(doomed, 0);
        made->RestoreItem(letter->Id());
        tree = Tree(made->TreeId());
        folder = post->Id();
        // A tree that no dossier knows goes with its root.
        kept->Execute("insert into tblTree (TreeId, TopItemId) values (4711, " +
                      std::to_string(old->Id()) + ")");
        Tree(made->TreeId())->Delete();
    }

    void Documents() {
        On<model::clsDocument> made(machine, connection);
        made.SetDescription("Brief");
        made.SetDocType("tif");
        made.SetSendTo("Jan");
        made.SaveNewRow();
        On<model::clsDocument> undone(machine, connection);
        undone.SetDocType("msg");
        undone.SetRecievedFrom("Jan");
        undone.SaveNewRow();
        undone.RemoveNewRow();
        On<model::clsDocument> read(machine, connection);
        read.SetId(made.DocId());
        read.OpenDataSource();
        read.LoadData();
        read.SetSendTo("Piet");
        read.UpdateCurrentRow();
        read.DeleteCurrentRow();

        machine.files.WriteAll(machine.Path("brief.txt"), "inhoud");
        model::FilingRequest request;
        request.source = machine.Path("brief.txt");
        request.folderId = folder;
        model::FileDocument(machine, *tree, request);
        // One that cannot be filed is taken back.
        connection->refuse = [](const std::string& statement) {
            return statement.find("nsert into tblTreeItem ") != std::string::npos;
        };
        model::FileDocument(machine, *tree, request);
        connection->refuse = nullptr;
    }

    void Dossiers() {
        On<model::clsDossierDbRelations> key(machine, connection);
        key.SetDbKey("K1");
        bool anothers = false;
        key.SaveNewKey(anothers);
        key.UpdateCurrentRow();
        key.Rekey("K2");
        On<model::clsDossierDbRelations> gone(machine, connection);
        gone.SetDossierId(4711);
        gone.UpdateCurrentRow();
        On<model::clsDossier> dossier(machine, connection);
        dossier.SetDossierId(key.DossierId());
        dossier.SetDossierType("Zaak");
        dossier.SetTreeId(tree->TreeId());
        dossier.SaveFirstRow();
        dossier.OpenDataSource();
        dossier.LoadData();
        dossier.UpdateCurrentRow();
        model::KeyOfTree(connection, tree->TreeId());
        dossier.DeleteCurrentRow();
        key.OpenDataSource();
        key.LoadData();
        key.DeleteCurrentRow();
    }

    void RightsAndChecklists() {
        On<model::clsUserAuth> rights(machine, connection);
        rights.SetUserId("jan");
        rights.SetRight("Print", "True");
        rights.SaveRights();
        rights.LoadRights();
        rights.RenameUser("jan", "piet");
        rights.SetUserId("piet");
        rights.DeleteRights();
        On<model::clsCheckListType> list(machine, connection);
        list.GetType("A", "B");
        list.CreateField(1, "Paspoort", 1, "Paspoort", "tif");
        list.UpdateCurrentType();
    }

    void Administration() {
        const model::Store store(connection);
        const auto type = model::AddDossierType(machine, store, "Schade", "Schade");
        model::HoldType(store, type);
        model::SaveTabs(machine, store, type, {}, {{0, "Post", "B", 1, true}});
        const auto tabs = model::TabsOfType(store, type);
        auto changed = tabs;
        changed.front().automatic = false;
        model::SaveTabs(machine, store, type, tabs, changed);
        kept->Execute("insert into tblCheckListFields (TabType, IntOrder, FieldDescription, "
                      "NumberToRecieve) values ('Schade^B', 1, 'Brief', 1)");
        const auto open = Tree(tree->TreeId());
        model::Checklist list(machine);
        list.Load(connection, "Schade", open.get());
        model::ChecklistValue said;
        said.present = true;
        list.Say(0, said);
        said.present = false;
        list.Say(0, said);
        model::SaveTabs(machine, store, type, changed,
                        {changed.front(), {0, "Polis", "", 2, true}});
        model::SaveTabs(machine, store, type, model::TabsOfType(store, type), changed);
        model::RemoveDossierType(store, {type, "Schade", {}});
        model::ForgetKeptTabs(machine, store, "Schade", "B");
        model::DossierTypes(machine, connection);

        const auto place = model::MakeUserTree(machine, store, "Gebruikers");
        model::RightsHolder group{-1, 0, true, "Groep", {}}, user{-2, 0, false, "Piet", {}};
        group.id = model::AddHolder(machine, store, place, group);
        user.rights.set(3);
        user.id = model::AddHolder(machine, store, place, user);
        auto renamed = user;
        renamed.name = "Klaas";
        renamed.group = group.id;
        renamed.rights.reset();
        model::MoveRights(machine, store, user.name, renamed.name);
        model::ChangeHolder(machine, store, place, user, renamed);
        model::LoadHolders(machine, store);
        const auto inbox = model::PostFolder(machine, store, place, "Post");
        const auto letter = tree->AddChildItem(0, "tif", nullptr, 1, "Brief", folder);
        const model::NodeId letters[] = {letter->Id()};
        model::GivePost(machine, store, place, folder, letters, renamed, "Lees dit");
        const auto boxes = model::PostBoxes(store, place);
        const auto box = boxes.at(renamed.id).folder;
        model::PostIn(store, box);
        model::TakePostBack(store, box, letters, inbox);
        model::MarkPostOpened(machine, store, folder, letter->Id());
        model::GivePost(machine, store, place, folder, letters, renamed, "");
        model::ReturnPost(machine, store, place, renamed.id, "Post");
        model::AnAdministratorIsLeft(machine, connection);
        model::RemoveRights(machine, store, renamed.name);
        model::RemoveHolder(store, renamed.id);
    }

    void Controls() {
        controls::OwnTranslator translator(machine);
        translator.SetDbConnection(connection);
        translator.Translate("Nieuw");
        controls::DefaultTabs("Dossiertype=Zaak", connection, machine);
        const auto shown = Tree(tree->TreeId());
        const auto listed = shown->GetItem(folder, "");
        controls::ctlViewer viewer(machine);
        viewer.SetDbConnection(connection);
        viewer.ShowList(listed);
        const auto below = listed->ChildCollection()->Items();
        controls::TreeGrid(machine).Show(connection, {below.begin(), below.end()});
        controls::ctrlExtViewer external(machine);
        external.SetDbConnection(connection);
        external.ShowItemFromId(folder);
        for (const auto& document : listed->ChildCollection()->Items()) viewer.ShowItem(document);
    }

    FakeWorkstation& machine;
    data::ConnectionPtr kept;
    std::shared_ptr<RecordingConnection> connection;
    std::shared_ptr<model::clsTree> tree;
    std::int32_t folder = 0;
};

} // namespace kavidex::tests
