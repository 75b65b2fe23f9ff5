#include "host/Options.h"

#include "platform/Error.h"

namespace kavidex::host {

namespace {

struct Row {
    const char* word;
    std::string Options::*member;
};

constexpr Row rows[] = {
    {"--database", &Options::database}, {"--store", &Options::store},
    {"--key", &Options::key},           {"--description", &Options::description},
    {"--folders", &Options::folders},   {"--language", &Options::language},
    {"--type", &Options::dossierType},  {"--checklist", &Options::checklist},
    {"--report", &Options::report},     {"--close-when", &Options::closeWhen},
};

} // namespace

const char* const usage =
    "kavidex-host [--database FILE] [--store FOLDER] [--key KEY] [--description TEXT]\n"
    "             [--folders LIST] [--language NUMBER] [--type DOSSIERTYPE] [--checklist TYPE]\n"
    "             [--report FILE] [--close-when FILE] [DOCUMENT...]";

Options ParseOptions(const std::vector<std::string>& words) {
    Options options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!words[i].starts_with("--")) {
            options.files.push_back(words[i]);
            continue;
        }
        const Row* row = nullptr;
        for (const Row& candidate : rows)
            if (words[i] == candidate.word) row = &candidate;
        if (!row || i + 1 == words.size())
            throw platform::Error(platform::errors::invalidArgument,
                                  "not understood: " + words[i] + "\n\n" + usage, "kavidex-host");
        options.*row->member = words[++i];
    }
    return options;
}

} // namespace kavidex::host
