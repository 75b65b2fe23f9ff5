#include "platform/FileLog.h"

#include <cstdio>
#include <optional>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/General.h"
#include "platform/Registry.h"
#include "platform/text.h"

namespace kavidex::platform {

namespace {

// One line, whatever the text holds.
std::string OneLine(std::string_view text) {
    std::string line(text);
    for (char& c : line)
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    return line;
}

std::string TimeStamp(const DateTime& now) {
    char text[96];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%03d", now.year, now.month,
                  now.day, now.hour, now.minute, now.second, now.millisecond);
    return text;
}

} // namespace

void FileLog::Write(std::string_view where, std::string_view what) noexcept {
    if (lclWriting) return; // a part of the machine that logs while it serves the log
    lclWriting = true;
    try {
        const auto path = Path();
        if (!path.empty()) {
            MakeRoom(path);
            AppendToFile(path, TimeStamp(lclClock.Now()) + ' ' + OneLine(where) + ": " +
                                   OneLine(what) + "\r\n");
        }
    } catch (...) {
        // The last resort has none of its own.
    }
    lclWriting = false;
}

std::string FileLog::Path() {
    std::optional<std::string> chosen;
    try {
        chosen = lclRegistry.Read(applicationName, "DebugFlags", "LogFile");
    } catch (const std::exception&) {
        // What is wrong with the options is worth a line too.
    }
    if (chosen) return Trim(*chosen);
    if (lclFolder.empty()) return {};
    if (!lclFiles.DirectoryExists(lclFolder)) lclFiles.CreateDirectories(lclFolder);
    return JoinPath(lclFolder, "Kavidex.log");
}

void FileLog::MakeRoom(const std::string& path) {
    if (!lclFiles.FileExists(path) || lclFiles.Size(path) < largest) return;
    const std::string old = path + ".old";
    if (lclFiles.FileExists(old)) lclFiles.Remove(old);
    lclFiles.Rename(path, old);
}

} // namespace kavidex::platform
