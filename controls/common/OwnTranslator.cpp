#include "controls/common/OwnTranslator.h"

#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

std::string_view ColumnOf(Language language) {
    switch (language) {
    case Language::English: return "UK";
    case Language::German: return "GE";
    case Language::French: return "FR";
    case Language::Dutch: break;
    }
    return "NL";
}

} // namespace

void OwnTranslator::SetDbConnection(data::ConnectionPtr connection) {
    lclConnection = std::move(connection);
    lclLoaded = false;
}

void OwnTranslator::SetLanguage(Language language) {
    if (language == lclLanguage) return;
    lclLanguage = language;
    lclLoaded = false;
}

std::string OwnTranslator::Translate(std::string_view text,
                                     const std::vector<std::string>& values) {
    Load();
    const auto found = lclTexts.find(platform::LowerCase(text));
    return platform::FillPlaceholders(found == lclTexts.end() ? text : found->second, values);
}

void OwnTranslator::Load() {
    if (lclLoaded) return;
    lclLoaded = true; // also when reading fails: one line in the log, not one a text
    lclTexts.clear();
    if (!lclConnection) return;
    try {
        data::Command command;
        command.text =
            "Select strKey, " + std::string(ColumnOf(lclLanguage)) + " from tblTranslations";
        const auto rows = lclConnection->Open(command);
        lclTexts.reserve(static_cast<std::size_t>(rows->RecordCount()));
        for (; !rows->Eof(); rows->MoveNext()) {
            auto translated = platform::Trim(data::ToText(rows->Get(1)));
            if (!translated.empty())
                lclTexts.try_emplace(
                    platform::LowerCase(platform::TrimView(data::ToText(rows->Get(0)))),
                    std::move(translated));
        }
    } catch (const platform::Error& error) {
        lclWorkstation.log.Write("OwnTranslator", error.what());
    }
}

} // namespace kavidex::controls
