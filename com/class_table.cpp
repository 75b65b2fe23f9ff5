#include "com/class_table.h"

#include <olectl.h>

#include "com/controls/ctrlCorrespondenceFace.h"
#include "com/controls/ctrlTreeFace.h"
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
};

} // namespace

std::span<const ClassRow> ClassTable() {
    return table;
}

const ClassRow* FindClass(REFCLSID clsid) {
    for (const ClassRow& row : table)
        if (*row.clsid == clsid) return &row;
    return nullptr;
}

} // namespace kavidex::com
