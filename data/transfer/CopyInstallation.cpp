#include "data/transfer/CopyInstallation.h"

#include <algorithm>
#include <optional>

#include "data/Error.h"
#include "data/clsSettings.h"
#include "data/modData.h"
#include "data/schema/clsUpdateDb.h"
#include "data/schema/modDataBase.h"
#include "data/transactions.h"
#include "data/transfer/TableRows.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data::transfer {

namespace {

// What the target's row says of the copy: its tables are being made, or hold nothing but what is
// copied, or are proved and belong to whoever uses them.
constexpr std::string_view making = "making", copying = "copying", proved = "proved";

// Until all is proved the target has for its version what no upgrade knows: a host that opens it by
// mistake changes nothing.
constexpr std::string_view settingsTable = "tblSettings", guard = "copying";
constexpr const char* everyRow = "1 = 1";
const std::string whereVersion = " where Section = 'Build' and SKey = 'DbVersion'";

schema::Table TransferTable() {
    using enum schema::ColumnType;
    return {transferTable, "Id", "IdConstTransfer", {{"Source", Text255}, {"Phase", Text50}}};
}

// The source's name in letters that every code page holds, its end where it is long.
std::string PlainName(const ConnectionPtr& connection) {
    std::string name = platform::Trim(connection->DefaultDatabase());
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c < ' ' || c == '\'' || c == '\\'; }, '/');
    constexpr std::size_t most = 200;
    return name.size() > most ? name.substr(name.size() - most) : name;
}

[[noreturn]] void Refuse(const std::string& text) {
    throw Error(errors::unspecified, text, "CopyInstallation");
}

std::string Listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
    return list;
}

class Copy {
public:
    Copy(const platform::Workstation& workstation, const ConnectionPtr& from,
         const ConnectionPtr& to, const CopyOptions& options)
        : lclWorkstation(workstation), lclOptions(options), lclFrom(from), lclTo(to),
          lclSource(PlainName(from)) {}

    CopyResult Run() {
        CheckSource();
        PrepareTarget();
        ReadShapes();
        std::string differs;
        for (int attempt = 0; attempt < 2; ++attempt) { // the source may change meanwhile
            GuardVersion();
            for (const RowShape& shape : lclShapes) CopyTable(shape);
            differs = Prove();
            if (differs.empty()) break;
        }
        if (!differs.empty())
            Refuse("The copy differs from its source, which was changed meanwhile, or holds what "
                   "the target cannot: " +
                   differs + ". Copy again when nobody works with the source.");
        for (const RowShape& shape : lclShapes) RaiseCounter(shape);
        Release();
        lclResult.foreign = lclFrom.Foreign();
        return std::move(lclResult);
    }

private:
    void CheckSource() const {
        if (lclFrom.HasTransferTable()) Refuse("The source is itself a copy that is not finished.");
        if (lclFrom.Version() != currentVersion)
            Refuse("The source has version \"" + lclFrom.Version() +
                   "\": bring it to the current version first (upgrade).");
    }

    // --- The target -----------------------------------------------------------------------------

    void PrepareTarget() {
        const std::string phase = ReadPhase();
        lclResult.resumed = !phase.empty();
        if (phase == copying) return;
        if (phase == proved) {
            DropTransfer();
            Refuse("This copy was finished before: nothing is left to do.");
        }
        // Also of one that was broken off while it was being made: it may have been taken into use.
        if (const auto filled = lclTo.Filled(); !filled.empty())
            Refuse("The target is not empty: " + Listed(filled));
        if (phase == making) {
            DropBase();
            MakeBase();
        } else if (lclTo.Tables().empty()) {
            WritePhase(making);
            MakeBase();
        }
        Upgrade();
        if (!lclTo.HasTransferTable()) WritePhase(making);
        RefuseItself();
        InTransaction([&] {
            SetPhase(copying);
            for (const InstalledTable& table : lclTo.Tables())
                lclTo.Connection()->Execute("Delete from " + std::string(table.name));
            lclTo.Connection()->Execute(
                "Insert into tblSettings (Section, SKey, " + lclTo.Quoted("Value") +
                ") values ('Build', 'DbVersion', '" + std::string(guard) + "')");
        });
    }

    void SetPhase(std::string_view phase) {
        lclTo.Connection()->Execute("update tblTransfer set Phase = '" + std::string(phase) + "'");
    }
    void DropTransfer() { lclTo.Connection()->Execute("DROP TABLE " + std::string(transferTable)); }

    // Empty: no copy is under way.
    std::string ReadPhase() {
        if (!lclTo.HasTransferTable()) return {};
        const RecordsetPtr row = lclTo.Connection()->Open({"Select * from tblTransfer"});
        if (row->Eof()) { // killed right after the table was made
            row->Close();
            DropTransfer();
            lclTo.Refresh();
            return {};
        }
        const std::string source = platform::Trim(ToText(row->Get("Source")));
        if (!platform::EqualNoCase(source, lclSource))
            Refuse("The target holds an unfinished copy of another database: " + source);
        return platform::Trim(ToText(row->Get("Phase")));
    }

