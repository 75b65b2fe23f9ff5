#include "com/controls/ctrlCorrespondenceFace.h"

#include "com/control/Metrics.h"
#include "com/model/faces.h"
#include "controls/binder/win32/MakeBinderWindow.h"
#include "controls/intake/win32/WordGenerator.h"
#include "data/schema/AccessRepair.h"
#include "data/win32/LateAdoFactory.h"
#include "kavidex_idl.h"
#include "mail/win32/MakeMailRoads.h"
#include "mail/win32/OutlookSource.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using Self = ctrlCorrespondenceFace;
using Logic = controls::ctrlCorrespondence;
using Row = Rows<Self>;
using Text = std::optional<std::string>;
using Number = std::optional<std::int32_t>;
using Flag = std::optional<bool>;

constexpr Member members[] = {
    KAVIDEX_GETSET(Translate, 1),
    KAVIDEX_GETLET(Language, 2),
    KAVIDEX_GETLET(ShowDescriptionsInToolTip, 3),
    KAVIDEX_GETSET(UserAuth, 4),
    KAVIDEX_GETLET(BackColor, DISPID_BACKCOLOR),
    KAVIDEX_GETLET(ForeColor, DISPID_FORECOLOR),
    KAVIDEX_GETLET(Enabled, DISPID_ENABLED),
    KAVIDEX_GETSET(Font, DISPID_FONT),
    KAVIDEX_GETLET(BackStyle, DISPID_BACKSTYLE),
    KAVIDEX_GETLET(BorderStyle, DISPID_BORDERSTYLE),
    Row::Method<&Logic::Refresh>(L"Refresh", DISPID_REFRESH),
    KAVIDEX_GETLET(OLEDropMode, 5),
    Row::Method<&Logic::OLEDrag>(L"OLEDrag", 6),
    KAVIDEX_GETLET(ColWidth, 7),
    Row::Method<&Logic::CloseObject>(L"CloseObject", 8),
    Row::Method<[](Logic& binder, Variant data, Text description, Number id, Flag scanned,
                   Flag toTop) {
        const auto names = TextsOf(data);
        if (!names) return binder.NoFilesGiven();
        return binder.AddFiles(*names, description.value_or(""), id.value_or(0),
                               scanned.value_or(false), toTop.value_or(false));
    }>(L"AddFiles", 9, L"data,IntoDescription,IntoId,prmScannedDoc,prmAddToTop"),
    KAVIDEX_GETLET(IniFile, 10),
    KAVIDEX_GETLET(NameForInsert, 11),
    KAVIDEX_GETLET(TypeForInsert, 12),
    KAVIDEX_GETLET(DossierType, 13),
    KAVIDEX_GETLET(Id, 14),
    Row::Method<[](Logic& binder, std::string description, Text tabs) {
        return binder.CreateNew(description, tabs.value_or(""));
    }>(L"CreateNew", 15, L"prmDescription,prmListOfDefaultTabs"),
    Row::Method<[](Logic& binder, std::int32_t id, std::string type,
                   std::shared_ptr<model::clsItemCol> children, std::int32_t itemId,
                   std::string description, std::optional<Short> into) {
        return binder.AddItem(id, type, children, itemId, description,
                              into.value_or(Short{}).value);
    }>(L"AddItem", 16, L"prmId,prmItemType,prmChildCollection,prmItemId,prmDescription,prmInto"),
    Row::Method<&Logic::ExistItem>(L"ExistItem", 17, L"ItemId"),
    Row::Method<[](Logic& binder, std::string key, Text description, Text tabs, Text oldKey,
                   Text queue) {
        return binder.OpenOrCreate(key, description.value_or(""), tabs.value_or(""),
                                   oldKey.value_or(""), queue.value_or(""));
    }>(L"OpenOrCreate", 18,
       L"prmExternalId,prmDescription,prmListOfDefaultTabs,prmOldExternalId,"
       L"prmExIdForBacklogAndQueue"),
    KAVIDEX_GETLET(ExternalId, 19),
    KAVIDEX_GETLET(InitString, 20),
    KAVIDEX_GETLET(Description, 21),
    Row::Get<&Logic::DbConnection>(L"DbConnection", 22),
    Row::PutRef<&Logic::SetDbConnection>(L"DbConnection", 22),
    KAVIDEX_GETLET(DbProvider, 23),
    KAVIDEX_GETLET(DbPassWord, 24),
    KAVIDEX_GETLET(DbUserId, 25),
    KAVIDEX_GETLET(DbPath, 26),
    Row::Method<&Logic::DbOpenConnection>(L"DbOpenConnection", 27),
    KAVIDEX_GETLET(ShowParentsOnly, 28),
    KAVIDEX_GETLET(ShowTreeOnly, 29),
    KAVIDEX_GETLET(ShowExternalViewer, 30),
    KAVIDEX_GETLET(AllowSettings, 31),
    KAVIDEX_GETLET(ShowAddButton, 32),
    KAVIDEX_GETLET(ValueFile, 33),
    KAVIDEX_GETLET(AlternateScanSetting, 34),
    KAVIDEX_GETLET(ShowCheckList, 35),
    KAVIDEX_GETLET(DossierStatus, 36),
    KAVIDEX_GETLET(SelectItems, 37),
    Row::Method<[](Logic& binder, Flag merge, Flag descriptionPage) {
        return CollectionOf(
            binder.ExportSelectedFiles(merge.value_or(false), descriptionPage.value_or(false)));
    }>(L"ExportSelectedFiles", 38, L"Merge,AddDescriptionPage"),
    Row::Get<&Logic::ContainsDocuments>(L"ContainsDocuments", 39, L"prmType"),
    Row::Method<&Logic::ExportFiles>(L"ExportFiles", 40, L"prmDirectory"),
    Row::Put<&Logic::SetCheckDocumentQueueId>(L"CheckDocumentQueueId", 41),
    Row::Method<&Logic::fncCheckDocumentQueue>(L"fncCheckDocumentQueue", 42, L"prmExternalId"),
    KAVIDEX_GETLET(EmailAddress, 43),
};

