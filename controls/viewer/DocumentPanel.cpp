#include "controls/viewer/DocumentPanel.h"

#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr ListColumn columns[] = {
    {.caption = "Omschrijving", .field = "Omschrijving"},
    {.caption = "Type", .field = "Type", .width = 110},
    {.caption = "Toegevoegd door", .field = "Toegevoegd door", .width = 170},
    {.caption = "Toegevoegd op", .field = "Toegevoegd op", .sortField = "InsertSort", .width = 165},
};

constexpr std::string_view missingText = "Document kan niet gevonden worden.";

// Whether it could not be found out if the file is there.
bool Failed(const model::DocumentFile& file) {
    return file.outcome == model::DocumentLook::ReadFailed ||
           file.outcome == model::DocumentLook::LookFailed;
}

bool IsMissing(const model::DocumentFile& file) { return !file.HasFile() && !Failed(file); }

} // namespace

std::string SizeText(std::uint64_t bytes) {
    if (bytes < 1024) return std::to_string(bytes) + " bytes";
    constexpr std::string_view units[] = {"kB", "MB", "GB", "TB"};
    std::size_t unit = 0;
    std::uint64_t whole = 1024;
    while (unit + 1 < std::size(units) && bytes / whole >= 1024) {
        whole *= 1024;
        ++unit;
    }
    const std::uint64_t tenths = bytes / whole * 10 + bytes % whole * 10 / whole;
    return std::to_string(tenths / 10) + "," + std::to_string(tenths % 10) + " " +
           std::string(units[unit]);
}

DocumentPanel::DocumentPanel(const platform::Workstation& workstation)
    : lclWorkstation(workstation), lclList(columns),
      lclActivated(lclList.Activated.Subscribe([this](std::int32_t id) {
          if (lclContent == PanelContent::Folder) DocumentChosen.Raise(id);
      })) {}

DocumentPanel::~DocumentPanel() = default;

void DocumentPanel::SetTranslate(std::shared_ptr<Translator> translator) {
    lclTranslator = std::move(translator);
    lclList.SetTranslation(TranslationBy(lclTranslator));
    ContentChanged();
}

void DocumentPanel::SetAppearance(std::int32_t back, std::int32_t fore, bool enabled,
                                  std::optional<FontFace> font) {
    lclBackColor = back;
    lclForeColor = fore;
    lclEnabled = enabled;
    lclFont = std::move(font);
    if (lclWindow) lclWindow->AppearanceChanged();
}

void DocumentPanel::SetColWidth(std::int32_t width) { lclList.SetWidth(0, width); }

void DocumentPanel::AttachWindow(PanelWindow* window) {
    lclWindow = window;
    if (!window) return;
    window->AppearanceChanged();
    window->ContentChanged();
}

void DocumentPanel::ContentChanged() {
    if (lclWindow) lclWindow->ContentChanged();
}

std::string DocumentPanel::Text(std::string_view text,
                                const std::vector<std::string>& values) const {
    return lclTranslator ? lclTranslator->Translate(text, values)
                         : platform::FillPlaceholders(text, values);
}

std::string DocumentPanel::Caption() const {
    if (lclContent == PanelContent::Nothing || !lclItem) return {};
    if (lclContent == PanelContent::Folder)
        return Text("Inhoud van map '$%$'", {lclItem->Description()});
    return lclFacts.row.description;
}

std::string DocumentPanel::NothingSelected() const {
    return Text("Selecteer het document dat u getoond wilt hebben.");
}

void DocumentPanel::ClearDocuments() {
    lclDocuments.clear();
    lclList.SetRows(nullptr);
}

void DocumentPanel::ShowNothing() {
    lclContent = PanelContent::Nothing;
    lclItem.reset();
    ClearDocuments();
    lclFacts = {};
    ContentChanged();
}

void DocumentPanel::ShowList(const ItemPtr& folder) {
    if (!folder) return ShowNothing();
    lclContent = PanelContent::Folder;
    lclItem = folder;
    lclFacts = {};
    const auto children = folder->ChildCollection();
    lclDocuments = children ? RowsOf(children->Items()) : std::vector<DocumentRow>();
    ReadInsertion(lclWorkstation, lclConnection, lclDocuments);
    lclList.SetRows(std::make_unique<DocumentRows>(lclDocuments));
    ContentChanged();
}

void DocumentPanel::ShowItem(const ItemPtr& document) {
    if (!document) return ShowNothing();
    lclContent = PanelContent::Document;
    lclItem = document;
    ClearDocuments();
    const auto file = ReadFacts();
    ContentChanged();
    if (lclWindow && (lclFacts.missing || Failed(file))) TellUnusable(file, "ShowItem");
}

void DocumentPanel::Refresh() {
    const auto item = lclItem;
    if (lclContent == PanelContent::Folder) ShowList(item);
    if (lclContent != PanelContent::Document) return;
    ReadFacts();
    ContentChanged();
}

model::DocumentFile DocumentPanel::FileOf(const ItemPtr& document) const {
    if (!document || !lclConnection) return {};
    return model::FindDocumentFile(lclWorkstation, lclConnection, *document);
}

model::DocumentFile DocumentPanel::ReadFacts() {
    auto file = FileOf(lclItem);
    lclFacts = {};
    auto& row = lclFacts.row;
    row.id = lclItem->Id();
    row.documentId = lclItem->ItemId();
    row.description = lclItem->Description();
    row.type = lclItem->ItemType();
    row.insertedBy = file.insertedBy;
    row.insertedOn = InsertMoment(file.insertDate, file.insertTime);
    lclFacts.path = file.path;
    // A note has no file until something is written in it.
    lclFacts.missing = IsMissing(file) && !platform::EqualNoCase(platform::Trim(row.type), "nnt");
    try {
        if (file.HasFile()) lclFacts.size = SizeText(lclWorkstation.files.Size(file.path));
    } catch (const platform::Error& error) {
        lclWorkstation.log.Write("ReadFacts", error.what());
    }
    return file;
}

void DocumentPanel::TellUnusable(const model::DocumentFile& file, std::string_view routine) const {
    if (Failed(file)) return TellError(file.number, file.error, routine);
    lclWorkstation.messages.Show({Text(missingText), Text("Melding viewer"), platform::Buttons::Ok,
                                  platform::Icon::Critical});
}

void DocumentPanel::TellError(std::int32_t number, std::string_view words,
                              std::string_view routine) const {
    lclWorkstation.messages.Show(
        {std::to_string(platform::ShownNumber(number)) + " " + std::string(words),
         Text("Error in $%$", {std::string(routine)}), platform::Buttons::Ok,
         platform::Icon::Critical});
}

void DocumentPanel::OpenDefault() {
    if (CanOpen()) OpenDefault(lclItem);
}

bool DocumentPanel::OpenDefault(const ItemPtr& document) {
    const auto file = FileOf(document);
    if (!file.HasFile()) {
        TellUnusable(file, "OpenDefault");
        return false;
    }
    try {
        lclWorkstation.shell.OpenDefault(file.path);
        return true;
    } catch (const platform::Error& error) {
        TellError(error.Number(), error.what(), "OpenDefault");
        return false;
    }
}

} // namespace kavidex::controls
