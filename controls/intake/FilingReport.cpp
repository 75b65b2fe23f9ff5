#include "controls/intake/FilingReport.h"

#include "controls/common/FirstLines.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view notAdded = "Document zijn niet correct toegevoegd (Fout $%$)";

} // namespace

std::int32_t TellNotAdded(const IntakeSite& site, const FilingReport& report) {
    if (report.Done()) return report.result;
    std::string text = site.Text(notAdded, {std::to_string(report.result)});
    for (const auto& cause : report.causes) site.Machine().log.Write("AddFiles", cause);
    text += "\r\n" + FirstLines(TranslationBy(site.Translate()), report.causes);
    site.TellReady(text);
    return report.result;
}

std::string CauseOf(const IntakeSite& site, const std::string& file, std::int32_t number) {
    namespace errors = platform::errors;
    switch (number) {
    case errors::notFound:
    case errors::pathNotFound: return site.Text("$%$: bestand of map niet gevonden", {file});
    case errors::accessDenied: return site.Text("$%$: geen toegang", {file});
    case errors::sharingViolation:
        return site.Text("$%$: in gebruik bij een ander programma", {file});
    case errors::diskFull: return site.Text("$%$: de schijf is vol", {file});
    default: return site.Text("$%$: niet opgeslagen", {file});
    }
}

} // namespace kavidex::controls
