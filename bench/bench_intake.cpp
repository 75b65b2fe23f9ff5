// Documents dropped together, against flushed copies with a commit each and against fewer of them,
// and the look at the scan queue against a bare listing of its folder.
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <sqlite3.h>

#include "bench/ratio.h"
#include "controls/binder/ctrlCorrespondence.h"
#include "controls/tree/ctrlTree.h"
#include "data/clsSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "model/clsItem.h"
#include "model/clsTree.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace {

using namespace kavidex;
namespace fs = std::filesystem;

constexpr int few = 1000, many = 10000;
constexpr std::size_t size = 20000;

std::string Backslashes(const fs::path& path) {
    return platform::Replace(path.string(), "/", "\\");
}

struct Dossiers {
    explicit Dossiers(const fs::path& where)
        : folder(where), database(data::EmbeddedDatabase::Create(Backslashes(where / "all.kvx"))) {
        binder.SetDbConnection(database);
        data::clsSettings settings(platform::TheWorkstation());
        settings.SetDbConnection(database);
        fs::create_directories(folder / "store");
        settings.SetSetting("Storage", "DocumentPath", Backslashes(folder / "store"));
        settings.SetSetting("DossierSettings", "ScanQueue", Backslashes(folder / "queue"));
    }
    void Drop(const std::vector<std::string>& files) {
        if (binder.OpenOrCreate("D" + std::to_string(++opened), "Dossier", "", "", "") != 0)
            std::abort();
        controls::DropData data;
        data.hasFiles = true;
        data.files = files;
        binder.treCorr().Dropped(data, binder.treCorr().Tree()->Item()->Id());
        if (binder.ContainsDocuments("") != static_cast<int>(files.size())) std::abort();
    }

    const fs::path folder;
    data::ConnectionPtr database;
    controls::ctrlCorrespondence binder{platform::TheWorkstation()};
    int opened = 0;
};

std::vector<std::string> MakeFiles(const fs::path& folder, int count, const char* extension) {
    fs::create_directories(folder);
    std::vector<std::string> files;
    for (int i = 0; i < count; ++i) {
        const auto path = folder / (std::to_string(i) + extension);
        std::ofstream(path) << std::string(size, 'x');
        files.push_back(Backslashes(path));
    }
    return files;
}

// Written whole, as safely as the store's: temporary name, flush, rename, flush the folder.
void CopyWhole(const fs::path& target, const std::string& bytes) {
    const fs::path part = target.string() + ".part";
    const int file = ::open(part.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (::write(file, bytes.data(), bytes.size()) < 0) std::abort();
    ::fsync(file);
    ::close(file);
    fs::rename(part, target);
    const int folder = ::open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY);
    ::fsync(folder);
    ::close(folder);
}

class Commits {
public:
    explicit Commits(const fs::path& path) {
        if (sqlite3_open(path.c_str(), &lclDatabase) != SQLITE_OK) std::abort();
        Run("create table documents (id integer primary key, name text)");
    }
    ~Commits() { sqlite3_close(lclDatabase); }
    void Run(const char* statement) {
        if (sqlite3_exec(lclDatabase, statement, nullptr, nullptr, nullptr) != SQLITE_OK)
            std::abort();
    }

private:
    sqlite3* lclDatabase = nullptr;
};

bool Drops(Dossiers& dossiers, const std::vector<std::string>& files) {
    const std::vector<std::string> some(files.begin(), files.begin() + few);
    const auto plain = dossiers.folder / "plain";
    fs::create_directories(plain);
    Commits commits(dossiers.folder / "plain.db");
    const std::string bytes(size, 'x');
    int round = 0;
    const auto bare = [&] {
        ++round;
        for (int i = 0; i < few; ++i) {
            CopyWhole(plain / (std::to_string(round) + "-" + std::to_string(i)), bytes);
            commits.Run("insert into documents (name) values ('a')");
        }
    };
    const bool fast = bench::AtLeast("drop 1,000 files / copies and commits",
                                     bench::Measure([&] { dossiers.Drop(some); }, bare, 3), 1);
    const auto times =
        bench::Measure([&] { dossiers.Drop(files); }, [&] { dossiers.Drop(some); }, 3);
    return bench::AtMost("drop 10,000 files / 1,000 files", times, 12) && fast;
}

// `key`: of a folder of many files in the queue.
bool Queue(Dossiers& dossiers, const char* key, const char* name) {
    const auto list = [&] {
        int found = 0;
        DIR* const opened = ::opendir((dossiers.folder / "queue" / key).c_str());
        while (opened && ::readdir(opened)) ++found;
        ::closedir(opened);
        if (found < many) std::abort();
    };
    // Nobody sits here: the question is answered with no.
    const auto look = [&] { dossiers.binder.fncCheckDocumentQueue(key); };
    return bench::AtMost(name, bench::Measure(look, list, 15), 2);
}

} // namespace

int main() {
    const fs::path folder =
        fs::temp_directory_path() / ("kavidex-bench-intake-" + std::to_string(::getpid()));
    fs::create_directories(folder);
    bool good = false;
    {
        Dossiers dossiers(folder);
        good = Drops(dossiers, MakeFiles(folder / "in", many, ".txt"));
        MakeFiles(folder / "queue" / "images", many, ".tif");
        good = Queue(dossiers, "images", "look at a queue of 10,000 / bare listing") && good;
        MakeFiles(folder / "queue" / "others", many, ".txt");
        good = Queue(dossiers, "others", "the same without any image / bare listing") && good;
    }
    fs::remove_all(folder);
    return good ? 0 : 1;
}
