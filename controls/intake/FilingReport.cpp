#include "controls/intake/FilingReport.h"

#include <algorithm>
#include <iterator>

#include "controls/common/Causes.h"
#include "controls/common/Listed.h"
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
    if (!report.causes.empty())
        text += "\r\n\r\n" + Listed(report.causes, TranslationBy(site.Translate()));
    site.TellReady(text);
    return report.result;
}

std::string CauseOf(const IntakeSite& site, const std::string& file, std::int32_t number) {
    return CauseOf(TranslationBy(site.Translate()), file, number)
        .value_or(site.Text("$%$: niet opgeslagen", {file}));
}

std::int32_t NumberOf(const std::exception& error) {
    const auto* ours = dynamic_cast<const platform::Error*>(&error);
    return ours ? ours->Number() : platform::errors::fail;
}

std::optional<std::string> CauseOfReading(const IntakeSite& site, const std::string& file,
                                          std::int32_t number) {
    // Of a drive that is not ready, and of shares and networks that are not there (any more).
    constexpr std::uint32_t away[] = {0x80070015, 0x80070033, 0x80070035, 0x80070037, 0x8007003B,
                                      0x80070040, 0x80070043, 0x800704CF, 0x800704D0};
    if (std::find(std::begin(away), std::end(away), static_cast<std::uint32_t>(number)) !=
        std::end(away))
        return site.Text("$%$: niet bereikbaar", {file});
    return CauseOf(TranslationBy(site.Translate()), file, number);
}

std::string CauseInSource(const IntakeSite& site, const std::string& file, std::int32_t number) {
    namespace errors = platform::errors;
    constexpr auto nameTooLong = static_cast<std::int32_t>(0x800700CE);
    switch (number) {
    case errors::notFound:
    case errors::pathNotFound:
    case errors::invalidArgument:
    case nameTooLong: return site.Text("Bestand niet gevonden: $%$", {file});
    default:
        return CauseOfReading(site, file, number)
            .value_or(site.Text("$%$: niet opgeslagen", {file}));
    }
}

std::string CauseInStore(const IntakeSite& site, const std::string& file, std::int32_t number) {
    namespace errors = platform::errors;
    switch (number) {
    case errors::pathNotFound:
        return site.Text("$%$: de map van de documentopslag is niet bereikbaar", {file});
    case errors::accessDenied: return site.Text("$%$: geen toegang tot de documentopslag", {file});
    default: return CauseOf(site, file, number);
    }
}

} // namespace kavidex::controls
