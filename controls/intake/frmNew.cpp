#include "controls/intake/frmNew.h"

#include <algorithm>
#include <exception>

#include "controls/pictures/IconKeys.h"
#include "data/clsSettings.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::Column;
using forms::FieldRow;
using forms::Kind;
using forms::ListMode;
using forms::What;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr std::string_view tabs = "TabStrip1";
constexpr std::int32_t kindsPage = 1, templatesPage = 2, rootId = 1;

constexpr unsigned atBottom = anchor::leftBottom | anchor::right;
constexpr std::string_view usualType = "DossierMap";

constexpr Column fileColumns[] = {{"Naam", 100}, {"Type", 0}};

constexpr FieldRow fields[] = {
    {"TabStrip1", Kind::Tabs, {6, 6, 328, 176}, "Nieuw;Sjablonen", anchor::all},
    {"lstKinds",
     Kind::List,
     {14, 26, 312, 148},
     "Soort item",
     anchor::all,
     style::noHeader,
     tabs,
     kindsPage},
    {"treMap",
     Kind::Tree,
     {14, 26, 112, 112},
     "Sjablonenmappen",
     anchor::tall,
     0,
     tabs,
     templatesPage},
    {"lblProblem",
     Kind::Label,
     {132, 28, 194, 60},
     "",
     anchor::wide,
     style::hidden,
     tabs,
     templatesPage},
    {"lstFiles",
     Kind::List,
     {132, 26, 194, 112},
     "Sjablonen",
     anchor::all,
     style::sorts,
     tabs,
     templatesPage,
     fileColumns},
    {"lblName",
     Kind::Label,
     {14, 147, 40, 10},
     "Naam:",
     anchor::leftBottom,
     0,
     tabs,
     templatesPage},
    {"txtName", Kind::Edit, {56, 144, 270, 14}, "", atBottom, 0, tabs, templatesPage},
    {"chkOpen",
     Kind::Check,
     {56, 162, 270, 10},
     "Brief openen nadat hij gemaakt is",
     atBottom,
     0,
     tabs,
     templatesPage},
    {"optIcons", Kind::Option, {8, 190, 72, 10}, "Pictogrammen", anchor::leftBottom, style::group},
    {"optList", Kind::Option, {82, 190, 44, 10}, "Lijst", anchor::leftBottom},
    {"btnFile", Kind::Button, {136, 188, 58, 14}, "Bestand...", anchor::rightBottom},
    {"btnOk", Kind::Button, {214, 188, 56, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel",
     Kind::Button,
     {278, 188, 56, 14},
     "Annuleren",
     anchor::rightBottom,
     style::isCancel},
};

constexpr forms::Layout layout = {"frmNew", "Nieuw", 340, 208, true, fields};

} // namespace

bool frmNew::IsTemplate(std::string_view fileName) {
    constexpr std::string_view extensions[] = {"doc", "dot", "docx", "dotx", "docm", "dotm"};
    const auto extension = platform::LowerCase(platform::Extension(fileName));
    return std::find(std::begin(extensions), std::end(extensions), extension) !=
           std::end(extensions);
}

frmNew::frmNew(const platform::Workstation& workstation, std::shared_ptr<Translator> translator)
    : lclWorkstation(workstation), lclForm(layout, workstation, std::move(translator)) {
    const auto accept = [this](forms::FieldEvent&) { Accept(); };
    const auto allow = [this](forms::FieldEvent&) { AllowOk(); };
    lclForm.On("btnOk", What::Clicked, accept);
    lclForm.On("lstKinds", What::Activated, accept);
    lclForm.On("lstFiles", What::Activated, accept);
    lclForm.On("lstKinds", What::Changed, allow);
    lclForm.On("lstFiles", What::Changed, allow);
    lclForm.On("TabStrip1", What::Changed, allow);
    lclForm.On("treMap", What::Changed, [this](forms::FieldEvent&) { ShowFiles(); });
    lclForm.On("treMap", What::Expanding, [this](forms::FieldEvent& event) { Open(event.item); });
    lclForm.On("treMap", What::Collapsed,
               [this](forms::FieldEvent& event) { ShowImage(event.item, false); });
    lclForm.On("optIcons", What::Changed, [this](auto&) { ShowAs(ListMode::Icons); });
    lclForm.On("optList", What::Changed, [this](auto&) { ShowAs(ListMode::Rows); });
    lclForm.On("btnFile", What::Clicked, [this](auto&) {
        lclWantsFiles = true;
        lclForm.Close(true);
    });
}

