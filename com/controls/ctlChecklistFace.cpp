// ctlChecklist as hosts see it.
#include "com/controls/adminFaces.h"
#include "controls/checklist/ctlChecklist.h"
#include "kavidex_idl.h"

namespace kavidex::com {

namespace {

class ctlChecklistFace final : public FormControlFace<controls::ctlChecklist> {
public:
    ctlChecklistFace();
    const Table& Members() const override;

private:
    ~ctlChecklistFace() override = default;
};

using Self = ctlChecklistFace;
using Logic = controls::ctlChecklist;
using Row = Rows<Self>;

constexpr Member members[] = {
    KAVIDEX_GETLET(Enabled, DISPID_ENABLED),
    Row::Method<&Logic::Refresh>(L"Refresh", DISPID_REFRESH),
    KAVIDEX_GETLET(Language, 1),
    KAVIDEX_GETSET(Translate, 2),
    KAVIDEX_GETSET(UserAuth, 3),
    Row::Get<&Logic::DbConnection>(L"DbConnection", 4),
    Row::PutRef<&Logic::SetDbConnection>(L"DbConnection", 4),
    KAVIDEX_GETLET(CheckListType, 5),
    KAVIDEX_GETLET(DossierStatus, 6),
    KAVIDEX_GETLET(TreeId, 7),
    KAVIDEX_GETLET(FolderId, 8),
    Row::Get<&Logic::Missing>(L"Missing", 9),
};

constexpr EventRow events[] = {{L"EvChecklistChanged", 1}, {L"EvFolderChosen", 2}};

ctlChecklistFace::ctlChecklistFace() : FormControlFace(*FindClass(CLSID_ctlChecklist)) {
    On(Logic().EvChecklistChanged, [this] { Raise(EventId(events, L"EvChecklistChanged")); });
    On(Logic().FolderChosen,
       [this](std::int32_t id) { Raise(EventId(events, L"EvFolderChosen"), id); });
}

const Table& ctlChecklistFace::Members() const {
    static constexpr Table table{"Kavidex.ctlChecklist", &DIID__ctlChecklist, members};
    return table;
}

} // namespace

std::span<const EventRow> ChecklistEventTable() { return events; }

ComPtr<IDispatch> MakeCtlChecklist() { return Make<ctlChecklistFace>(); }

} // namespace kavidex::com