constexpr EventRow events[] = {
    {L"Click", DISPID_CLICK},
    {L"DblClick", DISPID_DBLCLICK},
    {L"KeyDown", DISPID_KEYDOWN},
    {L"KeyPress", DISPID_KEYPRESS},
    {L"KeyUp", DISPID_KEYUP},
    {L"MouseDown", DISPID_MOUSEDOWN},
    {L"MouseMove", DISPID_MOUSEMOVE},
    {L"MouseUp", DISPID_MOUSEUP},
    {L"OLEStartDrag", 1},
    {L"OLESetData", 2},
    {L"OLEGiveFeedback", 3},
    {L"OLEDragOver", 4},
    {L"OLEDragDrop", 5},
    {L"OLECompleteDrag", 6},
    {L"ItemSelected", 7}, // for hosts that bind to it; never raised
    {L"EvItemSelected", 8},
    {L"ItemDropped", 9},
    {L"EvCompleteDrag", 10},
    {L"EvChecklistChanged", 11},
    {L"EvItemCreated", 12},
    {L"EvItemDelete", 13},
    {L"EvOpenDossier", 14},
};

consteval DISPID Ev(std::wstring_view name) { return EventId(events, name); }

// The mouse during a drag, as drag events tell it: buttons, keys, and the place in the control in
// twips.
struct DragMouse {
    std::int16_t button = 0, shift = 0;
    float x = 0, y = 0;

    explicit DragMouse(HWND window) {
        const auto down = [](int key) { return GetKeyState(key) < 0; };
        button = static_cast<std::int16_t>(down(VK_LBUTTON) | down(VK_RBUTTON) << 1 |
                                           down(VK_MBUTTON) << 2);
        shift =
            static_cast<std::int16_t>(down(VK_SHIFT) | down(VK_CONTROL) << 1 | down(VK_MENU) << 2);
        POINT place{};
        GetCursorPos(&place);
        if (window) ScreenToClient(window, &place);
        const SIZEL extent = ToHimetric({place.x, place.y});
        x = static_cast<float>(MulDiv(extent.cx, 1440, 2540));
        y = static_cast<float>(MulDiv(extent.cy, 1440, 2540));
    }
};

} // namespace

std::span<const EventRow> BinderEventTable() { return events; }