    void WritePhase(std::string_view phase) {
        lclTo.Connection()->Execute(schema::CreateTable(TransferTable(), lclTo.Speaks()));
        lclTo.Connection()->Execute("Insert into tblTransfer (Source, Phase) values ('" +
                                    lclSource + "', '" + std::string(phase) + "')");
        lclTo.Refresh();
    }

    // Two names may lead to one database.
    void RefuseItself() {
        lclFrom.Refresh();
        if (!lclFrom.HasTransferTable()) return;
        DropTransfer();
        Refuse("Source and target are the same database.");
    }

    // What a process made that was killed before it was through.
    void DropBase() {
        Connection& connection = *lclTo.Connection();
        for (const InstalledTable& table : lclTo.Tables())
            connection.Execute("DROP TABLE " + std::string(table.name));
        if (lclTo.Speaks() != schema::Dialect::SqlServer) return;
        for (const std::string& create : schema::CreateProcedures()) {
            const std::string name = platform::Split(create, ' ')[2];
            connection.Execute("if object_id('" + name + "') is not null drop procedure " + name);
        }
    }

    void MakeBase() {
        clsSettings settings(lclWorkstation);
        settings.SetDbConnection(lclTo.Connection());
        CreateBaseSchema(lclTo.Connection(), settings, lclTo.Speaks(), [](std::string_view) {});
        lclTo.Refresh();
    }

    void Upgrade() {
        clsUpdateDb upgrade(lclWorkstation, lclOptions.translation);
        upgrade.SetDbConnection(lclTo.Connection());
        upgrade.fncUpdateDb();
        lclTo.Refresh();
        if (lclTo.Version() != currentVersion)
            Refuse("The target cannot be brought to the current version; it stays at \"" +
                   lclTo.Version() + "\".");
    }

    void ReadShapes() {
        std::vector<std::string> lacking;
        for (const InstalledTable& table : lclFrom.Tables()) {
            const InstalledTable* const target = lclTo.Find(table.name);
            if (!target) {
                lacking.emplace_back(table.name);
                continue;
            }
            const std::size_t before = lacking.size();
            for (const std::string& column : table.columns)
                if (!target->HasColumn(column))
                    lacking.push_back(std::string(table.name) + "." + column);
            if (lacking.size() == before) lclShapes.push_back(ShapeOf(table, lclFrom, lclTo));
        }
        if (!lacking.empty())
            Refuse("The target lacks what the source has; add it there and copy again: " +
                   Listed(lacking));
    }

    // --- The version ----------------------------------------------------------------------------

    bool IsVersion(const RowShape& shape, const OrderedRows& rows) const {
        return shape.table == settingsTable && rows.Key() == lclVersionKey;
    }
    // The rows beside that of the version.
    std::string OtherRows(const RowShape& shape) const {
        return shape.table == settingsTable ? KeyOf(shape) + " <> " + std::to_string(lclVersionKey)
                                            : std::string(everyRow);
    }

    // The source's row stands in the target from the beginning, with the guard for its value.
    void GuardVersion() {
        for (const RowShape& shape : lclShapes) {
            if (shape.table != settingsTable) continue;
            lclVersionKey = lclFrom.Number("Select " + lclFrom.Quoted(shape.columns.front()) +
                                           " from tblSettings" + whereVersion);
            OrderedRows source(lclFrom, shape, 1, lclVersionKey - 1);
            source.Next();
            auto row = source.Row();
            for (std::size_t i = 0; i < row.size(); ++i)
                if (platform::EqualAsciiNoCase(shape.columns[i], "Value")) {
                    lclVersion = ToText(row[i]);
                    row[i] = std::string(guard);
                }
            InTransaction([&] {
                lclTo.Connection()->Execute("Delete from tblSettings" + whereVersion);
                RowWriter writer(lclTo, shape);
                writer.Add(row);
                writer.Flush();
            });
        }
    }

    void Release() {
        CheckSource();
        InTransaction([&] {
            lclTo.Connection()->Execute("update tblSettings set " + lclTo.Quoted("Value") + " = " +
                                        SqlValue(lclVersion) + whereVersion);
            SetPhase(proved);
        });
        DropTransfer();
    }

    // --- The rows -------------------------------------------------------------------------------

    template <class Work>
    void InTransaction(Work work) {
        Connection& connection = *lclTo.Connection();
        const bool has = HasTransactions(lclTo.Connection());
        if (has) connection.BeginTrans();
        try {
            work();
        } catch (...) {
            if (has) RollBack(connection);
            throw;
        }
        if (has) connection.CommitTrans();
    }
    void RollBack(Connection& connection) const {
        try {
            connection.RollbackTrans();
        } catch (const std::exception& error) {
            lclWorkstation.log.Write("CopyInstallation", error.what());
        }
    }

    std::string KeyOf(const RowShape& shape) const { return lclTo.Quoted(shape.columns.front()); }

