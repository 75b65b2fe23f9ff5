// What is done with pages: turning, deleting, moving, exporting; and their marks.
#include <algorithm>
#include <ctime>
#include <numeric>
#include <set>
#include <utility>

#include "controls/common/CopyOut.h"
#include "controls/forms/Form.h"
#include "controls/viewer/pages/ImageView.h"
#include "controls/viewer/pages/frmScanProperties.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

using platform::Answer;
using platform::Buttons;
using platform::Icon;

namespace {

constexpr std::string_view optionSection = "ViewerSettings",
                           autoHideOption = "AutoHideAnnotationToolbox";

using forms::FieldRow;
using forms::Kind;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr FieldRow textFields[] = {
    {"lblText", Kind::Label, {8, 6, 200, 9}, "Tekst van de annotatie:"},
    {"txtText", Kind::Memo, {8, 18, 224, 72}, "", anchor::all},
    {"btnOk", Kind::Button, {128, 98, 50, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel",
     Kind::Button,
     {182, 98, 50, 14},
     "Annuleren",
     anchor::rightBottom,
     style::isCancel},
};
constexpr forms::Layout textLayout = {"frmAnnotationText", "Annotatie", 240, 118, true, textFields};

} // namespace

// --- Pages
// ----------------------------------------------------------------------------------------

bool ImageView::MayEdit() const {
    return lclDocument && lclDocument->Editable() && HasRight("EditDossiers");
}

void ImageView::Rotate(imaging::Turn turn) {
    if (!MayEdit() || !lclCanvas.HasPage()) return;
    lclDocument->Rotate(lclPage, turn);
    lclThumbs.Forget(lclPage);
    ShowPage(lclPage, false, false);
}

void ImageView::SetThumbsShown(bool shown) {
    lclThumbsShown = shown;
    Changed();
    if (shown) lclThumbs.Show(lclPage);
    lclFrame.WantIdle();
}

std::vector<int> ImageView::SelectedPages() const {
    if (!HasThumbsSelected()) return {};
    return {lclThumbs.Selected().begin(), lclThumbs.Selected().end()};
}

bool ImageView::DeleteSelectedThumbs() {
    const auto pages = SelectedPages();
    if (pages.empty() || !MayEdit()) return false;
    if (static_cast<int>(pages.size()) == Count()) {
        lclFrame.Ask("Een document houdt minstens één pagina: niet alle pagina's kunnen "
                     "verwijderd worden.",
                     "Bevestigen verwijderen pagina's", Buttons::Ok, Icon::Exclamation);
        return false;
    }
    return lclFrame.Ask("Wilt u de geselecteerde pagina's verwijderen?",
                        "Bevestigen verwijderen pagina's", Buttons::YesNo,
                        Icon::Question) == Answer::Yes &&
           DeletePages(pages);
}

bool ImageView::DeletePages(const std::vector<int>& pages) {
    const auto shown = lclDocument->Ids().GetPageId(lclPage);
    const auto remove = [&] {
        lclFrame.NeedItem(*lclShown.item);
        lclDocument->Delete(pages);
    };
    if (!Written("DeleteSelectedThumbs", remove)) return false;
    const int still = lclDocument->Ids().PageNumberOf(shown);
    lclThumbs.SetCount(Count());
    Again(still != 0 ? still : pages.front());
    return true;
}

// A page moves when there is one above it that does not move as well.
bool ImageView::CanMoveUp() const {
    const auto pages = SelectedPages();
    return MayEdit() && !pages.empty() && pages.back() > static_cast<int>(pages.size());
}

bool ImageView::MoveUp() {
    if (!CanMoveUp()) return false;
    const auto pages = SelectedPages();
    std::vector<int> order(static_cast<std::size_t>(Count()));
    std::iota(order.begin(), order.end(), 1);
    std::set<int> selected;
    int free = 1; // the highest place that none of those before has taken
    for (const int page : pages) {
        const int to = std::max(page - 1, free);
        if (to < page)
            std::swap(order[static_cast<std::size_t>(to - 1)],
                      order[static_cast<std::size_t>(page - 1)]);
        selected.insert(to);
        free = to + 1;
    }
    const auto shown = lclDocument->Ids().GetPageId(lclPage);
    const auto move = [&] {
        lclFrame.NeedItem(*lclShown.item);
        lclDocument->Reorder(order);
    };
    if (!Written("MoveUp", move)) return false;
    const int top = lclThumbs.Top();
    lclThumbs.SetCount(Count());
    Again(lclDocument->Ids().PageNumberOf(shown));
    lclThumbs.Select(selected);
    lclThumbs.ScrollTo(top);
    lclHost.PageMovedUp();
    return true;
}

// The pages that may leave the document, as the file holds them; none: refused, or nothing is
// there.
std::vector<int> ImageView::PagesToExport() {
    const auto pages = SelectedPages();
    if (pages.empty()) return {};
    if (static_cast<int>(pages.size()) == Count()) {
        lclFrame.Ask("U kunt niet alle pagina's exporteren", "Export waarschuwing", Buttons::Ok,
                     Icon::Exclamation);
        return {};
    }
    // The numbers count in the file as it is shown.
    const auto ids = Ids().GetIds();
    if (!Written("ExportPages", [&] { lclDocument->Confirm(); }) || !SaveImage() ||
        Ids().GetIds() != ids)
        return {};
    lclThumbs.Select({pages.begin(), pages.end()});
    return pages;
}

ImageView::PageIds ImageView::IdsOf(const std::vector<int>& pages) const {
    PageIds ids;
    for (const int page : pages) ids.push_back(Ids().GetPageId(page));
    return ids;
}

// By their ids: whoever took them may have changed what their numbers mean. True: they have left.
bool ImageView::Exported(const PageIds& ids) {
    lclExported = true;
    bool left = false;
    if (MayEdit() &&
        lclFrame.Ask("Wilt u de geexporteerde pagina's verwijderen uit het originele document?",
                     "Bevestigen verwijderen", Buttons::YesNo, Icon::Question) == Answer::Yes) {
        std::vector<int> pages;
        for (const auto id : ids)
            if (const int page = Ids().PageNumberOf(id)) pages.push_back(page);
        left = !pages.empty() && DeletePages(pages);
    }
    Changed();
    return left;
}

bool ImageView::ExportSelectedThumbs() {
    const auto pages = PagesToExport();
    if (pages.empty()) return false;
    // The numbers are those of this document: until it is settled whether they go no other is
    // shown.
    bool done = false;
    const auto ids = IdsOf(pages);
    lclFrame.Undisturbed([&] {
        done = lclHost.ExportPagesOf(lclDocument->Path(), {pages.begin(), pages.end()});
    });
    if (done) Exported(ids);
    return done;
}

// Dragged out they are a file of their own, which goes when the document does. Where they have left
// it that file stays: nobody knows whether whoever took it has a copy yet.
void ImageView::DragThumbs() {
    auto* window = lclThumbs.Window();
    if (!window || !lclHost.MayDragPages()) return;
    const auto pages = PagesToExport();
    if (pages.empty()) return;
    std::string numbers;
    for (const int page : pages) numbers += " " + std::to_string(page);
    const auto ids = IdsOf(pages);
    DropData data;
    data.hasFiles = true;
    data.files = {platform::JoinPath(MakeCopyFolder(lclFrame.Machine()),
                                     OutgoingStem(Description() + numbers) + ".tif")};
    lclDocument->Extract(pages, data.files[0]);
    lclDragged.push_back(data.files[0]);
    std::int32_t effect = drop::none;
    lclFrame.Undisturbed([&] { effect = window->Drag(data); });
    if (effect != drop::none && Exported(ids)) lclDragged.pop_back();
}

void ImageView::RemoveDragged() {
    for (const auto& path : std::exchange(lclDragged, {})) try {
            lclFrame.Machine().files.Remove(path);
        } catch (const platform::Error& error) {
            lclFrame.Machine().log.Write("RemoveDragged", error.what());
        }
}

void ImageView::ShowProperties() {
    if (!HasProperties()) return;
    const auto document = lclShown;
    frmScanProperties properties(lclFrame, document);
    properties.fncFill(lclPage, PageText());
    lclFrame.ShowForm(properties.Form());
}

// --- Marks
// ----------------------------------------------------------------------------------------

bool ImageView::MayViewMarks() const { return !lclPdf && HasRight("ViewAnnotations"); }

void ImageView::SetMarksShown(bool shown) {
    lclMarksShown = shown;
    if (!shown) SetToolboxShown(false);
    ShowMarks();
    Changed();
}

void ImageView::SetToolboxShown(bool shown) {
    lclToolboxShown = shown && MayUseToolbox();
    if (lclToolboxShown) lclMarksShown = true;
    Editor().SetTool(lclToolboxShown && MarksShown() ? MarkTool::Select : MarkTool::None);
    ShowMarks();
    Changed();
    if (lclToolboxShown && lclCanvas.HasPage() && !lclMarksEditable)
        lclFrame.Ask("Op deze pagina kunnen geen annotaties gemaakt of gewijzigd worden: wat er "
                     "staat, kan hier niet gelezen worden en blijft bewaard.",
                     "Melding viewer", Buttons::Ok, Icon::Information);
}

void ImageView::SurroundingsChanged() {
    ShowMarks();
    Changed();
}

void ImageView::ShowMarks() {
    lclMarksEditable = false;
    if (!lclDocument || !lclCanvas.HasPage()) return;
    // Marks that may not be seen are not chosen among either.
    const bool chooses = Editor().Tool() == MarkTool::Select;
    if (!MayUseToolbox() || (chooses && !MarksShown())) Editor().SetTool(MarkTool::None);
    const imaging::annotations::Annotations* marks = nullptr;
    try {
        if (MarksShown() || ToolboxShown()) marks = &lclDocument->Marks(lclPage);
    } catch (const platform::Error& error) {
        lclFrame.Machine().log.Write("ShowMarks", error.what());
    }
    lclMarksEditable = ToolboxShown() && marks && marks->Editable();
    lclCanvas.SetMarks(MarksShown() ? marks : nullptr);
}

bool ImageView::CanEditMarks() const {
    return lclMarksEditable && ToolboxShown() && lclCanvas.HasPage();
}

imaging::annotations::Annotations* ImageView::EditableMarks() {
    try {
        return CanEditMarks() ? &lclDocument->Marks(lclPage) : nullptr;
    } catch (const platform::Error&) {
        return nullptr; // asked at every move of the pointer
    }
}

bool ImageView::AskMarkText(std::string& text) {
    forms::Form form(textLayout, lclFrame.Machine(), lclFrame.Translate());
    form["txtText"].SetText(text);
    if (!lclFrame.ShowForm(form)) return false;
    text = form["txtText"].Text();
    return true;
}

bool ImageView::EditMarks(const MarkEdit& edit, bool adds) {
    try {
        if (!CanEditMarks()) return true;
        edit(lclDocument->Marks(lclPage));
    } catch (const std::exception& error) {
        lclFrame.TellError("EditAnnotation", error);
        return false;
    }
    MarksEdited(adds);
    return true;
}

void ImageView::MarksEdited(bool added) {
    lclDocument->MarksChanged(lclPage);
    lclCanvas.MarksChanged();
    Changed();
    if (!added) return;
    const auto& machine = lclFrame.Machine();
    // Hosts that keep no properties of a running control would have it asked each time.
    const bool answered = !platform::GetRegSetting(machine, platform::applicationName,
                                                   optionSection, autoHideOption, "")
                               .empty();
    if (!answered && !lclHost.ToolboxQuestionAsked()) {
        const bool hide =
            lclFrame.Ask("Wilt u de toolbox automatisch verbergen na het toevoegen "
                         "van een annotatie?",
                         "Keuze verbergen toolbox", Buttons::YesNo, Icon::Question) == Answer::Yes;
        platform::SaveRegFlag(machine, optionSection, autoHideOption, hide);
        lclHost.SetToolboxQuestionAsked();
    }
    if (platform::GetRegFlag(machine, optionSection, autoHideOption)) SetToolboxShown(false);
}

void ImageView::MarksRepaint() {
    if (lclCanvas.Window()) lclCanvas.Window()->Repaint();
}

void ImageView::MarkSelected() { Changed(); }

std::uint32_t ImageView::MarkTime() {
    const auto now = lclFrame.Machine().clock.Now();
    std::tm local{};
    local.tm_year = now.year - 1900;
    local.tm_mon = now.month - 1;
    local.tm_mday = now.day;
    local.tm_hour = now.hour;
    local.tm_min = now.minute;
    local.tm_sec = now.second;
    local.tm_isdst = -1;
    return static_cast<std::uint32_t>(std::max<std::time_t>(0, std::mktime(&local)));
}

imaging::annotations::TextPainter* ImageView::Texts() {
    return lclCanvas.Window() ? &lclCanvas.Window()->Texts() : nullptr;
}

} // namespace kavidex::controls
