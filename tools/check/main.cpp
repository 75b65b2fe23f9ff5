// kavidex-check DATABASE [STORE]: does a dossier database agree with itself and with its document
// store? Prints one line a finding and ends with 1 when there is one, with 2 when it could not
// look. Changes nothing.
#include <cstdio>
#include <exception>
#include <string>

#include "data/embedded/EmbeddedDatabase.h"
#include "model/IntegrityCheck.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "tools/check/arguments.h"

int main(int count, char** values) {
    using namespace kavidex;
    const std::vector<std::string> arguments = check::Arguments(count, values);
    if (arguments.empty() || arguments.size() > 2) {
        std::fprintf(stderr, "usage: kavidex-check DATABASE [STORE]\n");
        return 2;
    }
    try {
        const auto& workstation = platform::TheWorkstation();
        const auto connection = data::EmbeddedDatabase::Open(arguments[0]);
        std::size_t findings = 0;
        for (const std::string& line : data::EmbeddedDatabase::Check(*connection)) {
            std::printf("damaged database: %s\n", line.c_str());
            ++findings;
        }
        const std::string store = arguments.size() > 1 ? arguments[1] : std::string();
        for (const auto& finding : model::CheckIntegrity(workstation, connection, store)) {
            std::printf("%s: %s\n", std::string(model::FaultName(finding.fault)).c_str(),
                        finding.detail.c_str());
            ++findings;
        }
        std::printf("%zu finding%s\n", findings, findings == 1 ? "" : "s");
        connection->Close();
        return findings == 0 ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kavidex-check: %s\n", error.what());
        return 2;
    }
}
