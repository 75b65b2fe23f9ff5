// kavidex-db: looks after the database of an installation. Ends with 0 when all is well, with 1
// when it found something, with 2 when it could not do what was asked.
#include <cstdio>
#include <exception>
#include <string>

#include "data/logText.h"
#include "tools/db/Commands.h"
#include "tools/db/machine.h"

namespace {

int Usage() {
    std::fprintf(stderr, "usage:\n");
    for (const auto& command : kavidex::db::Commands())
        std::fprintf(stderr, "  kavidex-db %-8s %-24s %s\n", std::string(command.name).c_str(),
                     std::string(command.arguments).c_str(), std::string(command.help).c_str());
    std::fprintf(
        stderr,
        "A DATABASE is a file of the embedded engine, an Access file (.mdb),\n"
        "odbc:CONNECTION, ado:CONNECTION, or @FILE: a text file that holds one of these.\n");
    return kavidex::db::failed;
}

} // namespace

int main(int count, char** values) {
    using namespace kavidex;
    db::Begin();
    db::Words words = db::Arguments(count, values);
    if (words.empty()) return Usage();
    const std::string name = words.front();
    words.erase(words.begin());
    for (const db::Command& command : db::Commands()) {
        if (command.name != name) continue;
        if (words.size() < command.least || words.size() > command.most) return Usage();
        try {
            return command.run(words);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "kavidex-db %s: %s\n", name.c_str(), data::InLog(error).c_str());
            return db::failed;
        }
    }
    return Usage();
}
