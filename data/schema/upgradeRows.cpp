#include "data/schema/upgradeRows.h"

#include <algorithm>
#include <optional>

#include "data/modData.h"
#include "data/transactions.h"
#include "platform/BusyDialog.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data::upgrade {
namespace {

constexpr int rowsTogether = 256;

template <class Work>
auto OrHalt(Work work) {
    try {
        return work();
    } catch (const UpgradeHalted&) {
        throw;
    } catch (const std::exception& error) {
        throw UpgradeHalted(error.what());
    }
}

// The word behind "from".
std::string TableOf(const std::string& statement) {
    const std::size_t start = statement.find(" from ") + 6;
    return statement.substr(start, statement.find(' ', start) - start);
}

bool HasFields(const Recordset& rows, const std::vector<std::string>& fields) {
    return std::all_of(fields.begin(), fields.end(),
                       [&](const std::string& field) { return HasField(rows, field); });
}

bool ChangeRow(const UpgradeContext& context, const std::string& statement, Recordset& row,
               const std::function<bool(Recordset&)>& change) {
    try {
        if (change(row)) row.Update();
        return true;
    } catch (const UpgradeHalted&) {
        throw;
    } catch (const std::exception& error) {
        context.workstation.log.Write("clsUpdateDb", statement + ": " + error.what());
        row.CancelUpdate();
        return false;
    }
}

} // namespace

void InTransaction(const UpgradeContext& context, const std::function<void()>& work) {
    OrHalt([&] {
        std::optional<Transaction> own;
        if (!context.inTransaction) own.emplace(context.connection, context.workstation);
        work();
        if (own) own->Commit();
    });
}

bool HasField(const Recordset& rows, std::string_view name) {
    return std::any_of(rows.Fields().begin(), rows.Fields().end(), [&](const Field& field) {
        return platform::EqualAsciiNoCase(field.name, name);
    });
}

RecordsetPtr RowsOf(const UpgradeContext& context, const std::string& statement,
                    const std::vector<std::string>& fields) {
    std::string failure;
    const auto open = [&](const std::string& text) {
        return OpenRecordset(context.workstation, text, context.connection, CommandType::Text,
                             &failure);
    };
    RecordsetPtr rows = open(statement);
    if (rows->IsOpen()) return HasFields(*rows, fields) ? std::move(rows) : nullptr;
    const std::string table = TableOf(statement), words = failure;
    if (!context.HasTable(table)) return nullptr;
    // A field that the statement names may be the one that is not there.
    const RecordsetPtr empty = open("Select * from " + table + " where 1 = 0");
    if (empty->IsOpen() && !HasFields(*empty, fields)) return nullptr;
    throw UpgradeHalted("The rows of " + table + " cannot be read: " + words);
}

namespace {

// None when there are no such rows, else whether each was kept.
std::optional<bool> Change(const UpgradeContext& context, const std::string& statement,
                           const std::vector<std::string>& fields,
                           const std::function<bool(Recordset&)>& change) {
    return OrHalt([&]() -> std::optional<bool> {
        const RecordsetPtr rows = RowsOf(context, statement, fields);
        if (!rows) return std::nullopt;
        const int total = static_cast<int>(rows->RecordCount());
        bool whole = true;
        for (int done = 0; !rows->Eof();) {
            context.workstation.busy.Progress(done, total);
            context.workstation.busy.PumpMessages();
            InTransaction(context, [&] {
                for (int n = 0; n < rowsTogether && !rows->Eof(); rows->MoveNext(), ++n, ++done)
                    whole = ChangeRow(context, statement, *rows, change) && whole;
            });
        }
        return whole;
    });
}

} // namespace

bool ForEachRow(const UpgradeContext& context, const std::string& statement,
                const std::vector<std::string>& fields,
                const std::function<bool(Recordset&)>& change) {
    return Change(context, statement, fields, change).value_or(false);
}

bool KeepEachRow(const UpgradeContext& context, const std::string& statement,
                 const std::vector<std::string>& fields,
                 const std::function<bool(Recordset&)>& change) {
    const auto kept = Change(context, statement, fields, change);
    if (kept && !*kept)
        throw UpgradeHalted("Rows of " + TableOf(statement) + " could not be changed.");
    return kept.has_value();
}

} // namespace kavidex::data::upgrade
