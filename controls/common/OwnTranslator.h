// The translator that a control makes when its host gives none: the rows of tblTranslations.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "controls/common/Translator.h"
#include "data/Connection.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

// The values of the binder control's `Language`; any other number counts as Dutch.
enum class Language : int { Dutch = 0, English = 1, German = 2, French = 3 };

// The rows are read once per language, on first use; keys are found without case, as the databases
// compare them. Without a connection, without the table, or without a row, a text stays as it is; a
// failing read leaves a line in the log.
class OwnTranslator : public Translator {
public:
    explicit OwnTranslator(const platform::Workstation& workstation)
        : lclWorkstation(workstation) {}

    void SetDbConnection(data::ConnectionPtr connection);
    void SetLanguage(Language language);
    Language CurrentLanguage() const { return lclLanguage; }

    std::string Translate(std::string_view text,
                          const std::vector<std::string>& values = {}) override;

private:
    void Load();

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    Language lclLanguage = Language::Dutch;
    bool lclLoaded = false;
    std::unordered_map<std::string, std::string> lclTexts; // by lower-cased key
};

} // namespace kavidex::controls
