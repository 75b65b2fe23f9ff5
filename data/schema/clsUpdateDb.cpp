// Walks the table of upgrade steps from the version that the database records.
#include "data/schema/clsUpdateDb.h"

#include <algorithm>
#include <optional>

#include "data/schema/completeness.h"
#include "data/schema/upgradeSteps.h"
#include "data/transactions.h"
#include "platform/BusyDialog.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data {

bool UpgradeContext::Execute(std::string_view statement) const {
    try {
        connection->Execute(statement);
        return true;
    } catch (const std::exception& error) {
        workstation.log.Write("clsUpdateDb", std::string(statement) + ": " + error.what());
        return false;
    }
}

bool UpgradeContext::HasTable(std::string_view name) const {
    try {
        const RecordsetPtr tables = connection->OpenSchema(Schema::Tables);
        for (; !tables->Eof(); tables->MoveNext())
            if (platform::EqualAsciiNoCase(platform::Trim(ToText(tables->Get("TABLE_NAME"))), name))
                return true;
        return false;
    } catch (const std::exception& error) {
        throw UpgradeHalted(std::string("The tables of the database cannot be listed: ") +
                            error.what());
    }
}

bool UpgradeContext::TransactsDefinitions() const {
    try {
        return ToText(connection->Property("Provider Name")) == "Kavidex.EmbeddedDatabase";
    } catch (const std::exception&) {
        return false; // an engine that does not say
    }
}

clsUpdateDb::clsUpdateDb(const platform::Workstation& workstation, Translation translation)
    : lclWorkstation(workstation), lclTranslation(std::move(translation)),
      lclSettings(workstation) {}

void clsUpdateDb::SetDbConnection(ConnectionPtr connection) {
    lclConnection = std::move(connection);
    lclSettings.SetDbConnection(lclConnection);
}

std::int32_t clsUpdateDb::fncUpdateDb() {
    if (!lclConnection) return 0;
    try {
        return Walk();
    } catch (const UpgradeHalted& error) {
        lclWorkstation.log.Write("fncUpdateDb", error.what());
        lclWorkstation.messages.Show(
            {.text = std::to_string(error.Number()) + " " + error.what(),
             .caption = Translated(lclTranslation, "Error in $%$", {"fncUpdateDb"})});
        return -1;
    }
}

std::int32_t clsUpdateDb::Walk() {
    std::string version = Version();
    std::optional<bool> dossiers; // asked for when the first step is due
    std::int32_t result = 0;
    for (const UpgradeStep& step : UpgradeSteps()) {
        if (step.from != version) continue;
        if (!dossiers)
            dossiers = UpgradeContext{lclWorkstation, lclConnection}.HasTable("tblDossierTypes");
        version = step.to;
        if (*dossiers || !step.needsDossierTables) result = Run(step.from, version);
        Record(version);
    }
    if (version == currentVersion) {
        const UpgradeContext context{lclWorkstation, lclConnection};
        CompleteSchema(context, lclTranslation);
        CompleteTexts(context, lclSettings);
    }
    return result;
}

// A version that is not kept would have the steps run again at every assignment, unnoticed. Without
// the table there is nowhere to keep it.
void clsUpdateDb::Record(std::string_view version) {
    lclSettings.SetSetting("Build", "DbVersion", version);
    const std::string failure = lclSettings.Failure();
    if (!failure.empty() && UpgradeContext{lclWorkstation, lclConnection}.HasTable("tblSettings"))
        throw UpgradeHalted("The version of the database cannot be recorded: " + failure);
}

// A database without settings is one of the first version; one that does not answer is not.
std::string clsUpdateDb::Version() {
    std::string version;
    if (lclSettings.GetSetting("Build", "DbVersion", version)) return platform::LowerCase(version);
    const std::string failure = lclSettings.Failure();
    if (!failure.empty() && UpgradeContext{lclWorkstation, lclConnection}.HasTable("tblSettings"))
        throw UpgradeHalted("The version of the database cannot be read: " + failure);
    return "0";
}

std::int32_t clsUpdateDb::Run(std::string_view from, std::string& reached) {
    const auto step =
        std::find_if(UpgradeSteps().begin(), UpgradeSteps().end(),
                     [&](const UpgradeStep& candidate) { return candidate.from == from; });
    UpgradeContext context{lclWorkstation, lclConnection};
    context.inTransaction = context.TransactsDefinitions();
    try {
        std::optional<Transaction> whole;
        if (context.inTransaction) whole.emplace(lclConnection, lclWorkstation);
        RunPhases(*step, context);
        if (whole) whole->Commit();
    } catch (const std::exception& error) {
        throw UpgradeHalted(error.what()); // in use by another, perhaps; later, then
    }
    reached = step->to;
    return 0;
}

void clsUpdateDb::RunPhases(const UpgradeStep& step, const UpgradeContext& context) {
    const auto say = [&](std::string_view text) { return Translated(lclTranslation, text); };
    std::string caption = say(step.phases.front().caption);
    platform::BusyScope busy(lclWorkstation.busy, caption, say(step.phases.front().text));
    for (const UpgradePhase& phase : step.phases) {
        if (!phase.caption.empty()) caption = say(phase.caption);
        busy.Text(caption, say(phase.text));
        for (const std::string& statement : phase.statements) context.Execute(statement);
        try {
            if (phase.function) phase.function(context);
        } catch (const UpgradeHalted&) {
            throw;
        } catch (const std::exception& error) {
            lclWorkstation.log.Write("clsUpdateDb", error.what());
        }
    }
    busy.Text(caption, say("Bezig met bijwerken van versienummer"));
}

std::int32_t clsUpdateDb::fncUp101(std::string& reached) { return Run("0", reached); }
std::int32_t clsUpdateDb::fncUpTo102(std::string& reached) { return Run("1.0.1", reached); }
std::int32_t clsUpdateDb::fncUpTo103(std::string& reached) { return Run("1.0.2", reached); }
std::int32_t clsUpdateDb::fncUpTo104(std::string& reached) { return Run("1.0.3", reached); }
std::int32_t clsUpdateDb::fncUpTo105(std::string& reached) { return Run("1.0.4", reached); }
std::int32_t clsUpdateDb::fncUpTo106(std::string& reached) { return Run("1.0.5", reached); }
std::int32_t clsUpdateDb::fncUpTo107(std::string& reached) { return Run("1.0.6", reached); }
std::int32_t clsUpdateDb::fncUpTo108(std::string& reached) { return Run("1.0.7", reached); }
std::int32_t clsUpdateDb::fncUpTo109(std::string& reached) { return Run("1.0.8", reached); }
std::int32_t clsUpdateDb::fncUpTo110(std::string& reached) { return Run("1.0.9", reached); }
std::int32_t clsUpdateDb::fncUpTo111(std::string& reached) { return Run("1.1.0", reached); }
std::int32_t clsUpdateDb::fncUpTo112(std::string& reached) { return Run("1.1.1", reached); }
std::int32_t clsUpdateDb::fncUpTo113(std::string& reached) { return Run("1.1.2", reached); }
std::int32_t clsUpdateDb::fncUpTo114(std::string& reached) { return Run("1.1.3", reached); }
std::int32_t clsUpdateDb::fncUpTo115(std::string& reached) { return Run("1.1.4", reached); }
std::int32_t clsUpdateDb::fncUpTo116(std::string& reached) { return Run("1.1.5", reached); }
std::int32_t clsUpdateDb::fncUpTo117(std::string& reached) { return Run("1.1.6", reached); }
std::int32_t clsUpdateDb::fncUpTo118(std::string& reached) { return Run("1.1.7", reached); }

} // namespace kavidex::data
