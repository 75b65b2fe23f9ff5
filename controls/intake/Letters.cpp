#include "controls/intake/Letters.h"

#include <map>

#include "controls/intake/TextLines.h"
#include "mail/MailNames.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "model/storePath.h"
#include "model/uniqueNumber.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view documentId = "DocumentId";

// What stands between name and value on a line; 0 where it has no such form.
char SeparatorOf(const std::string& line) {
    const auto at = line.find_first_of("=:;|\t");
    if (at == std::string::npos || platform::TrimView(std::string_view(line).substr(0, at)).empty())
        return 0;
    return line[at];
}

} // namespace

std::string WithDocumentId(std::string valueFile, std::int64_t number) {
    TextLines lines(std::move(valueFile));
    lines.RemoveIf([](const std::string& line) {
        return platform::LowerCase(line).find("documentid") != std::string::npos;
    });
    std::map<char, std::size_t> shown{{'=', 0}};
    for (std::size_t at = 0; at < lines.Count(); ++at)
        if (const char own = SeparatorOf(lines.Line(at))) ++shown[own];
    char separator = '=';
    for (const auto& [own, times] : shown)
        if (times > shown[separator]) separator = own;
    lines.Append(std::string(documentId) + separator + std::to_string(number));
    return lines.Bytes();
}

void Letters::Make(const LetterOrder& order) {
    const auto folder = lclSite.SelectedFolder();
    if (!folder || !lclSite.Tree())
        return lclSite.Tell("Selecteer eerst een map voor de toevoeging");
    const auto dossier = lclSite.OpenDossier();
    const auto document = Merge(order);
    if (document.empty()) return;
    const auto into = [&]() -> ItemPtr { // it may have gone meanwhile
        const auto tree = lclSite.Tree();
        return tree ? tree->GetItem(folder->Id(), {}) : nullptr;
    };
    std::vector<ItemPtr> filed;
    lclIntake.AddByUser(dossier, {Own(document, order.name)}, into, &filed);
    if (order.open && !filed.empty()) lclSite.OpenDefault(filed.front());
}

// The generator may call its next letter the same while this one still waits for its folder.
IntakeFile Letters::Own(const std::string& document, const std::string& name) const {
    auto& files = lclSite.Machine().files;
    const auto fileName = platform::FileName(document);
    const auto bare = platform::WithoutExtension(fileName);
    const auto copy = mail::FreePath(files, files.TemporaryFolder(), bare,
                                     std::string_view(fileName).substr(bare.size()));
    files.Copy(document, copy, true);
    return {.file = copy, .ours = true, .description = name.empty() ? bare : name};
}

std::unique_ptr<LetterGenerator> Letters::Generator() const {
    try {
        return lclSite.MakeLetterGenerator();
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("Letters", error.what());
        throw platform::Error(
            NumberOf(error),
            lclSite.Text("De briefgenerator (LumaformWordGen.clsWord) kan niet gestart worden. Is "
                         "deze op dit werkstation geïnstalleerd?"));
    }
}

// Writes the letter's number into its values, where there are any: what cannot be looked at is no
// file that is absent.
void Letters::Number(const std::string& valueFile) const {
    auto& files = lclSite.Machine().files;
    const auto named = [&](auto work) {
        try {
            return work();
        } catch (const platform::Error& error) {
            lclSite.Machine().log.Write("Letters", error.what());
            throw platform::Error(error.Number(),
                                  CauseInSource(lclSite, valueFile, error.Number()));
        }
    };
    const bool there = !valueFile.empty() && named([&] {
        const auto found = model::AttributesOf(lclSite.Machine(), valueFile);
        return found && !(*found & platform::attributes::directory);
    });
    if (!there) return;
    // Raised before anything else: no two letters share a number, whatever becomes of this one.
    const auto number = model::RaiseUniqueNumber(lclSite.DbConnection());
    named([&] { files.WriteAll(valueFile, WithDocumentId(files.ReadAll(valueFile), number)); });
}

// Empty, and told why, when no letter was made.
std::string Letters::Merge(const LetterOrder& order) {
    auto& files = lclSite.Machine().files;
    Operation operation(lclSite.Lock());
    if (!operation)
        throw platform::Error(platform::errors::fail,
                              lclSite.Text("Er loopt nog een andere bewerking"));
    operation.Show(lclSite.Text("Aanmaken correspondentie"),
                   lclSite.Text("Bezig met aanmaken correspondentie"));
    operation.Step(0, 0);
    const auto generator = Generator();
    const auto& valueFile = order.valueFile;
    Number(valueFile);
    const auto merged = generator->fncMergeDocument(valueFile, order.letterTemplate);
    if (merged.result == 1 && !merged.document.empty() && files.FileExists(merged.document))
        return merged.document;
    operation.End();
    lclSite.Machine().log.Write("Letters", "fncMergeDocument: " + std::to_string(merged.result) +
                                               ", " + merged.document);
    if (merged.result != 1)
        lclSite.Tell("Fout in samenvoegen document ($%$)", {std::to_string(merged.result)});
    else
        lclSite.Tell("Bestand niet gevonden: $%$", {merged.document});
    return {};
}

} // namespace kavidex::controls
