// Documents that have pages: scanned images, and PDF files where they are drawn here. It holds the
// page shown, how it is shown, its marks and the thumbnails.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/common/OperationLock.h"
#include "controls/viewer/DocumentView.h"
#include "controls/viewer/pages/ImageWindow.h"
#include "controls/viewer/pages/MarkEditor.h"
#include "controls/viewer/pages/MarkToolbar.h"
#include "controls/viewer/pages/PageCanvas.h"
#include "controls/viewer/pages/PageDocument.h"
#include "controls/viewer/pages/PageHost.h"
#include "controls/viewer/pages/ThumbStrip.h"

namespace kavidex::controls {

class ImageView final : public DocumentView, private MarkEditorOwner {
public:
    ImageView(ViewerFrame& frame, PageHost& host);
    ~ImageView() override { RemoveDragged(); }

    bool Show(const ShownDocument& document) override;
    bool Close() override;
    PartSet Parts() const override { return {Part::Image}; }
    StatusTexts Status() const override;
    void HintActivated() override;
    bool Idle() override;
    ImageView* Pages() override { return this; }
    void SurroundingsChanged() override;

    bool CanPrint() const override { return Count() > 0; }
    void Print() override;
    void PrintSelectedThumbs();
    bool HasProperties() const { return lclDocument && !lclPdf; }
    void ShowProperties(); // of a scan

    // --- Pages, from 1

    int Count() const { return lclDocument ? lclDocument->Count() : 0; }
    int Page() const { return lclPage; }
    bool GoTo(int page, bool fromItsEnd = false); // false: there is none
    bool SetNextPage() { return GoTo(lclPage + 1); }
    bool SetPreviousPage() { return GoTo(lclPage - 1); }
    const imaging::clsPageIds& Ids() const { return lclDocument->Ids(); }

    PageCanvas& Canvas() { return lclCanvas; }
    ThumbStrip& Thumbs() { return lclThumbs; }
    void Fit(FitMode mode);
    void Zoom(int steps) { lclCanvas.Zoom(steps); }

    // --- Changing. Where the user may not, nothing is done.

    bool MayEdit() const; // by right, and the file can be written
    void Rotate(imaging::Turn turn);
    // Writes what was changed. False: it could not be, and the user was told.
    bool SaveImage();

    bool ThumbsShown() const { return lclThumbsShown; }
    void SetThumbsShown(bool shown);
    bool ThumbsExported() const { return lclExported; }
    bool HasThumbsSelected() const { return lclThumbsShown && !lclThumbs.Selected().empty(); }
    bool DeleteSelectedThumbs();
    bool MayExport() const { return HasThumbsSelected() && !lclPdf; }
    bool CanMoveUp() const;
    bool MoveUp();
    bool ExportSelectedThumbs();

    // --- Marks

    bool MayViewMarks() const;
    bool MarksShown() const { return lclMarksShown && MayViewMarks(); }
    void SetMarksShown(bool shown);
    bool MayUseToolbox() const { return MayEdit(); }
    bool ToolboxShown() const { return lclToolboxShown && MayUseToolbox(); }
    // Some can only be kept, and then none can be added.
    bool MarksEditable() const { return lclMarksEditable; }
    // Marks are shown with it. Who may not view them can add some, and sees none.
    void SetToolboxShown(bool shown);
    MarkEditor& Editor() { return lclCanvas.Editor(); }
    MarkToolbar& Toolbox() { return lclToolbox; }
    void ToolboxChanged() { Changed(); }

    // The window must detach (null) before it dies.
    void AttachWindow(ImageWindow* window) { lclWindow = window; }
    ImageWindow* Window() const { return lclWindow; }

private:
    bool HasRight(std::string_view right) const { return lclFrame.HasRight(right); }
    std::string Description() const; // as it is named now
    std::string PageText() const;    // its number and the count
    void Changed();
    void ShowPage(int page, bool fit, bool fromItsEnd);
    bool NeedsPicture();
    void MakePicture();
    void PageFailed(std::string_view routine, const std::exception& error);
    void MakeThumb(int page);
    void ShowMarks();
    bool CanEditMarks() const;
    bool Written(std::string_view routine, const std::function<void()>& write);
    bool DeletePages(const std::vector<int>& pages);
    enum class Saving { Saved, GivenUp, Unsaved }; // Unsaved: nobody said what is to become of it
    Saving Save(bool orLost); // whether what is not saved goes
    void TellMissed(const std::vector<int>& pages);
    void Again(int page); // the file is another now
    std::vector<int> SelectedPages() const;
    std::vector<int> PagesToExport();
    using PageIds = std::vector<std::int32_t>;
    PageIds IdsOf(const std::vector<int>& pages) const;
    bool Exported(const PageIds& pages);
    void PrintThese(const std::vector<int>& pages, int choosable);
    void DragThumbs();
    void RemoveDragged();

    imaging::annotations::Annotations* EditableMarks() override;
    bool AskMarkText(std::string& text) override;
    bool EditMarks(const MarkEdit& edit, bool adds) override;
    void MarksEdited(bool added);
    void MarksRepaint() override;
    void MarkSelected() override;
    std::uint32_t MarkTime() override;
    imaging::annotations::TextPainter* Texts() override;

    ViewerFrame& lclFrame;
    PageHost& lclHost;
    std::unique_ptr<PageDocument> lclDocument; // null: nothing is shown
    ShownDocument lclShown;                    // what it is of
    bool lclReadOnly = false, lclPdf = false;
    int lclPage = 0;
    std::string lclDamage;
    int lclPictureWidth = 0; // that the picture was asked for
    PageCanvas lclCanvas{*this};
    ThumbStrip lclThumbs;
    MarkToolbar lclToolbox;
    ImageWindow* lclWindow = nullptr;
    bool lclThumbsShown = false, lclMarksShown = true, lclToolboxShown = false;
    bool lclMarksEditable = false; // of the page shown, while the toolbox is
    bool lclExported = false;
    OperationLock lclPrinting;
    std::vector<std::string> lclDragged; // files of pages that were dragged out
    std::vector<std::shared_ptr<void>> lclSubscriptions;
};

} // namespace kavidex::controls
