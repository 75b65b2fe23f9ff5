#include "com/class_table.h"

#include <olectl.h>

#include "com/controls/ctlViewerFace.h"
#include "com/controls/ctrlCorrespondenceFace.h"
#include "com/controls/ctrlExtViewerFace.h"
#include "com/controls/ctrlNoteFace.h"
#include "com/controls/ctrlTreeFace.h"
#include "com/data/faces.h"
#include "com/model/faces.h"
#include "kavidex_idl.h"

namespace kavidex::com {

namespace {

constexpr DWORD control = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                          OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST;

const ClassRow table[] = {
    // name, description, class, interface, events, misc status, factory
    {L"ctrlCorrespondence", L"Kavidex binder control", &CLSID_ctrlCorrespondence,
     &DIID__ctrlCorrespondence, &DIID__ctrlCorrespondenceEvents, control, &MakeCtrlCorrespondence},
    {L"ctrlTree", L"Kavidex folder tree control", &CLSID_ctrlTree, &DIID__ctrlTree,
     &DIID__ctrlTreeEvents, control, &MakeCtrlTree},
    {L"ctlViewer", L"Kavidex document viewer", &CLSID_ctlViewer, &DIID__ctlViewer,
     &DIID__ctlViewerEvents, control, &MakeCtlViewer},
    {L"ctrlNote", L"Kavidex note control", &CLSID_ctrlNote, &DIID__ctrlNote, &DIID__ctrlNoteEvents,
     control, &MakeCtrlNote},
    {L"ctrlExtViewer", L"Kavidex external viewer", &CLSID_ctrlExtViewer, &DIID__ctrlExtViewer,
     &DIID__ctrlExtViewerEvents, control, &MakeCtrlExtViewer},
    {L"EmbeddedDatabase", L"Kavidex embedded database", &CLSID_EmbeddedDatabase,
     &DIID__EmbeddedDatabase, nullptr, 0, &NewEmbeddedDatabase},
    {L"clsTable", L"Kavidex table", &CLSID_clsTable, &DIID__clsTable, nullptr, 0, &NewTable},
    {L"clsSettings", L"Kavidex settings", &CLSID_clsSettings, &DIID__clsSettings, nullptr, 0,
     &NewSettings},
    {L"clsTree", L"Kavidex folder tree", &CLSID_clsTree, &DIID__clsTree, nullptr, 0,
     &NewModelObject<model::clsTree>},
    {L"clsItem", L"Kavidex tree item", &CLSID_clsItem, &DIID__clsItem, nullptr, 0,
     &NewModelObject<model::clsItem>},
    {L"clsItemCol", L"Kavidex collection of tree items", &CLSID_clsItemCol, &DIID__clsItemCol,
     nullptr, 0, &NewModelObject<model::clsItemCol>},
    {L"clsDocument", L"Kavidex document", &CLSID_clsDocument, &DIID__clsDocument, nullptr, 0,
     &NewModelObject<model::clsDocument>},
    {L"clsDossier", L"Kavidex dossier", &CLSID_clsDossier, &DIID__clsDossier, nullptr, 0,
     &NewModelObject<model::clsDossier>},
    {L"clsDossierDbRelations", L"Kavidex dossier relations", &CLSID_clsDossierDbRelations,
     &DIID__clsDossierDbRelations, nullptr, 0, &NewModelObject<model::clsDossierDbRelations>},
    {L"clsUserAuth", L"Kavidex user rights", &CLSID_clsUserAuth, &DIID__clsUserAuth, nullptr, 0,
     &NewModelObject<model::clsUserAuth>},
    {L"clsCheckListType", L"Kavidex checklist type", &CLSID_clsCheckListType,
     &DIID__clsCheckListType, nullptr, 0, &NewModelObject<model::clsCheckListType>},
    {L"clsField", L"Kavidex checklist field", &CLSID_clsField, &DIID__clsField, nullptr, 0,
     &NewModelObject<model::clsField>},
};

} // namespace

std::span<const ClassRow> ClassTable() { return table; }

const ClassRow* FindClass(REFCLSID clsid) {
    for (const ClassRow& row : table)
        if (*row.clsid == clsid) return &row;
    return nullptr;
}

} // namespace kavidex::com
