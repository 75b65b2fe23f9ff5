// Letters: a template and the host's values, merged by the letter generator and filed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "controls/intake/Intake.h"

namespace kavidex::controls {

// The port to the generator, one a letter.
class LetterGenerator {
public:
    struct Merged {
        std::int32_t result = 0; // 1: it was made
        std::string document;    // its full path
    };
    virtual ~LetterGenerator() = default;
    virtual Merged fncMergeDocument(const std::string& valueFile, const std::string& letter) = 0;
};

struct LetterOrder {
    std::string letterTemplate, valueFile;
    std::string name{}; // empty: as the generator calls its file
    bool open = false;  // in its own program, once it is filed
};

class Letters {
public:
    Letters(IntakeSite& site, Intake& intake) : lclSite(site), lclIntake(intake) {}

    // Into the selected folder. Throws what the toolbar's box shows; the number may be raised then.
    void Make(const LetterOrder& order);

private:
    std::string Merge(const LetterOrder& order);
    std::unique_ptr<LetterGenerator> Generator() const;
    void Number(const std::string& valueFile) const;
    IntakeFile Own(const std::string& document, const std::string& name) const;

    IntakeSite& lclSite;
    Intake& lclIntake;
};

// The value file's text with every line that mentions a document id gone, and one that assigns the
// number behind the rest, in the file's own encoding, line ends and separator.
std::string WithDocumentId(std::string valueFile, std::int64_t number);

} // namespace kavidex::controls
