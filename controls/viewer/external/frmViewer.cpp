#include "controls/viewer/external/frmViewer.h"

#include <utility>

#include "controls/common/Commands.h"
#include "model/clsItem.h"
#include "platform/General.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view section = "ViewerSetting", alwaysExternal = "AlwaysExternal";

} // namespace

struct frmViewer::MenuContext {
    frmViewer& form;

    static const Commands<MenuContext>& Table();
};

const Commands<frmViewer::MenuContext>& frmViewer::MenuContext::Table() {
    using Context = MenuContext;
    using Id = CommandId;
    static constexpr Command<Context> rows[] = {
        {.name = "mnuOptions", .caption = "Opties", .kind = CommandKind::Owner},
        {.name = "mnuAllwaysExternal",
         .caption = "Altijd in nieuw venster tonen",
         .kind = CommandKind::Toggle,
         .depth = 1,
         .rule = [](const Context& context, const Id&) -> CommandState {
             return {.checked = context.form.lclAlwaysExternal};
         },
         .action =
             [](Context& context, const Id&) {
                 bool& ticked = context.form.lclAlwaysExternal;
                 ticked = !ticked;
                 platform::SaveRegFlag(context.form.lclWorkstation, section, alwaysExternal,
                                       ticked);
             }},
        {.name = "mnuSaveScreen",
         .caption = "Schermpositie opslaan",
         .depth = 1,
         .action =
             [](Context& context, const Id&) {
                 const auto& owner = context.form;
                 if (owner.lclWindow)
                     SaveViewerPlace(owner.lclWorkstation, owner.lclWindow->Place());
             }},
    };
    static constexpr Commands<Context> table{std::span<const Command<Context>>(rows)};
    return table;
}

frmViewer::frmViewer(const platform::Workstation& workstation)
    : lclWorkstation(workstation), lclViewer(workstation) {
    const auto keep = [&](std::shared_ptr<void> token) {
        lclSubscriptions.push_back(std::move(token));
    };
    auto& viewer = lclViewer;
    keep(viewer.EvOpenDossier.Subscribe([this](const std::string& key, const std::string& type) {
        EvOpenDossier.Raise(key, type);
    }));
    keep(viewer.ExportPages.Subscribe(
        [this](const std::string& file, const std::vector<std::int32_t>& pages, bool& done) {
            EvExportPages.Raise(file, pages, done);
        }));
    keep(viewer.ExternalViewerOpened.Subscribe([this] { ExternalViewerOpened.Raise(); }));
    keep(viewer.NextDocumentRequest.Subscribe([this] { EvNextDocumentRequest.Raise(); }));
    keep(viewer.PreviousDocumentRequest.Subscribe([this] { EvPreviousDocumentRequest.Raise(); }));
    keep(viewer.Shown.Subscribe([this] { ShownChanged(); }));
}

frmViewer::~frmViewer() = default;

void frmViewer::SetTranslate(std::shared_ptr<Translator> translator) {
    lclViewer.SetTranslate(std::move(translator));
    if (lclWindow) lclWindow->CaptionChanged();
}

void frmViewer::SetDbConnection(data::ConnectionPtr connection) {
    lclViewer.SetDbConnection(std::move(connection));
}

void frmViewer::Open(const ViewerFormMaker& maker) {
    lclAlwaysExternal = platform::GetRegFlag(lclWorkstation, section, alwaysExternal);
    if (!lclWindow && maker) lclWindow = maker(*this);
    if (lclWindow) lclWindow->Show();
    lclViewer.ExternalViewerOpened.Raise();
}

bool frmViewer::ShowItem(const ItemPtr& item) {
    lclCloseDue = false;
    return lclViewer.ShowItem(item);
}

void frmViewer::ShownChanged() {
    if (lclWindow) lclWindow->CaptionChanged();
    if (!lclCloseDue || lclViewer.Waits()) return;
    if (lclViewer.Item())
        lclCloseDue = false; // it could not be left
    else if (lclWindow)
        lclWindow->CloseWhenDue();
    else
        CloseIfDue();
}

std::int32_t frmViewer::Id() const { return lclViewer.Item() ? lclViewer.Item()->Id() : 0; }

std::string frmViewer::Caption() const {
    const std::string description = lclViewer.Item() ? lclViewer.Item()->Description() : "";
    const auto& translator = Translate();
    return translator ? translator->Translate("Document: $%$", {description})
                      : platform::FillPlaceholders("Document: $%$", {description});
}

ViewerPlace frmViewer::StartPlace(std::span<const ScreenArea> monitors) const {
    return OnScreen(ReadViewerPlace(lclWorkstation), monitors);
}

PopupMenu frmViewer::Menu() {
    return VisibleEntries(MenuContext::Table().Menu({*this}, TranslationBy(Translate())));
}

void frmViewer::MenuChosen(const MenuEntry& entry) {
    MenuContext context{*this};
    MenuContext::Table().Run(context, {entry.name, entry.index});
    if (lclWindow) lclWindow->CaptionChanged();
}

bool frmViewer::MayClose() {
    lclCloseDue = false;
    const bool left = lclViewer.CloseImage();
    lclCloseDue = !left && lclViewer.Waits();
    return left;
}

void frmViewer::CloseIfDue() {
    if (!std::exchange(lclCloseDue, false)) return;
    if (lclWindow)
        lclWindow->Close();
    else
        Closed();
}

void frmViewer::Closed() {
    const auto alive = weak_from_this().lock();
    EvUnload.Raise();
}

} // namespace kavidex::controls
