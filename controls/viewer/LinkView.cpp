#include "controls/viewer/LinkView.h"

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/IniText.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

// Longer than any link; what is not one is not read into memory.
constexpr std::uint64_t largest = std::uint64_t{1} << 20;

} // namespace

std::optional<Link> ReadLink(std::string_view bytes) {
    const auto input = platform::IniEntry(bytes, "Param", "Input");
    if (!input || platform::Trim(*input).empty()) return std::nullopt;
    const auto values = platform::Split(*input, ';');
    return Link{platform::Trim(values[0]), values.size() > 1 ? platform::Trim(values[1]) : ""};
}

bool LinkView::Show(const ShownDocument& document) {
    auto& files = lclFrame.Machine().files;
    const auto link = files.Size(document.Path()) > largest
                          ? std::nullopt
                          : ReadLink(files.ReadAll(document.Path()));
    if (!link)
        throw platform::Error(platform::errors::invalidData,
                              lclFrame.Text("$%$: verwijst niet naar een dossier",
                                            {platform::FileName(document.Path())}));
    lclFrame.OpenDossier(link->first, link->second);
    return true;
}

} // namespace kavidex::controls
