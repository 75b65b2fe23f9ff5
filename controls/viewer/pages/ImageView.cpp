// Showing: opening, paging, pictures, saving.
#include "controls/viewer/pages/ImageView.h"

#include <algorithm>

#include "controls/common/Causes.h"
#include "controls/common/Translator.h"
#include "model/clsItem.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

using platform::Answer;
using platform::Buttons;
using platform::Icon;

ImageView::ImageView(ViewerFrame& frame, PageHost& host)
    : lclFrame(frame), lclHost(host), lclToolbox(frame, *this), lclPrinting(frame.Machine()) {
    const auto keep = [this](std::shared_ptr<void> subscription) {
        lclSubscriptions.push_back(std::move(subscription));
    };
    const auto redraw = [this] {
        Changed();
        lclFrame.WantIdle();
    };
    const auto menu = [this](int x, int y) { lclHost.ShowPageMenu(x, y); };
    keep(lclCanvas.PageAsked.Subscribe([this](int step) {
        if (!GoTo(lclPage + step, step < 0)) lclHost.StepPage(step);
    }));
    keep(lclCanvas.ZoomChanged.Subscribe(redraw));
    keep(lclCanvas.ContextMenu.Subscribe(menu));
    keep(lclThumbs.Chosen.Subscribe([this](int page) {
        if (page != lclPage) GoTo(page);
    }));
    keep(lclThumbs.SelectionChanged.Subscribe([this] { Changed(); }));
    keep(lclThumbs.RoomChanged.Subscribe([this] { lclFrame.WantIdle(); }));
    keep(lclThumbs.ContextMenu.Subscribe(menu));
    keep(lclThumbs.DeleteAsked.Subscribe(
        [this] { lclHost.Run("DeleteSelectedThumbs", [this] { DeleteSelectedThumbs(); }); }));
    keep(lclThumbs.DragStarted.Subscribe(
        [this] { lclHost.Run("DragThumbs", [this] { DragThumbs(); }); }));
}

void ImageView::Changed() {
    lclFrame.ContentChanged();
    if (lclWindow) lclWindow->ContentChanged();
}

bool ImageView::Show(const ShownDocument& document) {
    const bool pdf = document.type == "pdf";
    auto opened = std::make_unique<PageDocument>(lclFrame.Machine().files, document.Path(),
                                                 pdf ? &OpenPdf : &OpenScan, document.readOnly);
    if (opened->Count() < 1)
        throw platform::Error(platform::errors::invalidData,
                              "The document has no pages: " + document.Path());
    lclDocument = std::move(opened);
    lclShown = document;
    lclReadOnly = document.readOnly;
    lclPdf = pdf;
    lclExported = false;
    lclThumbs.SetCount(Count());
    lclCanvas.Fit(lclHost.KeptFit());
    ShowPage(1, true, false);
    return true;
}

std::string ImageView::Description() const {
    return lclShown.item ? lclShown.item->Description() : lclShown.file.description;
}

bool ImageView::Close() {
    // What cannot be saved stays, unless the user lets it go.
    if (lclDocument && lclDocument->Changed() && Save(true) == Saving::Unsaved) return false;
    lclDocument.reset();
    lclShown = {};
    RemoveDragged();
    lclPage = 0;
    lclDamage.clear();
    lclCanvas.Clear();
    lclThumbs.SetCount(0);
    return true;
}

// --- Pages
// ----------------------------------------------------------------------------------------

bool ImageView::GoTo(int page, bool fromItsEnd) {
    if (!lclDocument || page < 1 || page > Count() || page == lclPage) return false;
    ShowPage(page, false, fromItsEnd);
    return true;
}

void ImageView::ShowPage(int page, bool fit, bool fromItsEnd) {
    lclPage = page;
    lclDamage.clear();
    try {
        lclCanvas.SetPage(lclDocument->Shape(page), fit, fromItsEnd);
        ShowMarks();
    } catch (const platform::Error& error) {
        lclCanvas.Clear();
        PageFailed("ShowPage", error);
    }
    lclThumbs.SetCurrent(page);
    Changed();
    lclFrame.WantIdle();
    lclHost.PageShown(page);
}

void ImageView::Fit(FitMode mode) {
    lclHost.KeepFit(mode);
    lclCanvas.Fit(mode);
}

void ImageView::PageFailed(std::string_view routine, const std::exception& error) {
    lclFrame.Machine().log.Write(routine, error.what());
    const auto* ours = dynamic_cast<const platform::Error*>(&error);
    const bool damaged = ours && ours->Number() == platform::errors::invalidData;
    lclCanvas.SetMessage(
        lclFrame.Text("Deze pagina kan niet getoond worden") + "\n" +
        (damaged ? lclFrame.Text("Deze pagina is beschadigd")
                 : CauseText(TranslationBy(lclFrame.Translate()), lclDocument->Path(), error)));
}

bool ImageView::NeedsPicture() {
    if (!lclCanvas.HasPage() || !lclCanvas.Message().empty()) return false;
    if (!lclCanvas.HasPicture()) return true;
    return lclDocument->DrawsAnySize() && lclPictureWidth != lclCanvas.Geometry().ShownWidth();
}

void ImageView::MakePicture() {
    const auto& room = lclCanvas.Geometry();
    lclPictureWidth = room.ShownWidth();
    try {
        lclCanvas.SetPicture(
            lclDocument->Picture(lclPage, static_cast<std::uint32_t>(room.ShownWidth()),
                                 static_cast<std::uint32_t>(room.ShownHeight()), lclDamage));
        if (!lclDamage.empty()) lclFrame.Machine().log.Write("MakePicture", lclDamage);
    } catch (const std::exception& error) {
        PageFailed("MakePicture", error);
    }
    if (!lclDamage.empty()) Changed();
}