bool frmNew::Show(forms::FormPresenter& presenter) {
    lclForm.Guarded([this] { Fill(); });
    return presenter.ShowModal(lclForm);
}

// --- Filling ------------------------------------------------------------------------------------

void frmNew::Fill() {
    std::vector<forms::Item> items;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        if (!kinds[i].allowed) continue;
        forms::Item item;
        item.id = static_cast<std::int32_t>(i) + 1;
        item.texts = {kinds[i].name};
        item.icon = ItemIconKey(kinds[i].type);
        items.push_back(std::move(item));
    }
    const auto first = items.empty() ? 0 : items.front().id;
    lclForm["lstKinds"].SetItems(std::move(items));
    lclForm["lstKinds"].Select(first);
    lclForm["btnFile"].SetEnabled(mayAddFiles);
    lclForm["txtName"].SetEnabled(ChangeName && mayMakeLetters);
    lclForm["chkOpen"].SetEnabled(mayMakeLetters);
    lclForm["chkOpen"].SetChecked(OpenFile);
    lclForm["optIcons"].SetChecked(true);
    ShowAs(ListMode::Icons);
    FillTree();
    AllowOk();
}

std::string frmNew::TemplateRoot() const {
    std::string root = platform::Trim(TempPath);
    if (root.empty() && Settings) Settings->GetSetting("Template", "Path", root);
    // A type may have templates of its own.
    const auto own = platform::JoinPath(root, TypeName());
    const bool typed = !root.empty() && platform::IsFileName(TypeName()) &&
                       lclWorkstation.files.DirectoryExists(own);
    return typed ? own : root;
}

std::string frmNew::TypeName() const {
    const auto type = platform::Trim(DossierType);
    return type.empty() ? std::string(usualType) : type;
}

void frmNew::FillTree() {
    lclFolders.clear();
    lclCounter = 0;
    lclForm["treMap"].SetItems({});
    if (!mayMakeLetters)
        return ShowProblem(lclForm.Text("U heeft geen bevoegdheid om brieven te maken"));
    const auto root = TemplateRoot();
    if (root.empty()) return ShowProblem(lclForm.Text("De sjablonenmap is niet ingesteld"));
    if (!lclWorkstation.files.DirectoryExists(root))
        return ShowProblem(lclForm.Text("De sjablonenmap '$%$' is niet gevonden", {root}));
    AddFolder(0, root, TypeName());
    lclForm["treMap"].Select(rootId);
    lclForm.ItemExpanded(lclForm["treMap"], rootId, true);
    // Where the dossier's status has a folder of its own, one begins there.
    for (const auto& item : lclForm["treMap"].Items())
        if (item.parent == rootId &&
            platform::EqualNoCase(item.Cell(), platform::Trim(DossierStatus))) {
            lclForm["treMap"].Select(item.id);
            break;
        }
    ShowFiles();
}

void frmNew::AddFolder(std::int32_t parent, const std::string& path, const std::string& name) {
    forms::Item item;
    item.id = ++lclCounter;
    item.parent = parent;
    item.texts = {name};
    item.icon = "Close";
    item.children = true; // until it is opened
    lclFolders[item.id] = {path};
    lclForm["treMap"].AddItem(std::move(item));
}

