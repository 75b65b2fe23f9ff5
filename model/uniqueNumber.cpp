#include "model/uniqueNumber.h"

#include <optional>
#include <string>

#include "data/Error.h"
#include "data/modData.h"
#include "model/Store.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

constexpr std::string_view section = "Unique", key = "Number";
constexpr int attempts = 100; // others may be as quick

std::string ValueColumn(const data::ConnectionPtr& connection) {
    return data::IsAccessConnection(connection) ? "[Value]" : "Value";
}

// The highest there is, with its row's text: where two users began at once there are two rows.
struct Highest {
    bool found = false;
    std::int64_t number = 0;
    data::Value text;
    std::int64_t position = 0; // among the rows
};

data::RecordsetPtr ReadRows(const Store& store, const std::string& where) {
    return store.Read("Select * from tblSettings where " + where);
}

Highest HighestOf(data::Recordset& rows) {
    Highest highest;
    for (std::int64_t position = 1; !rows.Eof(); rows.MoveNext(), ++position) {
        const data::Value& text = rows.Get("Value");
        const auto number = static_cast<std::int64_t>(platform::Val(data::ToText(text)));
        if (highest.found && number <= highest.number) continue;
        highest = {true, number, text, position};
    }
    return highest;
}

bool IsDoubled(data::Recordset& rows, std::int64_t number) {
    int bearing = 0;
    for (; !rows.Eof(); rows.MoveNext())
        bearing +=
            static_cast<std::int64_t>(platform::Val(data::ToText(rows.Get("Value")))) == number;
    return bearing > 1;
}

// Where the engine does not tell whether a statement touched a row: a recordset refuses to write
// one that is not as it was read. None when another was quicker.
std::optional<std::int64_t> RaiseByRow(const Store& store, const std::string& where) {
    const auto rows = ReadRows(store, where);
    const auto highest = HighestOf(*rows);
    if (!highest.found) return std::nullopt;
    rows->SetAbsolutePosition(highest.position);
    rows->Set("Value", Number(highest.number + 1));
    try {
        rows->Update();
        return highest.number + 1;
    } catch (const data::Error& error) {
        rows->CancelUpdate();
        if (error.Number() == data::errors::rowChanged) return std::nullopt;
        throw;
    }
}

std::string Unchanged(const std::string& column, const data::Value& text) {
    if (data::IsNull(text)) return column + " is null";
    const std::string words = data::ToText(text);
    return column + " = " + (words.empty() ? "''" : data::SqlValue(words));
}

} // namespace

std::int64_t RaiseUniqueNumber(const data::ConnectionPtr& connection) {
    const Store store(connection);
    const std::string where =
        "Section = " + data::SqlValue(section) + " and sKey = " + data::SqlValue(key);
    const std::string column = ValueColumn(connection);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto highest = HighestOf(*ReadRows(store, where));
        if (!highest.found) {
            // Never a setting that is set: that would take a number back that another has raised.
            store.Write("Insert into tblSettings (Section,sKey," + column + ") Values (" +
                        data::SqlValue(section) + "," + data::SqlValue(key) + ",'0')");
            continue;
        }
        const auto next = highest.number + 1;
        const auto touched = connection->Execute("update tblSettings set " + column + " = " +
                                                 data::SqlValue(Number(next)) + " where " + where +
                                                 " and " + Unchanged(column, highest.text));
        // A row that another began late may have been raised beside the one that was read.
        if (touched > 1 ||
            (touched == 1 && (highest.number > 0 || !IsDoubled(*ReadRows(store, where), next))))
            return next;
        if (touched < 0)
            if (const auto raised = RaiseByRow(store, where)) return *raised;
    }
    throw data::Error(data::errors::badEof, "The number of the letter could not be raised.",
                      "Kavidex");
}

} // namespace kavidex::model
