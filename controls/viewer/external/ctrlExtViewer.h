// The way to the external viewer window for whoever does not hold it: makes it when it is first
// needed, passes calls on, and raises its notifications as events of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "controls/common/Event.h"
#include "controls/common/PropertyTable.h"
#include "controls/viewer/external/frmViewer.h"

namespace kavidex::controls {

struct ExtViewerProperties {
    std::int32_t Id = 0;
    bool AllowMultipleDocScroll = false;
};

std::span<const Property<ExtViewerProperties>> ExtViewerPropertyTable();

class ctrlExtViewer {
public:
    using ItemPtr = frmViewer::ItemPtr;

    explicit ctrlExtViewer(const platform::Workstation& workstation);
    ~ctrlExtViewer(); // the window goes with it
    ctrlExtViewer(const ctrlExtViewer&) = delete;
    ctrlExtViewer& operator=(const ctrlExtViewer&) = delete;

    // Of the item that is shown, or was last; setting it shows that item where there is a window.
    std::int32_t Id() const { return lclState.Id; }
    void SetId(std::int32_t id);
    bool AllowMultipleDocScroll() const { return lclState.AllowMultipleDocScroll; }
    void SetAllowMultipleDocScroll(bool allow);
    const std::shared_ptr<Translator>& Translate() const { return lclTranslator; }
    void SetTranslate(std::shared_ptr<Translator> translator);
    const data::ConnectionPtr& DbConnection() const { return lclConnection; }
    void SetDbConnection(data::ConnectionPtr connection);
    const std::shared_ptr<model::clsUserAuth>& UserAuth() const { return lclUserAuth; }
    void SetUserAuth(std::shared_ptr<model::clsUserAuth> rights);
    void SetWindowMaker(ViewerFormMaker maker) { lclMaker = std::move(maker); }
    void SetAcceptsType(std::function<bool(std::string_view type)> accepts) { // as the viewer's
        lclAcceptsType = std::move(accepts);
    }

    void LoadProperties(PropertyBag& bag);
    void SaveProperties(PropertyBag& bag) const;

    bool ShowItem(const ItemPtr& item);
    bool ShowItemFromId(std::int32_t id); // false when there is no such item
    void SetFocus();
    void Show(); // the window, with what it shows
    bool DeleteSelectedThumbs();
    // False: the window stays, as what is shown could not be saved, or until a question in it is
    // answered.
    bool CloseForm();
    frmViewer* Form() const { return lclViewerForm.get(); } // null: there is no window

    Event<const std::string&, const std::string&> EvOpenDossier;
    Event<> ExternalViewerOpened;
    Event<const std::string&, const std::vector<std::int32_t>&, bool&> EvExportPages;
    Event<> EvNextDocumentRequest, EvPreviousDocumentRequest;
    Event<> EvUnload;
    Event<> Shown; // what the window shows, or its name, may be another now
    Event<std::string_view> PropertyChanged;

private:
    bool Need();
    void ForgetGone();
    void Subscribe();
    void Unloaded();
    void Change(std::int32_t id);

    const platform::Workstation& lclWorkstation;
    ExtViewerProperties lclState;
    std::shared_ptr<Translator> lclTranslator;
    data::ConnectionPtr lclConnection;
    std::shared_ptr<model::clsUserAuth> lclUserAuth;
    ViewerFormMaker lclMaker;
    std::function<bool(std::string_view)> lclAcceptsType;
    std::shared_ptr<frmViewer> lclViewerForm;
    std::vector<std::shared_ptr<frmViewer>> lclGone; // closed, perhaps within work of their own
    std::vector<std::shared_ptr<void>> lclSubscriptions;

    static thread_local std::vector<ctrlExtViewer*> lclAll;
};

} // namespace kavidex::controls