    // The last key that is there; nothing in an empty table.
    std::optional<std::int64_t> LastKey(const RowShape& shape, const std::string& among) const {
        const RecordsetPtr row =
            lclTo.Connection()->Open({"Select max(" + KeyOf(shape) + ") as HighKey from " +
                                      lclTo.Quoted(shape.table) + " where " + among});
        if (row->Eof() || IsNull(row->Get(std::size_t{0}))) return std::nullopt;
        return ToInt64(row->Get(std::size_t{0}));
    }

    void CopyTable(const RowShape& shape) {
        const std::int64_t total = lclFrom.Count(shape.table);
        std::int64_t done = lclTo.Count(shape.table);
        OrderedRows rows(lclFrom, shape, lclOptions.block, LastKey(shape, OtherRows(shape)));
        const auto next = [&] { return rows.Next() && (!IsVersion(shape, rows) || rows.Next()); };
        bool more = next();
        if (!more) return;
        while (more) {
            InTransaction([&] {
                RowWriter writer(lclTo, shape);
                for (int i = 0; more && i < lclOptions.block; ++i, ++done, more = next())
                    writer.Add(rows.Row());
                writer.Flush();
            });
            if (more) Progress(shape.table, done, total);
        }
        Progress(shape.table, done, total);
    }

    void Progress(const std::string& table, std::int64_t done, std::int64_t total) const {
        if (lclOptions.progress) lclOptions.progress(table, done, total);
    }

    // --- The proof ------------------------------------------------------------------------------

    // What differs, empty when nothing does. Of a table that differs the target loses all from the
    // first such row on, so that it can be copied again.
    std::string Prove() {
        std::vector<std::string> differs;
        lclResult.tables.clear();
        for (const RowShape& shape : lclShapes) {
            CopiedTable copied{shape.table};
            const auto first = FirstDifference(shape, copied);
            lclResult.tables.push_back(std::move(copied));
            if (!first) continue;
            differs.push_back(shape.table + " from " + shape.columns.front() + " " +
                              std::to_string(*first));
            lclTo.Connection()->Execute("Delete from " + lclTo.Quoted(shape.table) + " where " +
                                        KeyOf(shape) + " >= " + std::to_string(*first) + " and " +
                                        OtherRows(shape));
        }
        return Listed(differs);
    }

    std::optional<std::int64_t> FirstDifference(const RowShape& shape, CopiedTable& copied) const {
        OrderedRows left(lclFrom, shape, lclOptions.block), right(lclTo, shape, lclOptions.block);
        for (;;) {
            const bool hasLeft = left.Next(), hasRight = right.Next();
            if (!hasLeft && !hasRight) return std::nullopt;
            if (hasLeft != hasRight) return hasLeft ? left.Key() : right.Key();
            const std::uint64_t sum = left.Sum();
            if (left.Key() != right.Key() || (sum != right.Sum() && !IsVersion(shape, left)))
                return std::min(left.Key(), right.Key());
            copied.sum = (copied.sum ^ sum) * 0x100000001b3;
            ++copied.rows;
        }
    }

    // Numbers that the source has given out already, to rows deleted since, are not given again: a
    // deleted row keeps its number with a minus sign.
    void RaiseCounter(const RowShape& shape) {
        std::int64_t highest = 0;
        const InstalledTable& table = *lclFrom.Find(shape.table);
        for (const std::string_view column : {table.key, table.ownId}) {
            if (column.empty() || !table.HasColumn(column)) continue;
            const RecordsetPtr row = lclFrom.Connection()->Open(
                {"Select min(" + lclFrom.Quoted(column) + ") as LowKey, max(" +
                 lclFrom.Quoted(column) + ") as HighKey from " + lclFrom.Quoted(shape.table)});
            if (row->Eof()) continue;
            highest = std::max(
                {highest, -ToInt64(row->Get(std::size_t{0})), ToInt64(row->Get(std::size_t{1}))});
        }
        if (highest <= LastKey(shape, everyRow).value_or(0)) return;
        InTransaction([&] {
            RowShape key{shape.table, {shape.columns.front()}, {false}, {shape.types.front()}};
            RowWriter writer(lclTo, key);
            writer.Add({highest});
            writer.Flush();
            lclTo.Connection()->Execute("Delete from " + lclTo.Quoted(shape.table) + " where " +
                                        KeyOf(shape) + " = " + std::to_string(highest));
        });
    }

    const platform::Workstation& lclWorkstation;
    const CopyOptions& lclOptions;
    Installation lclFrom, lclTo;
    std::string lclSource;
    std::vector<RowShape> lclShapes;
    std::int64_t lclVersionKey = 0; // of its row in the settings
    std::string lclVersion;
    CopyResult lclResult;
};

} // namespace

CopyResult CopyInstallation(const platform::Workstation& workstation, const ConnectionPtr& from,
                            const ConnectionPtr& to, const CopyOptions& options) {
    return Copy(workstation, from, to, options).Run();
}

} // namespace kavidex::data::transfer
