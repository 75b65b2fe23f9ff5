#include "tests/engines/MariaDbServer.h"

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace kavidex::tests {

namespace {

// The script that knows how the server is run.
int RunScript(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), KAVIDEX_SOURCES "/tests/engines/mariadb.sh");
    std::vector<char*> raw;
    for (std::string& argument : arguments) raw.push_back(argument.data());
    raw.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        ::execv(raw[0], raw.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string FirstLine(const std::string& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

} // namespace

MariaDbServer& MariaDbServer::Instance() {
    static MariaDbServer server;
    return server;
}

MariaDbServer::MariaDbServer()
    : lclFolder(std::filesystem::absolute("mariadb-" + std::to_string(::getpid())).string()) {
    const int result = RunScript({"start", lclFolder, "native", std::to_string(::getpid())});
    lclConnection = FirstLine(lclFolder + "/connection");
    lclMissing = FirstLine(lclFolder + "/missing");
    if (lclConnection.empty() && lclMissing.empty())
        lclMissing = "mariadb.sh ended with " + std::to_string(result);
}

MariaDbServer::~MariaDbServer() { RunScript({"stop", lclFolder}); }

std::string MariaDbServer::ConnectionString(const std::string& database) const {
    return lclConnection + (database.empty() ? "" : "DATABASE=" + database + ";");
}

} // namespace kavidex::tests
