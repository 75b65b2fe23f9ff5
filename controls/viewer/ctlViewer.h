// The logic of the document viewer: it finds the file of an item's document and has it shown by the
// view of its type. It works without a window; a window that is attached shows the state as it is.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/Appearance.h"
#include "controls/common/Event.h"
#include "controls/common/GrantedRights.h"
#include "controls/common/PopupMenu.h"
#include "controls/common/Shortcut.h"
#include "controls/common/Toolbar.h"
#include "controls/common/Translator.h"
#include "controls/viewer/DocumentView.h"
#include "controls/viewer/ViewerProperties.h"
#include "controls/viewer/pages/PageHost.h"

namespace kavidex::model {
class clsUserAuth;
}

namespace kavidex::controls {

struct ViewerViews;

template <class Context>
class Commands;

enum class Opening { Opened, Refused, NotFound };

class ctlViewer final : public ToolbarSource, private ViewerFrame, private PageHost {
public:
    using ItemPtr = std::shared_ptr<model::clsItem>;

    explicit ctlViewer(const platform::Workstation& workstation);
    ~ctlViewer() override; // closes what is shown
    ctlViewer(const ctlViewer&) = delete;
    ctlViewer& operator=(const ctlViewer&) = delete;

    // --- Properties -----------------------------------------------------------------------------

    // Name() and SetName(value) of one property; a change is reported and takes effect.
#define KAVIDEX_VIEWER_PROPERTY(Type, Name)                                                        \
    const Type& Name() const { return lclState.Name; }                                             \
    void Set##Name(const Type& value) { Change(&ViewerProperties::Name, value); }

    KAVIDEX_VIEWER_PROPERTY(std::int32_t, BackColor)
    KAVIDEX_VIEWER_PROPERTY(std::int32_t, ForeColor)
    KAVIDEX_VIEWER_PROPERTY(bool, Enabled)
    KAVIDEX_VIEWER_PROPERTY(std::int16_t, BackStyle)
    KAVIDEX_VIEWER_PROPERTY(std::int16_t, BorderStyle)
    KAVIDEX_VIEWER_PROPERTY(bool, ExternalMove)
    KAVIDEX_VIEWER_PROPERTY(bool, AllowMultipleDocScroll)
    KAVIDEX_VIEWER_PROPERTY(bool, AnnotationsPopupShown)
    KAVIDEX_VIEWER_PROPERTY(std::string, LastFit)
    KAVIDEX_VIEWER_PROPERTY(bool, DragPossible)
#undef KAVIDEX_VIEWER_PROPERTY

    const std::string& Description() const { return lclState.Description; }
    // Of the list's first column, in pixels at 96 dots an inch; 0: an equal share.
    void SetColWidth(std::int32_t width);
    bool ThumbsShown() const;
    bool ThumbsExported() const; // pages of the document shown were exported
    const std::shared_ptr<Translator>& Translate() const override { return lclTranslator; }
    void SetTranslate(std::shared_ptr<Translator> translator);
    const data::ConnectionPtr& DbConnection() const { return lclConnection; }
    void SetDbConnection(data::ConnectionPtr connection);
    const std::shared_ptr<model::clsUserAuth>& UserAuth() const { return lclUserAuth; }
    void SetUserAuth(std::shared_ptr<model::clsUserAuth> rights);
    const std::optional<FontFace>& Font() const { return lclFont; }
    void SetFont(std::optional<FontFace> font); // null: the system's

    // Whether the dossier takes documents of a type; a program that it does not take is not
    // started.
    void SetAcceptsType(std::function<bool(std::string_view type)> accepts);

    void LoadProperties(PropertyBag& bag);
    void SaveProperties(PropertyBag& bag) const;

    // --- Operations: false is a failure, or that there was nothing to do
    // --------------------------

    // What is shown is left first: changes are saved. Nothing empties the viewer. False when the
    // document cannot be shown (the user was told, and nothing is shown), when what was shown could
    // not be left, or when something is under way that it waits for.
    bool ShowItem(const ItemPtr& item);
    bool ShowList(const ItemPtr& folder);
    // In place of a document that is shown elsewhere; `notice` says so, a key of the translations.
    // `show` has it shown there once what stands here is left; false: it is not.
    bool ShowElsewhere(const ItemPtr& item, std::string_view notice,
                       const std::function<bool()>& show = {});
    std::string_view Elsewhere() const;           // that notice while it stands here
    bool Refresh() { return RefreshAs(nullptr); } // reads again what is shown, or could not be
    bool RefreshAs(const ItemPtr& now);           // which has become that; null: the same
    void Renamed(const ItemPtr& item);            // is what is shown, if it is that
    // Any document in its default program; where it was not opened the user was told.
    Opening OpenDefault(const ItemPtr& item);

    bool SetNextPage(); // past the last page the next document is asked for, where that is allowed
    bool SetPreviousPage();
    bool SaveImage();
    bool CloseImage();
    bool LeaveDeleted(); // what is shown was deleted here: its changes stay in its file
    bool DeleteSelectedThumbs();

    const ItemPtr& Item() const { return lclItem; }   // what is shown; null: nothing
    const ItemPtr& Asked() const { return lclAsked; } // the same, also if it could not be shown
    bool Waits() const { return lclNext != nullptr; } // something is to be shown, or left
    bool Busy() const { return lclWorking > 0 || lclAsking > 0 || lclSwitching; }

    // --- Events ---------------------------------------------------------------------------------

