#include "controls/viewer/win32/PartWindows.h"

#include "controls/forms/win32/FormLook.h"
#include "controls/forms/win32/FormWindow.h"
#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/win32/BrowserWindowWin32.h"
#include "controls/viewer/win32/GridWindow.h"
#include "controls/viewer/win32/ImagePartWindow.h"

namespace kavidex::controls::win32 {

namespace {

using forms::win32::FormWindow;
using platform::Workstation;

std::unique_ptr<ControlWindow> FormOf(forms::Form& form, const Workstation& machine) {
    return std::make_unique<FormWindow>(form, machine);
}

// As high as the form's layout says.
int HeaderHeight(ctlViewer& viewer, int, int dpi) {
    forms::win32::FormLook look;
    look.Build(dpi);
    return look.High(viewer.Views().mail.Header().Table().height);
}

constexpr PartRow table[] = {
    {Part::Image, &MakeImagePart},
    {Part::MailHeader,
     [](ctlViewer& viewer, const Workstation& machine) {
         return FormOf(viewer.Views().mail.Header(), machine);
     },
     HeaderHeight},
    {Part::Text,
     [](ctlViewer& viewer, const Workstation& machine) {
         return FormOf(viewer.Views().mail.Text(), machine);
     }},
    {Part::Facts,
     [](ctlViewer& viewer, const Workstation& machine) {
         return FormOf(viewer.Views().facts.Form(), machine);
     }},
    {Part::Elsewhere,
     [](ctlViewer& viewer, const Workstation& machine) {
         return FormOf(viewer.Views().elsewhere.Form(), machine);
     }},
    {Part::Browser,
     [](ctlViewer& viewer, const Workstation& machine) -> std::unique_ptr<ControlWindow> {
         return std::make_unique<BrowserWindowWin32>(viewer.Views().browser, machine);
     },
     nullptr, false},
    {Part::Grid,
     [](ctlViewer& viewer, const Workstation& machine) -> std::unique_ptr<ControlWindow> {
         return std::make_unique<GridWindow>(viewer, machine);
     }},
    {Part::Note,
     [](ctlViewer& viewer, const Workstation& machine) {
         return FormOf(viewer.Views().note.Note().Form(), machine);
     }},
};

} // namespace

std::span<const PartRow> PartTable() { return table; }

} // namespace kavidex::controls::win32