void ImageView::MakeThumb(int page) {
    const auto side = static_cast<std::uint32_t>(lclThumbs.PictureSize());
    try {
        lclThumbs.Put(page, lclDocument->Thumbnail(page, side, side));
    } catch (const std::exception& error) {
        lclFrame.Machine().log.Write("MakeThumb", error.what());
        lclThumbs.PutFailed(page);
    }
}

bool ImageView::Idle() {
    if (!lclDocument) return false;
    if (NeedsPicture()) {
        MakePicture();
        return true;
    }
    const int page = lclThumbsShown ? lclThumbs.Wanted() : 0;
    if (page == 0) return false;
    MakeThumb(page);
    return true;
}

std::string ImageView::PageText() const {
    const auto page = std::to_string(lclPage), count = std::to_string(Count());
    // The single page's count comes with a blank before it.
    return Count() == 1 ? lclFrame.Text("Pagina $%$ van $%$ pagina", {page, " " + count})
                        : lclFrame.Text("Pagina $%$ van $%$ pagina's", {page, count});
}

StatusTexts ImageView::Status() const {
    StatusTexts texts;
    if (!lclDocument) return texts;
    texts.page = PageText();
    if (lclReadOnly) texts.page += " " + lclFrame.Text("(Alleen lezen)");
    if (lclPdf) {
        texts.hint = lclFrame.Machine().shell.TypeDescription("pdf");
        texts.hintTip =
            lclFrame.Text("Dubbelklik om het document met zijn standaard programma te openen");
    }
    if (!lclDamage.empty()) {
        texts.hint = lclFrame.Text("Deze pagina is beschadigd");
        texts.hintTip = lclDamage;
    }
    if (lclCanvas.HasPage()) texts.zoom = std::to_string(lclCanvas.Geometry().Percent()) + "%";
    return texts;
}

void ImageView::HintActivated() {
    if (!lclDocument || !lclPdf) return;
    try {
        lclFrame.Machine().shell.OpenDefault(lclDocument->Path());
    } catch (const platform::Error& error) {
        lclFrame.TellError("OpenDefault", error);
    }
}

// --- Saving
// ---------------------------------------------------------------------------------------

// As often as the user wants it tried. A box that goes with its window is no answer.
ImageView::Saving ImageView::Save(bool orLost) {
    const std::string_view question =
        orLost ? "De wijzigingen van '$%$' zijn niet opgeslagen: $%$\r\n\r\nWilt u het opnieuw "
                 "proberen? Anders gaan ze verloren."
               : "De wijzigingen van '$%$' zijn niet opgeslagen: $%$\r\n\r\nWilt u het opnieuw "
                 "proberen?";
    for (;;) try {
            lclFrame.NeedItem(*lclShown.item);
            TellMissed(lclDocument->Save());
            return Saving::Saved;
        } catch (const std::exception& error) {
            lclFrame.Machine().log.Write("SaveImage", error.what());
            const auto answer = lclFrame.Ask(
                question, "Bevestigen opslaan wijzigingen", Buttons::YesNo, Icon::Critical,
                {Description(),
                 CauseText(TranslationBy(lclFrame.Translate()), lclDocument->Path(), error)});
            if (answer != Answer::Yes)
                return answer == Answer::No ? Saving::GivenUp : Saving::Unsaved;
        }
}

void ImageView::TellMissed(const std::vector<int>& missed) {
    if (missed.empty()) return;
    lclCanvas.Clear(); // the pages and their marks are others now
    std::string pages;
    for (const int page : missed) pages += (pages.empty() ? "" : ", ") + std::to_string(page);
    lclFrame.Ask("Een ander heeft het document intussen gewijzigd. Uw wijzigingen van deze "
                 "pagina's zijn niet opgeslagen: $%$",
                 "Melding viewer", Buttons::Ok, Icon::Exclamation, {pages});
}

bool ImageView::SaveImage() {
    if (!lclDocument) return false;
    if (!lclDocument->Changed()) return true;
    const auto ids = Ids().GetIds();
    const int left = lclCanvas.Geometry().Left(), top = lclCanvas.Geometry().Top();
    const bool saved = Save(false) == Saving::Saved;
    const bool same = Ids().GetIds() == ids;
    if (!same) lclThumbs.SetCount(Count()); // they are what another made of it
    Again(lclPage);
    if (same) lclCanvas.ScrollTo(left, top);
    return saved;
}

// After the file was written or read anew: the same page, as it looks now.
void ImageView::Again(int page) {
    if (lclThumbs.Count() != Count()) lclThumbs.SetCount(Count());
    ShowPage(std::clamp(page, 1, Count()), false, false);
}

// Runs what replaces the file; where another did so before, the document is read again instead.
bool ImageView::Written(std::string_view routine, const std::function<void()>& write) {
    try {
        write();
        return true;
    } catch (const ChangedByAnother& error) {
        lclFrame.Machine().log.Write(routine, error.what());
        lclFrame.Ask("Een ander heeft het document intussen gewijzigd. Er is niets veranderd; het "
                     "document wordt opnieuw getoond.",
                     "Melding viewer", Buttons::Ok, Icon::Exclamation);
        if (lclDocument->Changed() && Save(true) == Saving::Unsaved) return false;
        lclDocument->ReadAgain();
        lclThumbs.SetCount(Count());
        Again(lclPage);
    } catch (const std::exception& error) {
        lclFrame.TellError(routine, error);
    }
    return false;
}

} // namespace kavidex::controls