// Its subfolders are read when it opens for the first time.
void frmNew::Open(std::int32_t id) {
    auto& folder = lclFolders.at(id);
    ShowImage(id, true);
    if (folder.read) return;
    folder.read = true;
    const auto path = folder.path;
    try {
        auto names = lclWorkstation.files.List(path, "*", true);
        std::erase_if(names, [&](const std::string& name) {
            return !lclWorkstation.files.DirectoryExists(platform::JoinPath(path, name));
        });
        for (const auto& name : names) AddFolder(id, platform::JoinPath(path, name), name);
        if (lclForm["lblProblem"].Visible() && lclForm["treMap"].Selected() == id) ShowFiles();
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("frmNew", error.what());
        lclFolders.at(id).read = false; // opened again it is tried again
        ShowImage(id, false);
        lclForm["treMap"].Select(id);
        ShowProblem(lclForm.Text("De map '$%$' kan niet gelezen worden", {path}));
    }
}

void frmNew::ShowImage(std::int32_t id, bool open) {
    const auto* known = lclForm["treMap"].Find(id);
    if (!known) return;
    auto item = *known;
    item.icon = open ? "Open" : "Close";
    item.expanded = open;
    lclForm["treMap"].ChangeItem(std::move(item));
}

void frmNew::ShowFiles() {
    const auto folder = lclFolders.find(lclForm["treMap"].Selected());
    lclFiles.clear();
    std::vector<forms::Item> items;
    if (folder != lclFolders.end()) try {
            for (const auto& name : lclWorkstation.files.List(folder->second.path, "*")) {
                // What a word processor puts beside a document that it has open is none.
                if (!IsTemplate(name) || name.starts_with("~$")) continue;
                lclFiles.push_back(name);
                const auto extension = platform::Extension(name);
                forms::Item item;
                item.id = static_cast<std::int32_t>(lclFiles.size());
                item.texts = {name, lclWorkstation.shell.TypeDescription(extension)};
                item.icon = FileIconKey(extension);
                items.push_back(std::move(item));
            }
        } catch (const std::exception& error) {
            lclWorkstation.log.Write("frmNew", error.what());
            return ShowProblem(
                lclForm.Text("De map '$%$' kan niet gelezen worden", {folder->second.path}));
        }
    lclForm["lblProblem"].SetVisible(false);
    lclForm["lstFiles"].SetVisible(true);
    lclForm["lstFiles"].SetItems(std::move(items));
    AllowOk();
}

// In the list's place.
void frmNew::ShowProblem(const std::string& words) {
    lclFiles.clear();
    lclForm["lstFiles"].SetItems({});
    lclForm["lstFiles"].SetVisible(false);
    lclForm["lblProblem"].SetText(words);
    lclForm["lblProblem"].SetVisible(true);
    AllowOk();
}

void frmNew::ShowAs(ListMode mode) {
    lclForm["lstKinds"].SetMode(mode);
    lclForm["lstFiles"].SetMode(mode);
}

// --- Choosing -----------------------------------------------------------------------------------

void frmNew::AllowOk() {
    const bool made = lclForm["TabStrip1"].Selected() != templatesPage;
    lclForm["btnOk"].SetEnabled(lclForm[made ? "lstKinds" : "lstFiles"].Selected() != 0);
}

void frmNew::Accept() {
    if (lclForm["TabStrip1"].Selected() != templatesPage) {
        lclKind = lclForm["lstKinds"].Selected() - 1;
        if (lclKind < 0) return;
    } else {
        const auto file = static_cast<std::size_t>(lclForm["lstFiles"].Selected());
        const auto folder = lclFolders.find(lclForm["treMap"].Selected());
        if (file == 0 || file > lclFiles.size() || folder == lclFolders.end()) return;
        lclFolder = folder->second.path;
        lclFile = platform::JoinPath(lclFolder, lclFiles[file - 1]);
        lclName = platform::Trim(lclForm["txtName"].Text());
        OpenFile = lclForm["chkOpen"].Checked();
    }
    lclForm.Close(true);
}

} // namespace kavidex::controls
