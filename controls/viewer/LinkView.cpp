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

std::pair<std::string, std::string> ReadLink(std::string_view bytes) {
    const auto input = platform::IniEntry(bytes, "Param", "Input");
    if (!input || platform::Trim(*input).empty())
        throw platform::Error(platform::errors::invalidData,
                              "The link names nothing: [Param] Input is missing.");
    const auto values = platform::Split(*input, ';');
    return {platform::Trim(values[0]), values.size() > 1 ? platform::Trim(values[1]) : ""};
}

bool LinkView::Show(const ShownDocument& document) {
    auto& files = lclFrame.Machine().files;
    if (files.Size(document.Path()) > largest)
        throw platform::Error(platform::errors::invalidData, document.Path() + " is no link.");
    const auto [key, type] = ReadLink(files.ReadAll(document.Path()));
    lclFrame.OpenDossier(key, type);
    return true;
}

} // namespace kavidex::controls
