// What the sample host is asked to do on its command line.
#pragma once

#include <string>
#include <vector>

namespace kavidex::host {

struct Options {
    std::string database;    // path of an embedded database, made when it is missing
    std::string store;       // folder of the document files, kept in the database's settings
    std::string key;         // the host's own key of the dossier
    std::string description; // of a dossier that is made now
    std::string folders;     // default folders of a dossier that is made now
    std::string language;    // its number, as the control counts: 0 Dutch, 1 English, ...
    std::string report;      // file that tells what was done, line by line
    std::string closeWhen;   // the host ends when this file exists
    std::string dossierType; // of the control; the default where there is none
    std::string checklist;   // shown beside the documents
    std::vector<std::string> files;
};

// Throws platform::Error naming the word it does not understand.
Options ParseOptions(const std::vector<std::string>& words);

extern const char* const usage;

} // namespace kavidex::host
