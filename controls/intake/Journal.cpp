#include "controls/intake/Journal.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "controls/intake/TextLines.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Guids.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr char tab = '\t';
constexpr std::string_view note = ".txt";

std::string OneLine(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    return text;
}

// A line each: the database, the tree, and the files.
std::string TextOf(const Dossier& dossier, const std::vector<IntakeFile>& files) {
    std::string text =
        "\xEF\xBB\xBF" + dossier.database + "\r\n" + std::to_string(dossier.tree) + "\r\n";
    for (const auto& file : files)
        text += std::string(file.scanned ? "1" : "0") + (file.comesBack ? "1" : "0") + tab +
                file.file + tab + OneLine(file.description) + "\r\n";
    return text;
}

std::vector<IntakeFile> FilesOfNote(const TextLines& lines) {
    std::vector<IntakeFile> files;
    for (std::size_t at = 2; at < lines.Count(); ++at) {
        const auto parts = platform::Split(lines.Line(at), tab);
        if (parts.size() < 3 || parts[0].size() != 2) continue;
        files.push_back({parts[1], parts[0][0] == '1', true, parts[2], parts[0][1] == '1'});
    }
    return files;
}

// A database in memory ends with the process, and one without a name is not found again.
bool CanBeFoundAgain(const Dossier& dossier) {
    return dossier.tree != 0 && !dossier.database.empty() && dossier.database != ":memory:";
}

} // namespace

std::string Journal::Folder() const { return lclMachine.files.TemporaryFolder() + "Kavidex"; }

Journal::Own& Journal::OwnFor(const Dossier& dossier) {
    const auto found = std::find_if(lclOwn.begin(), lclOwn.end(),
                                    [&](const Own& own) { return own.dossier == dossier; });
    if (found != lclOwn.end()) return *found;
    return lclOwn.emplace_back(Own{dossier, {}, {}});
}

void Journal::Note(const Dossier& dossier, const std::vector<IntakeFile>& files) {
    if (!CanBeFoundAgain(dossier)) return;
    try {
        auto& own = OwnFor(dossier);
        if (!files.empty()) {
            if (own.path.empty()) Begin(own);
            lclMachine.files.WriteAll(own.path, TextOf(dossier, files));
        } else if (!own.path.empty()) {
            Remove(own.path);
            own = {dossier, {}, {}};
        }
        while (!lclAdopted.empty()) {
            Remove(lclAdopted.back().path);
            lclAdopted.pop_back();
        }
    } catch (const std::exception& error) {
        lclMachine.log.Write("Journal", error.what());
    }
}

void Journal::Begin(Own& own) const {
    const auto guid = lclMachine.guids.New();
    if (!guid) throw platform::Error(platform::errors::fail, "The system makes no guid");
    lclMachine.files.CreateDirectories(Folder());
    own.path =
        platform::JoinPath(Folder(), "wacht-" + platform::GuidText(*guid).substr(1, 36) + ".txt");
    try {
        own.alive = LockOf(own.path);
    } catch (const std::exception& error) { // the note counts for more
        lclMachine.log.Write("Journal", error.what());
    }
}

Journal::LockPtr Journal::LockOf(const std::string& path) const {
    return lclMachine.files.Lock(path.substr(0, path.size() - note.size()) + ".lock");
}

void Journal::Remove(const std::string& path) const {
    if (lclMachine.files.FileExists(path)) lclMachine.files.Remove(path);
}

std::vector<IntakeFile> Journal::LeftFor(const Dossier& dossier) {
    std::vector<IntakeFile> left;
    if (!CanBeFoundAgain(dossier)) return left;
    const auto noted = [&](auto work) {
        try {
            work();
        } catch (const std::exception& error) {
            lclMachine.log.Write("Journal", error.what());
        }
    };
    std::vector<std::string> names;
    noted([&] { names = lclMachine.files.List(Folder(), "wacht-*" + std::string(note), false); });
    for (const auto& name : names)
        noted([&] { Adopt(platform::JoinPath(Folder(), name), dossier, left); });
    return left;
}

void Journal::Adopt(const std::string& path, const Dossier& dossier,
                    std::vector<IntakeFile>& left) {
    for (const auto& own : lclOwn)
        if (own.path == path) return;
    auto held = LockOf(path);
    if (!held) return;
    const TextLines lines(lclMachine.files.ReadAll(path));
    if (lines.Count() < 2 || lines.Line(0) != dossier.database ||
        lines.Line(1) != std::to_string(dossier.tree))
        return;
    for (auto& file : FilesOfNote(lines)) left.push_back(std::move(file));
    lclAdopted.push_back({path, std::move(held)});
}

} // namespace kavidex::controls
