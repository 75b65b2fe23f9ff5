#include "controls/viewer/external/ElsewhereView.h"

#include "controls/viewer/FrameTexts.h"
#include "platform/General.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Kind;
namespace anchor = forms::anchor;

constexpr FieldRow fields[] = {
    {"lblNotice", Kind::Label, {8, 8, 204, 27}, "", anchor::wide},
    {"chkCloseViewerAfterSelect",
     Kind::Check,
     {8, 40, 204, 10},
     "Venster sluiten na selectie",
     anchor::wide},
    {"chkCloseAll", Kind::Check, {8, 56, 204, 10}, "Alle vensters sluiten", anchor::wide},
};
constexpr forms::Layout layout = {"frmShowExternal", "", 220, 74, true, fields};

struct Option {
    std::string_view box, key;
};
constexpr Option options[] = {{"chkCloseViewerAfterSelect", "CloseViewerAfterSelect"},
                              {"chkCloseAll", "CloseAll"}};
constexpr std::string_view section = "ViewerSettings";

} // namespace

ElsewhereView::ElsewhereView(ViewerFrame& frame)
    : lclFrame(frame), lclForm(layout, frame.Machine()) {
    for (const auto& option : options)
        lclForm.On(option.box, forms::What::Changed, [this, option](forms::FieldEvent& event) {
            platform::SaveRegFlag(lclFrame.Machine(), section, option.key, event.field.Checked());
        });
    lclForm.mayCancel = [] { return false; };
}

void ElsewhereView::Show(std::string_view notice) {
    lclNotice = notice;
    for (const auto& option : options)
        lclForm[option.box].SetChecked(
            platform::GetRegFlag(lclFrame.Machine(), section, option.key));
    SurroundingsChanged();
}

void ElsewhereView::SurroundingsChanged() {
    lclForm.SetTranslate(std::make_shared<FrameTexts>(lclFrame));
    lclForm["lblNotice"].SetText(lclFrame.Text(lclNotice));
}

} // namespace kavidex::controls