ctrlCorrespondenceFace::ctrlCorrespondenceFace()
    : ControlFace(*FindClass(CLSID_ctrlCorrespondence), platform::TheWorkstation(),
                  std::make_shared<data::win32::LateAdoFactory>(), data::MakeAccessRepair(),
                  controls::IntakeComponents{
                      mail::win32::MakeMailSource(), controls::win32::MakeLetterGenerator,
                      std::make_shared<mail::MailRoads>(
                          mail::win32::MakeMailRoads(platform::TheWorkstation()))}) {
    Logic().SetDesigning([this] { return Core().AmbientFlag(DISPID_AMBIENT_USERMODE) == false; });
    RaiseDragEvents();
    RaiseEvents();
}

const Table& ctrlCorrespondenceFace::Members() const {
    static constexpr Table table{"Kavidex.ctrlCorrespondence", &DIID__ctrlCorrespondence, members};
    return table;
}

std::unique_ptr<controls::win32::ControlWindow> ctrlCorrespondenceFace::MakeWindow() {
    return controls::win32::MakeBinderWindow(
        Logic(), platform::TheWorkstation(),
        {[this] { return Variant(Translate()); }, [this] { return Variant(UserAuth()); }});
}

void ctrlCorrespondenceFace::RaiseDragEvents() {
    auto& binder = Logic();
    On(binder.OLEStartDrag, [this](const controls::DropData& data, std::int32_t& effects) {
        Raise(Ev(L"OLEStartDrag"), DropContents(data), &effects);
    });
    On(binder.OLESetData, [this](const controls::DropData& data, std::int16_t& format) {
        Raise(Ev(L"OLESetData"), DropContents(data), &format);
    });
    On(binder.OLEGiveFeedback, [this](std::int32_t& effect, bool& defaultCursors) {
        VARIANT_BOOL flag = defaultCursors ? VARIANT_TRUE : VARIANT_FALSE;
        Raise(Ev(L"OLEGiveFeedback"), &effect, Flagged{&flag});
        defaultCursors = flag != VARIANT_FALSE;
    });
    On(binder.OLEDragOver,
       [this](const controls::DropData& data, std::int32_t& effect, controls::DragState state) {
           const DragMouse mouse(Core().Handle());
           Raise(Ev(L"OLEDragOver"), DropContents(data), &effect, mouse.button, mouse.shift,
                 mouse.x, mouse.y, static_cast<std::int16_t>(state));
       });
    On(binder.OLEDragDrop, [this](const controls::DropData& data, std::int32_t& effect) {
        const DragMouse mouse(Core().Handle());
        Raise(Ev(L"OLEDragDrop"), DropContents(data), &effect, mouse.button, mouse.shift, mouse.x,
              mouse.y);
    });
    On(binder.OLECompleteDrag,
       [this](std::int32_t& effect) { Raise(Ev(L"OLECompleteDrag"), &effect); });
}

void ctrlCorrespondenceFace::RaiseEvents() {
    using controls::TreeItemInfo;
    auto& binder = Logic();
    On(binder.EvItemSelected, [this](const TreeItemInfo& item) {
        Raise(Ev(L"EvItemSelected"), item.description, item.type, item.id, item.nodeFullPath,
              item.itemId);
    });
    On(binder.EvItemCreated, [this](const TreeItemInfo& item) {
        Raise(Ev(L"EvItemCreated"), item.itemId, item.description, item.type, item.id,
              item.nodeFullPath);
    });
    On(binder.EvItemDelete, [this](const TreeItemInfo& item) {
        Raise(Ev(L"EvItemDelete"), item.itemId, item.description, item.type, item.id);
    });
    On(binder.EvOpenDossier, [this](const std::string& key, const std::string& type) {
        Raise(Ev(L"EvOpenDossier"), key, type);
    });
    On(binder.ItemDropped, [this] { Raise(Ev(L"ItemDropped")); });
    On(binder.EvCompleteDrag, [this] { Raise(Ev(L"EvCompleteDrag")); });
    On(binder.EvChecklistChanged, [this] { Raise(Ev(L"EvChecklistChanged")); });
}

ComPtr<IDispatch> MakeCtrlCorrespondence() { return Make<ctrlCorrespondenceFace>(); }

} // namespace kavidex::com
