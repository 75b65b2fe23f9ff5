#include "com/controls/ctrlNoteFace.h"

#include "controls/forms/win32/FormWindow.h"
#include "kavidex_idl.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using Self = ctrlNoteFace;
using Logic = controls::ctrlNote;
using Row = Rows<Self>;

constexpr Member members[] = {
    KAVIDEX_GETLET(Enabled, DISPID_ENABLED),
    KAVIDEX_GETLET(Key, 1),
    KAVIDEX_GETLET(Heading, 2),
    KAVIDEX_GETLET(Memo, 3),
    KAVIDEX_GETLET(Text, 4),
    KAVIDEX_GETLET(ReadOnly, 5),
    KAVIDEX_GETSET(Translate, 6),
    Row::Method<&Logic::fncCreateNew>(L"fncCreateNew", 7, L"Path"),
    Row::Method<&Logic::fncLoadMemo>(L"fncLoadMemo", 8, L"Path"),
    Row::Method<&Logic::fncSaveMemo>(L"fncSaveMemo", 9, L"Ask"),
};

constexpr EventRow events[] = {{L"EvMemoChanged", 1}};

} // namespace

std::span<const EventRow> NoteEventTable() { return events; }

ctrlNoteFace::ctrlNoteFace() : ControlFace(*FindClass(CLSID_ctrlNote), platform::TheWorkstation()) {
    On(Logic().EvMemoChanged, [this] { Raise(EventId(events, L"EvMemoChanged")); });
}

const Table& ctrlNoteFace::Members() const {
    static constexpr Table table{"Kavidex.ctrlNote", &DIID__ctrlNote, members};
    return table;
}

std::unique_ptr<controls::win32::ControlWindow> ctrlNoteFace::MakeWindow() {
    return std::make_unique<controls::forms::win32::FormWindow>(Logic().Form(),
                                                                platform::TheWorkstation());
}

ComPtr<IDispatch> MakeCtrlNote() { return Make<ctrlNoteFace>(); }

} // namespace kavidex::com
