// A letter generator for tests. What it makes of a template is in the template's name: one with
// "fout" is answered with 7, one with "stuk" with an error, one with "leeg" without a letter; every
// other gives a letter among the temporary files that holds the values.
#pragma once

#include <string>

#include "com/dispatch/Automation.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "tests/e2e/doubles/Recorded.h"

namespace kavidex::tests {

class LetterGeneratorDouble final : public com::Automation {
public:
    const com::Table& Members() const override {
        using Self = LetterGeneratorDouble;
        using Row = com::Rows<Self>;
        static constexpr com::Member rows[] = {
            Row::Method<[](Self&, com::ByRef<std::string>& values,
                           com::ByRef<std::string>& letter) {
                return Merge(values.value, letter.value);
            }>(L"fncMergeDocument", 1, L"ValueFile,Template"),
        };
        static constexpr com::Table table{"LetterDouble.clsWord", &IID_IDispatch, rows};
        return table;
    }

private:
    static std::int32_t Merge(const std::string& values, std::string& letter) {
        RecordCall("KAVIDEX_LETTER_RECORD", "kavidex-letter.txt",
                   "fncMergeDocument " + platform::FileName(values) + " " +
                       platform::FileName(letter));
        const auto named = [&](const char* part) { return letter.find(part) != std::string::npos; };
        if (named("fout")) return 7;
        if (named("stuk"))
            throw platform::Error(platform::errors::fail, "The word processor does not answer.");
        if (named("leeg")) return 1;
        auto& files = platform::TheWorkstation().files;
        const auto made = files.TemporaryFolder() + "Brief van " +
                          platform::WithoutExtension(platform::FileName(letter)) + ".docx";
        files.WriteAll(made, files.FileExists(values) ? files.ReadAll(values) : "geen waarden");
        letter = made;
        return 1;
    }
};

} // namespace kavidex::tests
