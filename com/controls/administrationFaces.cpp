// The controls of an administrator as hosts see them: one interface, one face, a class each.
#include "com/controls/adminFaces.h"
#include "controls/admin/ctlChecklistEditor.h"
#include "controls/admin/ctlDefaultFolders.h"
#include "controls/admin/ctlPost.h"
#include "controls/admin/ctlRights.h"
#include "controls/forms/win32/ControlPane.h"
#include "controls/viewer/win32/MakeViewerWindow.h"
#include "kavidex_idl.h"

namespace kavidex::com {

namespace {

constexpr EventRow events[] = {{L"EvChanged", 1}, {L"EvSaved", 2}};

template <class L>
class AdminFace final : public FormControlFace<L> {
public:
    explicit AdminFace(const CLSID& clsid) : FormControlFace<L>(*FindClass(clsid)) {
        if constexpr (requires { this->Logic().Viewer(); })
            this->Logic().Form()["panViewer"].SetPane(
                std::make_unique<controls::forms::win32::ControlPane>(
                    controls::win32::MakeViewerWindow(this->Logic().Viewer(),
                                                      platform::TheWorkstation())));
        this->On(this->Logic().EvChanged, [this] { this->Raise(EventId(events, L"EvChanged")); });
        this->On(this->Logic().EvSaved, [this] { this->Raise(EventId(events, L"EvSaved")); });
    }

    const Table& Members() const override {
        using Self = AdminFace;
        using Logic = controls::AdminControl;
        using Row = Rows<Self>;
        static constexpr Member members[] = {
            KAVIDEX_GETLET(Enabled, DISPID_ENABLED),
            Row::template Method<&Logic::Refresh>(L"Refresh", DISPID_REFRESH),
            KAVIDEX_GETLET(Language, 1),
            KAVIDEX_GETSET(Translate, 2),
            KAVIDEX_GETSET(UserAuth, 3),
            Row::template Get<&Logic::DbConnection>(L"DbConnection", 4),
            Row::template PutRef<&Logic::SetDbConnection>(L"DbConnection", 4),
            KAVIDEX_GETLET(DossierType, 5),
            Row::template Get<&Logic::IsChanged>(L"IsChanged", 6),
            Row::template Method<&Logic::Save>(L"Save", 7),
            Row::template Method<&Logic::Undo>(L"Undo", 8),
        };
        static constexpr Table table{"Kavidex.Administration", &DIID__ctlAdministration, members};
        return table;
    }

private:
    ~AdminFace() override = default;
};

} // namespace

std::span<const EventRow> AdministrationEventTable() { return events; }

ComPtr<IDispatch> MakeCtlRights() { return Make<AdminFace<controls::ctlRights>>(CLSID_ctlRights); }
ComPtr<IDispatch> MakeCtlDefaultFolders() {
    return Make<AdminFace<controls::ctlDefaultFolders>>(CLSID_ctlDefaultFolders);
}
ComPtr<IDispatch> MakeCtlChecklistEditor() {
    return Make<AdminFace<controls::ctlChecklistEditor>>(CLSID_ctlChecklistEditor);
}

ComPtr<IDispatch> MakeCtlPost() { return Make<AdminFace<controls::ctlPost>>(CLSID_ctlPost); }

} // namespace kavidex::com
