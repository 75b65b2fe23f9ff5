#include "platform/posix/OptionFile.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "platform/posix/OpenFile.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/paths.h"
#include "platform/text.h"

namespace kavidex::platform::posix {

namespace {

struct Escape {
    char plain, letter;
};

// What would end or change a line; a backslash and the letter stand for it.
constexpr Escape escapes[] = {
    {'\\', '\\'}, {'\n', 'n'}, {'\r', 'r'}, {'=', 'e'}, {'/', 's'}, {'[', 'o'}, {'#', 'h'},
};

std::string Escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        char letter = 0;
        for (const Escape& known : escapes)
            if (known.plain == c) letter = known.letter;
        if (letter) out += '\\';
        out += letter ? letter : c;
    }
    return out;
}

std::string Plain(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\\' && i + 1 < text.size()) {
            c = text[++i];
            for (const Escape& known : escapes)
                if (known.letter == c) {
                    c = known.plain;
                    break;
                }
        }
        out += c;
    }
    return out;
}

// A line as it stands in the file. Lines that are neither section nor option (notes of the user)
// stay where they are.
struct Place {
    std::vector<std::string> lines;
    std::size_t line = 0; // of the key, or where it would be put
    bool section = false, key = false;
};

// Escaped key and value; false for a line that is no option.
bool SplitOption(const std::string& line, std::string& key, std::string& value) {
    const auto equals = line.find('=');
    if (line.empty() || line[0] == '#' || line[0] == '[' || equals == std::string::npos)
        return false;
    key = line.substr(0, equals);
    value = line.substr(equals + 1);
    return true;
}

std::string Heading(std::string_view application, std::string_view section) {
    return "[" + Escaped(application) + "/" + Escaped(section) + "]";
}

Place Find(const std::string& text, const std::string& heading, std::string_view key) {
    Place place;
    place.lines = Split(text, '\n');
    if (!place.lines.empty() && place.lines.back().empty()) place.lines.pop_back();
    place.line = place.lines.size();
    bool inside = false;
    for (std::size_t i = 0; i < place.lines.size(); ++i) {
        const std::string& line = place.lines[i];
        if (!line.empty() && line[0] == '[') {
            inside = EqualNoCase(line, heading);
            place.section = place.section || inside;
        } else if (std::string found, value;
                   inside && SplitOption(line, found, value) && EqualNoCase(Plain(found), key)) {
            place.line = i;
            place.key = true;
            return place;
        }
        if (inside) place.line = i + 1;
    }
    return place;
}

} // namespace

std::optional<std::string> OptionFile::Read(std::string_view application, std::string_view section,
                                            std::string_view key) {
    PosixFiles files;
    if (!files.FileExists(lclPath)) return std::nullopt;
    const Place place = Find(files.ReadAll(lclPath), Heading(application, section), key);
    std::string found, value;
    if (!place.key || !SplitOption(place.lines[place.line], found, value)) return std::nullopt;
    return Plain(value);
}

void OptionFile::Write(std::string_view application, std::string_view section, std::string_view key,
                       std::string_view value) {
    PosixFiles files;
    files.CreateDirectories(NativeFolder(lclPath));
    const std::string lockPath = lclPath + ".lock";
    const OpenFile lock(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!lock || ::flock(lock.Get(), LOCK_EX) != 0) Fail(errno, "lock", lockPath);

    const bool there = files.FileExists(lclPath);
    Place place =
        Find(there ? files.ReadAll(lclPath) : std::string(), Heading(application, section), key);
    const std::string line = Escaped(key) + "=" + Escaped(value);
    if (place.key) {
        place.lines[place.line] = line;
    } else {
        if (!place.section) place.lines.push_back(Heading(application, section));
        const std::size_t at = place.section ? place.line : place.lines.size();
        place.lines.insert(place.lines.begin() + static_cast<std::ptrdiff_t>(at), line);
    }
    std::string text;
    for (const std::string& each : place.lines) text.append(each).append("\n");
    files.WriteAll(lclPath, text);
}

std::string DefaultOptionFile() {
    const char* named = std::getenv("XDG_CONFIG_HOME");
    const std::string base = named && *named ? named : HomeFolder() + "/.config";
    return base + "/kavidex/options.ini";
}

} // namespace kavidex::platform::posix
