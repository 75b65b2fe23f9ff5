#include "controls/viewer/DocumentPanel.h"

#include <algorithm>
#include <unordered_map>

#include "data/modData.h"
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

constexpr std::string_view missingText = "Document kan niet gevonden worden.";
constexpr std::size_t rowsAStatement = 200;

// A moment as sixteen digits that compare like the moments do.
std::string SortKey(std::string_view date, std::string_view time) {
    const auto padded = [](std::string_view digits) {
        return digits.size() < 8 ? std::string(8 - digits.size(), '0') + std::string(digits)
                                 : std::string(digits);
    };
    return padded(date) + padded(time);
}

// Whether it could not be found out if the file is there.
bool Failed(const model::DocumentFile& file) {
    return file.outcome == model::DocumentLook::ReadFailed ||
           file.outcome == model::DocumentLook::LookFailed;
}

bool IsMissing(const model::DocumentFile& file) { return !file.HasFile() && !Failed(file); }

} // namespace

std::string InsertMoment(std::string_view date, std::string_view time) {
    std::string moment;
    if (date.size() == 8)
        moment = std::string(date.substr(6, 2)) + "-" + std::string(date.substr(4, 2)) + "-" +
                 std::string(date.substr(0, 4));
    if (moment.empty() || time.empty() || time.size() > 4) return moment;
    // Kept as a number: 905 is five past nine.
    const std::string four = std::string(4 - time.size(), '0') + std::string(time);
    return moment + " " + four.substr(0, 2) + ":" + four.substr(2);
}

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
    : lclWorkstation(workstation) {}

DocumentPanel::~DocumentPanel() = default;

void DocumentPanel::SetTranslate(std::shared_ptr<Translator> translator) {
    lclTranslator = std::move(translator);
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

void DocumentPanel::SetColWidth(std::int32_t width) {
    lclColWidth = std::max<std::int32_t>(width, 0);
    if (lclWindow) lclWindow->AppearanceChanged();
}

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

void DocumentPanel::ShowNothing() {
    lclContent = PanelContent::Nothing;
    lclItem.reset();
    lclDocuments.clear();
    lclFacts = {};
    ContentChanged();
}

void DocumentPanel::ShowList(const ItemPtr& folder) {
    if (!folder) return ShowNothing();
    lclContent = PanelContent::Folder;
    lclItem = folder;
    lclFacts = {};
    lclDocuments.clear();
    if (const auto children = folder->ChildCollection())
        for (const auto& child : children->Items())
            if (!child->AllowChildren()) {
                DocumentRow row;
                row.id = child->Id();
                row.documentId = child->ItemId();
                row.description = child->Description();
                row.type = child->ItemType();
                lclDocuments.push_back(std::move(row));
            }
    ReadRows(lclDocuments);
    Sort();
    ContentChanged();
}

void DocumentPanel::ShowItem(const ItemPtr& document) {
    if (!document) return ShowNothing();
    lclContent = PanelContent::Document;
    lclItem = document;
    lclDocuments.clear();
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

void DocumentPanel::ReadRows(std::vector<DocumentRow>& rows) const {
    std::unordered_map<std::int32_t, std::vector<DocumentRow*>> byDocument;
    for (auto& row : rows)
        if (row.documentId > 0) byDocument[row.documentId].push_back(&row);
    std::string ids;
    std::size_t count = 0, seen = 0;
    for (const auto& [id, places] : byDocument) {
        ids += (ids.empty() ? "" : ",") + std::to_string(id);
        ++seen;
        if (++count < rowsAStatement && seen < byDocument.size()) continue;
        const auto found = data::OpenRecordset(
            lclWorkstation,
            "select DocId, InsertedBy, InsertDate, InsertTime from tblDocument where DocId in (" +
                ids + ")",
            lclConnection);
        for (; found->IsOpen() && !found->Eof(); found->MoveNext()) {
            const auto known = byDocument.find(data::ToInt32(found->Get("DocId")));
            if (known == byDocument.end()) continue;
            const auto date = platform::Trim(data::ToText(found->Get("InsertDate")));
            const auto time = platform::Trim(data::ToText(found->Get("InsertTime")));
            for (auto* row : known->second) {
                row->insertedBy = platform::Trim(data::ToText(found->Get("InsertedBy")));
                row->insertedOn = InsertMoment(date, time);
                row->sortKey = SortKey(date, time);
            }
        }
        ids.clear();
        count = 0;
    }
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
    row.sortKey = SortKey(file.insertDate, file.insertTime);
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

std::string DocumentPanel::ColumnTitle(PanelColumn column) const {
    constexpr std::string_view titles[] = {"Omschrijving", "Type", "Toegevoegd door",
                                           "Toegevoegd op"};
    std::string title = Text(titles[static_cast<std::size_t>(column)]);
    if (lclSortColumn == column) title += " " + Text(lclDescending ? "(aflopend)" : "(oplopend)");
    return title;
}

void DocumentPanel::SortBy(PanelColumn column) {
    lclDescending = lclSortColumn == column && !lclDescending;
    lclSortColumn = column;
    Sort();
    ContentChanged();
}

void DocumentPanel::Sort() {
    if (!lclSortColumn) return;
    const auto less = [&](const DocumentRow& a, const DocumentRow& b) {
        switch (*lclSortColumn) {
        case PanelColumn::Type: return platform::CompareNoCase(a.type, b.type) < 0;
        case PanelColumn::InsertedBy:
            return platform::CompareNoCase(a.insertedBy, b.insertedBy) < 0;
        case PanelColumn::InsertedOn: return a.sortKey < b.sortKey;
        default: return platform::CompareNoCase(a.description, b.description) < 0;
        }
    };
    std::stable_sort(lclDocuments.begin(), lclDocuments.end(),
                     [&](const DocumentRow& a, const DocumentRow& b) {
                         return lclDescending ? less(b, a) : less(a, b);
                     });
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

void DocumentPanel::RowActivated(std::size_t row) {
    if (lclContent == PanelContent::Folder && row < lclDocuments.size())
        DocumentChosen.Raise(lclDocuments[row].id);
}

} // namespace kavidex::controls
