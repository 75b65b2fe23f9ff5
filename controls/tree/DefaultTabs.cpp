#include "controls/tree/DefaultTabs.h"

#include <algorithm>
#include <map>
#include <utility>

#include "data/schema/upgradeSteps.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::string_view typePrefix = "Dossiertype=";

data::RecordsetPtr Open(data::Connection& connection, std::string statement) {
    data::Command command;
    command.text = std::move(statement);
    return connection.Open(command);
}

std::vector<std::string> TabsOfType(std::string_view type, data::Connection& connection) {
    std::vector<std::string> names;
    const auto types = Open(connection, "Select TypeId from tblDossierTypes where DossierType = '" +
                                            platform::Replace(type, "'", "''") + "'");
    if (types->Eof()) return names;
    const auto rows = Open(connection, "Select TabDescription, AutoCreate from tblDossierTabs "
                                       "where DossierTypeId = " +
                                           std::to_string(data::ToInt32(types->Get("TypeId"))) +
                                           " order by IntOrder");
    for (; !rows->Eof(); rows->MoveNext()) {
        // A folder that is offered, but not made with the tree.
        static constexpr std::string_view no[] = {"0", "no", "nee", "false"};
        const auto automatic =
            platform::LowerCase(platform::Trim(data::ToText(rows->Get("AutoCreate"))));
        if (std::find(std::begin(no), std::end(no), automatic) == std::end(no))
            names.push_back(platform::Trim(data::ToText(rows->Get("TabDescription"))));
    }
    return names;
}

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
        return TabsOfType(platform::TrimView(list.substr(typePrefix.size())), *connection);
    } catch (const platform::Error& error) {
        workstation.log.Write("fncGetAndCreateTabs", error.what());
        const data::UpgradeContext tables{workstation, connection};
        if (tables.HasTable("tblDossierTypes") && tables.HasTable("tblDossierTabs")) throw;
    }
    return names;
}

std::int32_t
MakeFolders(const std::vector<std::string>& names, std::int32_t top,
            const std::function<std::int32_t(const std::string& name, std::int32_t parent)>& make) {
    std::int32_t made = 0;
    std::map<std::string, std::int32_t> folders; // by their paths
    for (const auto& name : names) {
        auto parent = top;
        std::string path;
        const auto steps = platform::Split(name, '\\');
        for (std::size_t i = 0; i < steps.size() && parent != 0; ++i) {
            path += '\\' + steps[i];
            const auto known = folders.find(path);
            if (i + 1 < steps.size() && known != folders.end()) {
                parent = known->second;
                continue;
            }
            parent = make(steps[i], parent);
            folders[path] = parent;
            if (parent != 0) ++made;
        }
    }
    return made;
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
