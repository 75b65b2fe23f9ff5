#include "controls/tree/DefaultTabs.h"

#include <algorithm>
#include <map>
#include <utility>

#include "data/schema/upgradeSteps.h"
#include "model/dossierTypes.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view typePrefix = "Dossiertype=";

std::string Digits(int number, std::size_t width) {
    auto digits = std::to_string(number);
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    return digits;
}

} // namespace

std::vector<std::string> DefaultTabs(std::string_view list, const data::ConnectionPtr& connection,
                                     const platform::Workstation& workstation) {
    std::vector<std::string> names;
    list = platform::TrimView(list);
    const auto prefix = list.substr(0, typePrefix.size());
    if (!platform::EqualAsciiNoCase(prefix, typePrefix)) {
        for (const auto& part : platform::Split(list, ';'))
            if (auto name = platform::Trim(part); !name.empty()) names.push_back(std::move(name));
        return names;
    }
    if (!connection) return names;
    try {
        const auto type = model::FindDossierType(
            workstation, connection, platform::TrimView(list.substr(typePrefix.size())));
        if (type.id == 0) return names;
        for (const auto& tab : model::TabsOfType(model::Store(connection), type.id))
            if (tab.automatic) names.push_back(tab.description);
    } catch (const platform::Error& error) {
        workstation.log.Write("fncGetAndCreateTabs", error.what());
        const data::UpgradeContext tables{workstation, connection};
        if (tables.HasTable("tblDossierTypes") && tables.HasTable("tblDossierTabs")) throw;
    }
    return names;
}

std::string FillTokens(std::string_view name, const platform::DateTime& now, int number) {
    const std::pair<std::string_view, std::string> tokens[] = {
        {"%YYYY", Digits(now.year, 4)}, {"%DD", Digits(now.day, 2)},
        {"%MM", Digits(now.month, 2)},  {"%hh", Digits(now.hour, 2)},
        {"%mm", Digits(now.minute, 2)}, {"%ss", Digits(now.second, 2)},
    };
    std::string filled(name);
    for (const auto& [token, value] : tokens) filled = platform::Replace(filled, token, value);
    for (auto start = filled.find("%#"); start != std::string::npos;
         start = filled.find("%#", start + 1)) {
        auto end = filled.find_first_not_of('#', start + 1);
        if (end == std::string::npos) end = filled.size();
        filled.replace(start, end - start, Digits(number, end - start - 1));
    }
    return filled;
}

} // namespace kavidex::controls
