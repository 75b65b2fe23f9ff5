#include "com/controls/ctlViewerFace.h"

#include "com/controls/ExportedPages.h"
#include "com/model/faces.h"
#include "controls/viewer/win32/MakeViewerWindow.h"
#include "kavidex_idl.h"
#include "model/clsItem.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using Self = ctlViewerFace;
using Logic = controls::ctlViewer;
using Row = Rows<Self>;

constexpr Member members[] = {
    KAVIDEX_GETLET(BackColor, DISPID_BACKCOLOR),
    KAVIDEX_GETLET(ForeColor, DISPID_FORECOLOR),
    KAVIDEX_GETLET(Enabled, DISPID_ENABLED),
    KAVIDEX_GETSET(Font, DISPID_FONT),
    KAVIDEX_GETLET(BackStyle, DISPID_BACKSTYLE),
    KAVIDEX_GETLET(BorderStyle, DISPID_BORDERSTYLE),
    KAVIDEX_GETLET(DragPossible, 1),
    KAVIDEX_GETSET(Translate, 2),
    Row::Get<&Logic::DbConnection>(L"DbConnection", 3),
    Row::PutRef<&Logic::SetDbConnection>(L"DbConnection", 3),
    Row::Get<&Logic::ThumbsExported>(L"ThumbsExported", 4),
    Row::Get<&Logic::ThumbsShown>(L"ThumbsShown", 5),
    KAVIDEX_GETSET(UserAuth, 6),
    KAVIDEX_GETLET(AllowMultipleDocScroll, 7),
    KAVIDEX_GETLET(ExternalMove, 8),
    KAVIDEX_GETLET(AnnotationsPopupShown, 9),
    KAVIDEX_GETLET(LastFit, 10),
    Row::Get<&Logic::Description>(L"Description", 11),
    Row::Method<&Logic::ShowItem>(L"ShowItem", 12, L"Item"),
    Row::Method<&Logic::ShowList>(L"ShowList", 13, L"Folder"),
    Row::Method<&Logic::Refresh>(L"Refresh", DISPID_REFRESH),
    Row::Method<&Logic::SetNextPage>(L"SetNextPage", 14),
    Row::Method<&Logic::SetPreviousPage>(L"SetPreviousPage", 15),
    Row::Method<&Logic::SaveImage>(L"SaveImage", 16),
    Row::Method<&Logic::CloseImage>(L"CloseImage", 17),
    Row::Method<&Logic::DeleteSelectedThumbs>(L"DeleteSelectedThumbs", 18),
};

constexpr EventRow events[] = {
    {L"PreviousDocumentRequest", 1}, {L"NextDocumentRequest", 2}, {L"ExportPages", 3},
    {L"ExternalViewerOpened", 4},    {L"EvOpenDossier", 5},       {L"EvMoveUp", 6},
    {L"EvImageSelected", 7},         {L"EvDocumentChosen", 8},
};

consteval DISPID Ev(std::wstring_view name) { return EventId(events, name); }

} // namespace

std::span<const EventRow> ViewerEventTable() { return events; }

ctlViewerFace::ctlViewerFace()
    : ControlFace(*FindClass(CLSID_ctlViewer), platform::TheWorkstation()) {
    RaiseEvents();
}

const Table& ctlViewerFace::Members() const {
    static constexpr Table table{"Kavidex.ctlViewer", &DIID__ctlViewer, members};
    return table;
}

std::unique_ptr<controls::win32::ControlWindow> ctlViewerFace::MakeWindow() {
    return controls::win32::MakeViewerWindow(Logic(), platform::TheWorkstation());
}

void ctlViewerFace::RaiseEvents() {
    auto& viewer = Logic();
    On(viewer.PreviousDocumentRequest, [this] { Raise(Ev(L"PreviousDocumentRequest")); });
    On(viewer.NextDocumentRequest, [this] { Raise(Ev(L"NextDocumentRequest")); });
    On(viewer.ExportPages,
       [this](const std::string& file, const std::vector<std::int32_t>& pages, bool& done) {
           RaiseExport(file, pages, done, [this](auto&&... arguments) {
               Raise(Ev(L"ExportPages"), std::forward<decltype(arguments)>(arguments)...);
           });
       });
    On(viewer.ExternalViewerOpened, [this] { Raise(Ev(L"ExternalViewerOpened")); });
    On(viewer.EvOpenDossier, [this](const std::string& key, const std::string& type) {
        Raise(Ev(L"EvOpenDossier"), key, type);
    });
    On(viewer.EvMoveUp, [this] { Raise(Ev(L"EvMoveUp")); });
    On(viewer.EvImageSelected, [this](std::int32_t page) { Raise(Ev(L"EvImageSelected"), page); });
    On(viewer.DocumentChosen, [this](std::int32_t id) { Raise(Ev(L"EvDocumentChosen"), id); });
}

ComPtr<IDispatch> MakeCtlViewer() { return Make<ctlViewerFace>(); }

} // namespace kavidex::com
