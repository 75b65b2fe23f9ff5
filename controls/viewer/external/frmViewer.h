// A window of its own that shows one document after the other: the logic around its document
// viewer. It acts on no request of the viewer, and hands them all on.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/common/Event.h"
#include "controls/common/PopupMenu.h"
#include "controls/viewer/ctlViewer.h"
#include "controls/viewer/external/ViewerPlace.h"

namespace kavidex::controls {

class frmViewer;

class ViewerFormWindow {
public:
    virtual ~ViewerFormWindow() = default;
    virtual void Show() = 0; // beside what is there, without taking the focus
    virtual void SetFocus() = 0;
    virtual void CaptionChanged() = 0; // and the marks of the menu
    virtual ViewerPlace Place() const = 0;
    virtual void Close() = 0;        // as the user would: frmViewer::MayClose is asked
    virtual void CloseWhenDue() = 0; // frmViewer::CloseIfDue, when none of its calls runs any more
};

// Null where no window can be made: the form then works without.
using ViewerFormMaker = std::function<std::unique_ptr<ViewerFormWindow>(frmViewer&)>;

class frmViewer : public std::enable_shared_from_this<frmViewer> {
public:
    using ItemPtr = ctlViewer::ItemPtr;

    explicit frmViewer(const platform::Workstation& workstation);
    ~frmViewer();
    frmViewer(const frmViewer&) = delete;
    frmViewer& operator=(const frmViewer&) = delete;

    std::int32_t Id() const; // of the tree item shown, 0: none
    const std::shared_ptr<Translator>& Translate() const { return lclViewer.Translate(); }
    void SetTranslate(std::shared_ptr<Translator> translator);
    const data::ConnectionPtr& DbConnection() const { return lclViewer.DbConnection(); }
    void SetDbConnection(data::ConnectionPtr connection);
    bool AllowMultipleDocScroll() const { return lclViewer.AllowMultipleDocScroll(); }
    void SetAllowMultipleDocScroll(bool allow) { lclViewer.SetAllowMultipleDocScroll(allow); }

    void Open(const ViewerFormMaker& maker); // makes the window and shows it
    bool ShowItem(const ItemPtr& item);
    bool DeleteSelectedThumbs() { return lclViewer.DeleteSelectedThumbs(); }
    bool SaveImage() { return lclViewer.SaveImage(); }
    bool CloseImage() { return lclViewer.CloseImage(); }
    bool SetNextPage() { return lclViewer.SetNextPage(); }
    bool SetPreviousPage() { return lclViewer.SetPreviousPage(); }
    ctlViewer& Viewer() { return lclViewer; }
    ViewerFormWindow* Window() const { return lclWindow.get(); }

    Event<const std::string&, const std::string&> EvOpenDossier;
    Event<> ExternalViewerOpened;
    Event<const std::string&, const std::vector<std::int32_t>&, bool&> EvExportPages;
    Event<> EvNextDocumentRequest, EvPreviousDocumentRequest;
    Event<> EvUnload; // the window is gone

    // --- For the window ------------------------------------------------------------------------
    std::string Caption() const; // "Document: " and the description
    ViewerPlace StartPlace(std::span<const ScreenArea> monitors) const;
    PopupMenu Menu(); // mnuOptions with its entries
    void MenuChosen(const MenuEntry& entry);
    // What is shown is left. False when it could not be saved, or is in a question now: then the
    // window closes when that is answered.
    bool MayClose();
    void CloseIfDue();
    void Closed();

private:
    struct MenuContext;

    void ShownChanged();

    const platform::Workstation& lclWorkstation;
    ctlViewer lclViewer;
    std::unique_ptr<ViewerFormWindow> lclWindow;
    bool lclAlwaysExternal = false, lclCloseDue = false;
    std::vector<std::shared_ptr<void>> lclSubscriptions;
};

} // namespace kavidex::controls
