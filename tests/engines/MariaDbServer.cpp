#include "tests/engines/MariaDbServer.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

namespace kavidex::tests {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

std::string FindProgram(const std::string& name) {
    for (const char* folder :
         {"/usr/sbin/", "/usr/bin/", "/usr/local/sbin/", "/usr/local/bin/", "/usr/libexec/"})
        if (::access((folder + name).c_str(), X_OK) == 0) return folder + name;
    return {};
}

// By its file where it lies in a usual place, since its name may not be registered.
std::string FindDriver() {
    for (const char* pattern :
         {"/usr/lib/x86_64-linux-gnu/odbc/", "/usr/lib/aarch64-linux-gnu/odbc/", "/usr/lib/odbc/",
          "/usr/lib64/"})
        if (::access((std::string(pattern) + "libmaodbc.so").c_str(), R_OK) == 0)
            return std::string(pattern) + "libmaodbc.so";
    return "MariaDB Unicode";
}

sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

int FreePort() {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    ::bind(socket, reinterpret_cast<sockaddr*>(&address), size);
    ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
    ::close(socket);
    return ntohs(address.sin_port);
}

// Starts a program with its output in `log`, bound to the life of this process.
int Launch(const std::vector<std::string>& arguments, const std::string& log) {
    std::vector<char*> raw;
    for (const std::string& argument : arguments)
        raw.push_back(const_cast<char*>(argument.c_str()));
    raw.push_back(nullptr);
    const pid_t parent = ::getpid(), child = ::fork();
    if (child != 0) return child;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(126);
    const int out = ::open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(out, STDERR_FILENO);
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    ::execv(raw[0], raw.data());
    ::_exit(127);
}

int WaitFor(int pid) {
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string EndOf(const std::string& log) {
    std::ifstream file(log);
    std::string text((std::istreambuf_iterator<char>(file)), {});
    return text.size() > 600 ? text.substr(text.size() - 600) : text;
}

} // namespace

MariaDbServer& MariaDbServer::Instance() {
    static MariaDbServer server;
    return server;
}

MariaDbServer::MariaDbServer() : lclDriver(FindDriver()) {
    Start();
    if (!lclMissing.empty()) Stop();
}

MariaDbServer::~MariaDbServer() { Stop(); }

void MariaDbServer::Start() {
    const std::string server = FindProgram("mariadbd"), install = FindProgram("mariadb-install-db");
    if (server.empty() || install.empty()) {
        lclMissing = "MariaDB is not installed (mariadbd, mariadb-install-db)";
        return;
    }
    lclFolder = fs::absolute("mariadb-" + std::to_string(::getpid())).string();
    fs::create_directories(lclFolder);
    const std::string data = lclFolder + "/data", log = lclFolder + "/log";
    // The account that owns the folder runs the server: root names itself, others need not.
    const std::string user = ::geteuid() == 0 ? "--user=root" : "--skip-log-bin";

    const int installed =
        WaitFor(Launch({install, "--no-defaults", user, "--datadir=" + data,
                        "--auth-root-authentication-method=normal", "--skip-test-db"},
                       log));
    if (installed != 0) {
        lclMissing = "mariadb-install-db failed: " + EndOf(log);
        return;
    }
    // Table names without case, as on the servers that run on Windows: the statements differ in it.
    for (int attempt = 0; attempt < 3; ++attempt) { // the port may be taken meanwhile
        lclPort = FreePort();
        lclPid = Launch({server, "--no-defaults", user, "--datadir=" + data,
                         "--bind-address=127.0.0.1", "--port=" + std::to_string(lclPort),
                         "--socket=" + lclFolder + "/s", "--pid-file=" + lclFolder + "/pid",
                         "--character-set-server=utf8mb4", "--collation-server=utf8mb4_general_ci",
                         "--innodb-buffer-pool-size=64M", "--innodb-flush-log-at-trx-commit=0",
                         "--innodb-file-per-table=0", "--skip-innodb-doublewrite",
                         "--lower-case-table-names=1", "--max-allowed-packet=64M"},
                        log);
        for (int i = 0; i < 300; ++i) {
            if (Answers()) return;
            if (::waitpid(lclPid, nullptr, WNOHANG) == lclPid) {
                lclPid = 0;
                break;
            }
            std::this_thread::sleep_for(100ms);
        }
        if (lclPid != 0) break;
    }
    lclMissing = "mariadbd did not come up: " + EndOf(log);
}

bool MariaDbServer::Answers() const {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(lclPort);
    const bool up =
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return up;
}

void MariaDbServer::Stop() {
    if (lclPid > 0) {
        ::kill(lclPid, SIGTERM);
        bool ended = false;
        for (int i = 0; i < 100 && !ended; ++i) {
            ended = ::waitpid(lclPid, nullptr, WNOHANG) == lclPid;
            if (!ended) std::this_thread::sleep_for(100ms);
        }
        if (!ended) {
            ::kill(lclPid, SIGKILL);
            WaitFor(lclPid);
        }
        lclPid = 0;
    }
    std::error_code ignored;
    if (!lclFolder.empty()) fs::remove_all(lclFolder, ignored);
}

std::string MariaDbServer::ConnectionString(const std::string& database) const {
    return "DRIVER=" + lclDriver + ";SERVER=127.0.0.1;PORT=" + std::to_string(lclPort) +
           ";UID=root;" + (database.empty() ? "" : "DATABASE=" + database + ";");
}

} // namespace kavidex::tests
