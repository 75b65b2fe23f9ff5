#include "com/controls/ctrlExtViewerFace.h"

#include "com/controls/ExportedPages.h"
#include "com/model/faces.h"
#include "controls/viewer/win32/ExternalWindowWin32.h"
#include "controls/viewer/win32/PlaceholderWindow.h"
#include "kavidex_idl.h"
#include "model/clsItem.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using Self = ctrlExtViewerFace;
using Logic = controls::ctrlExtViewer;
using Row = Rows<Self>;

constexpr Member members[] = {
    KAVIDEX_GETLET(Id, 1),
    KAVIDEX_GETLET(AllowMultipleDocScroll, 2),
    KAVIDEX_GETSET(Translate, 3),
    KAVIDEX_GETSET(UserAuth, 4),
    Row::Get<&Logic::DbConnection>(L"DbConnection", 5),
    Row::PutRef<&Logic::SetDbConnection>(L"DbConnection", 5),
    Row::Method<&Logic::ShowItem>(L"ShowItem", 6, L"Item"),
    Row::Method<&Logic::ShowItemFromId>(L"ShowItemFromId", 7, L"Id"),
    Row::Method<&Logic::SetFocus>(L"SetFocus", 8),
    Row::Method<&Logic::Show>(L"Show", 9),
    Row::Method<&Logic::DeleteSelectedThumbs>(L"DeleteSelectedThumbs", 10),
    Row::Method<&Logic::CloseForm>(L"CloseForm", 11),
};

constexpr EventRow events[] = {
    {L"EvOpenDossier", 1},         {L"ExternalViewerOpened", 2},      {L"EvExportPages", 3},
    {L"EvNextDocumentRequest", 4}, {L"EvPreviousDocumentRequest", 5}, {L"EvUnload", 6},
};

consteval DISPID Ev(std::wstring_view name) { return EventId(events, name); }

} // namespace

std::span<const EventRow> ExtViewerEventTable() { return events; }

ctrlExtViewerFace::ctrlExtViewerFace()
    : ControlFace(*FindClass(CLSID_ctrlExtViewer), platform::TheWorkstation()) {
    Logic().SetWindowMaker(controls::win32::ExternalWindows(platform::TheWorkstation()));
    RaiseEvents();
}

const Table& ctrlExtViewerFace::Members() const {
    static constexpr Table table{"Kavidex.ctrlExtViewer", &DIID__ctrlExtViewer, members};
    return table;
}

// On the host's own form it is but a mark: its window stands elsewhere.
std::unique_ptr<controls::win32::ControlWindow> ctrlExtViewerFace::MakeWindow() {
    return std::make_unique<controls::win32::PlaceholderWindow>(L"ctrlExtViewer",
                                                                platform::TheWorkstation());
}

void ctrlExtViewerFace::RaiseEvents() {
    auto& viewer = Logic();
    On(viewer.EvOpenDossier, [this](const std::string& key, const std::string& type) {
        Raise(Ev(L"EvOpenDossier"), key, type);
    });
    On(viewer.ExternalViewerOpened, [this] { Raise(Ev(L"ExternalViewerOpened")); });
    On(viewer.EvExportPages,
       [this](const std::string& file, const std::vector<std::int32_t>& pages, bool& done) {
           RaiseExport(file, pages, done, [this](auto&&... arguments) {
               Raise(Ev(L"EvExportPages"), std::forward<decltype(arguments)>(arguments)...);
           });
       });
    On(viewer.EvNextDocumentRequest, [this] { Raise(Ev(L"EvNextDocumentRequest")); });
    On(viewer.EvPreviousDocumentRequest, [this] { Raise(Ev(L"EvPreviousDocumentRequest")); });
    On(viewer.EvUnload, [this] { Raise(Ev(L"EvUnload")); });
}

ComPtr<IDispatch> MakeCtrlExtViewer() { return Make<ctrlExtViewerFace>(); }

} // namespace kavidex::com