    Event<> PreviousDocumentRequest, NextDocumentRequest;
    // The image's file and the numbers of pages in it, from 1. Who has made a document of them sets
    // the last to true; then the user is asked whether the pages are to leave the original.
    Event<const std::string&, const std::vector<std::int32_t>&, bool&> ExportPages;
    Event<> ExternalViewerOpened;
    Event<const std::string&, const std::string&> EvOpenDossier; // the link's two values
    Event<> EvMoveUp;                                            // a page was moved up
    Event<std::int32_t> EvImageSelected;                         // the number of the page shown
    Event<std::int32_t> DocumentChosen; // in the list, by the id of its tree item

    Event<> Shown;                           // what is shown, or its name, may be another now
    Event<std::string_view> PropertyChanged; // the saved item's name, for the container

    // --- The window and what it reports ----------------------------------------------------------

    // The window must detach (null) before it dies.
    void AttachWindow(ViewerWindow* window);

    ViewerViews& Views() const { return *lclViews; }
    PartSet Parts() const; // empty: nothing is shown
    StatusTexts Status() const;
    std::string NothingSelected() const; // lblNothingSelected
    void HintActivated();
    bool Idle(); // true: more work waits

    std::vector<ToolbarItem> Toolbar() override;
    void ButtonClicked(std::string_view key) override;
    void ButtonDropped(std::string_view key) override;
    PopupMenu ButtonMenu(std::string_view key); // what the button drops down
    void MenuChosen(const MenuEntry& entry);
    bool CommandKey(const Shortcut& key); // true when the key was used

private:
    struct CommandContext; // what the rows of the toolbar act on
    static const Commands<CommandContext>& CommandTable();

    template <class Type>
    void Change(Type ViewerProperties::*member, const Type& value) {
        const auto* row = FindProperty(ViewerPropertyTable(), member);
        if (row) CheckValue(*row, value);
        if (!Assign(lclState, member, value)) return;
        if (row) PropertyChanged.Raise(row->ReportedAs());
        TakeEffect();
    }
    void TakeEffect();
    void SurroundingsChanged();
    void SetDescription(const std::string& description);

    // Runs one public operation; an error is told under its name.
    bool Guarded(std::string_view routine, const std::function<bool()>& work);
    void ShowWhatWaits();
    void TellPage();
    bool CanPrint() const;
    bool Switch(const std::function<bool()>& show);
    bool Leave();
    bool ShowDocument(const ItemPtr& item);
    // Its file is there, or nothing was written in the note yet; else the user was told.
    bool FindDocument(const ItemPtr& item, ShownDocument& document) const;
    bool Stage(StageView& view, const ItemPtr& item);
    void ShowNothing();
    void ShowMeanwhile() const;
    ImageView* Pages() const { return lclView ? lclView->Pages() : nullptr; }

    const platform::Workstation& Machine() const override { return lclWorkstation; }
    const data::ConnectionPtr& Connection() const override { return lclConnection; }
    bool HasRight(std::string_view right) const override { return lclRights.Has(right); }
    std::string Text(std::string_view text,
                     const std::vector<std::string>& values = {}) const override;
    ViewerWindow* Window() const override { return lclWindow; }
    void ContentChanged() override;
    void WantIdle() override;
    void ShowAgain() override { Refresh(); }
    platform::Answer Ask(std::string_view text, std::string_view caption, platform::Buttons buttons,
                         platform::Icon icon,
                         const std::vector<std::string>& values = {}) const override;
    bool ShowForm(forms::Form& form) const override;
    void Undisturbed(const std::function<void()>& work) const override;
    void TellError(std::string_view routine, const std::exception& error) const override;
    void NeedItem(const model::clsItem& item) const override;
    void OpenDossier(const std::string& key, const std::string& type) override;

    FitMode KeptFit() const override { return FitModeOf(lclState.LastFit); }
    void KeepFit(FitMode mode) override { SetLastFit(std::string(NameOf(mode))); }
    bool ToolboxQuestionAsked() const override { return lclState.AnnotationsPopupShown; }
    void SetToolboxQuestionAsked() override { SetAnnotationsPopupShown(true); }
    void StepPage(int step) override { step > 0 ? SetNextPage() : SetPreviousPage(); }
    void PageShown(int page) override;
    void PageMovedUp() override { EvMoveUp.Raise(); }
    bool MayDragPages() const override { return lclState.DragPossible; }
    bool ExportPagesOf(const std::string& path, const std::vector<std::int32_t>& pages) override;
    void ShowPageMenu(int x, int y) override;
    using MenuShower = std::function<std::optional<std::size_t>(const PopupMenu&)>;
    void TakeFromMenu(std::string_view owner, const MenuShower& show);
    void Run(std::string_view routine, const std::function<void()>& work) override;

    const platform::Workstation& lclWorkstation;
    ViewerProperties lclState;
    std::optional<FontFace> lclFont;
    std::shared_ptr<Translator> lclTranslator;
    std::shared_ptr<model::clsUserAuth> lclUserAuth;
    data::ConnectionPtr lclConnection;
    GrantedRights lclRights;
    std::unique_ptr<ViewerViews> lclViews;
    std::shared_ptr<void> lclChosen; // in the list
    StageView* lclView = nullptr;    // one of the views; null: nothing is shown
    ItemPtr lclItem;                 // what it shows
    bool lclDeletedHere = false;     // since it is shown
    ItemPtr lclAsked;                // that, or what could not be shown
    // Questions let the message loop run: what is asked for meanwhile is shown afterwards.
    bool lclSwitching = false;
    mutable int lclAsking = 0;
    int lclWorking = 0, lclPageToTell = 0; // 0: none
    std::function<bool()> lclNext;
    ViewerWindow* lclWindow = nullptr;
};

} // namespace kavidex::controls
