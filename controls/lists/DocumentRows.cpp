#include "controls/lists/DocumentRows.h"

#include <unordered_map>

#include "controls/pictures/IconKeys.h"
#include "data/modData.h"
#include "model/clsItem.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::size_t rowsAStatement = 200;

// A moment as sixteen digits that compare like the moments do.
std::string SortKey(std::string_view date, std::string_view time) {
    const auto padded = [](std::string_view digits) {
        return digits.size() < 8 ? std::string(8 - digits.size(), '0') + std::string(digits)
                                 : std::string(digits);
    };
    return padded(date) + padded(time);
}

struct Field {
    std::string_view name;
    std::string DocumentRow::*member;
};
constexpr Field fields[] = {
    {"Omschrijving", &DocumentRow::description},   {"Type", &DocumentRow::type},
    {"Toegevoegd door", &DocumentRow::insertedBy}, {"Toegevoegd op", &DocumentRow::insertedOn},
    {"InsertSort", &DocumentRow::sortKey},
};

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

std::vector<DocumentRow> RowsOf(std::span<const std::shared_ptr<model::clsItem>> items) {
    std::vector<DocumentRow> rows;
    for (const auto& item : items) {
        if (item->AllowChildren()) continue;
        DocumentRow row;
        row.id = item->Id();
        row.documentId = item->ItemId();
        row.description = item->Description();
        row.type = item->ItemType();
        rows.push_back(std::move(row));
    }
    return rows;
}

bool ReadInsertion(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
                   std::vector<DocumentRow>& rows) {
    std::unordered_map<std::int32_t, std::vector<DocumentRow*>> byDocument;
    for (auto& row : rows)
        if (row.documentId > 0) byDocument[row.documentId].push_back(&row);
    std::string ids;
    std::size_t count = 0, seen = 0;
    bool whole = true;
    for (const auto& [id, places] : byDocument) {
        ids += (ids.empty() ? "" : ",") + std::to_string(id);
        ++seen;
        if (++count < rowsAStatement && seen < byDocument.size()) continue;
        const auto found = data::OpenRecordset(
            workstation,
            "select DocId, InsertedBy, InsertDate, InsertTime from tblDocument where DocId in (" +
                ids + ")",
            connection);
        whole = whole && found->IsOpen();
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
    return whole;
}

const std::string* DocumentRows::Find(std::size_t row, std::string_view field) const {
    for (const auto& known : fields)
        if (known.name == field) return &(lclRows[row].*known.member);
    return nullptr;
}

std::string DocumentRows::Text(std::size_t row, std::string_view field) const {
    const auto* text = Find(row, field);
    return text ? *text : std::string();
}

void DocumentRows::SortKey(std::size_t row, std::string_view field, std::string& to) const {
    if (const auto* text = Find(row, field)) platform::AppendLowerCase(to, *text);
}

std::string DocumentRows::Picture(std::size_t row) const { return ItemIconKey(lclRows[row].type); }

} // namespace kavidex::controls
