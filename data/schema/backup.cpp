// The daily copy and repair of an Access file, and how many copies stay.
#include <algorithm>
#include <exception>
#include <functional>

#include "data/schema/modDataBase.h"
#include "platform/BusyDialog.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::data {
namespace {

constexpr std::size_t copiesKept = 7, dateLength = 8;
constexpr std::int32_t noDate = 99999999;

// One row a name that a database file goes by; the last is for all other names too.
struct FileName {
    std::string_view part, pattern;
    std::size_t datePosition, nameLength;
};
constexpr FileName fileNames[] = {
    {"lumaformlocaldb", "LumaformlocalDb*.mdb", 16, 19},
    {"lumaformdb", "LumaformDb*.mdb", 11, 14},
    {"", "kavidex*.mdb", 8, 11},
};

// The date in the eight characters at `start` (from 0), noDate when they are no digits.
std::int32_t DateAt(const std::u16string& name, std::size_t start) {
    if (start + dateLength > name.size()) return noDate;
    std::int32_t date = 0;
    for (const char16_t c : name.substr(start, dateLength)) {
        if (c < u'0' || c > u'9') return noDate;
        date = date * 10 + (c - u'0');
    }
    return date;
}

std::string WithoutLast(std::string_view text, std::size_t count) {
    std::u16string wide = platform::ToUtf16(text);
    wide.resize(wide.size() - std::min(count, wide.size()));
    return platform::ToUtf8(wide);
}

void Logged(const platform::Workstation& workstation, const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& error) {
        workstation.log.Write("BackupAndRepair", error.what());
    }
}

void RemoveOldCopies(const platform::Workstation& workstation, std::string_view path) {
    const RetentionSet set = RetentionOf(path);
    // The folder is what stands before the assumed name, which need not end at a separator.
    const std::string all = set.folder + set.pattern;
    const std::vector<std::string> names =
        workstation.files.List(platform::FolderOf(all), platform::FileName(all));
    for (const std::string& name : CopiesToDelete(names, set.datePosition))
        Logged(workstation, [&] { workstation.files.Remove(set.folder + name); });
}

} // namespace

RetentionSet RetentionOf(std::string_view path) {
    const std::string lower = platform::LowerCase(path);
    for (const FileName& row : fileNames)
        if (lower.find(row.part) != std::string::npos)
            return {WithoutLast(path, row.nameLength), std::string(row.pattern), row.datePosition};
    return {};
}

std::vector<std::string> CopiesToDelete(const std::vector<std::string>& names,
                                        std::size_t datePosition) {
    struct Copy {
        std::string name;
        std::int32_t date;
    };
    std::vector<Copy> copies;
    for (const std::string& name : names) {
        const std::u16string wide = platform::ToUtf16(name);
        if (wide.size() <= 14 || DateAt(wide, datePosition - 1) == noDate) continue;
        copies.push_back({name, DateAt(wide, wide.size() - 12)});
    }
    std::vector<std::string> deleted;
    for (std::size_t left = copies.size(); left > copiesKept; --left) {
        const auto oldest =
            std::min_element(copies.begin(), copies.end(),
                             [](const Copy& a, const Copy& b) { return a.date < b.date; });
        if (oldest->date == noDate) break;
        deleted.push_back(oldest->name);
        oldest->date = noDate;
    }
    return deleted;
}

int BackupAndRepair(const platform::Workstation& workstation, AccessRepair& repair,
                    std::string_view path, const Translation& translation) {
    int result = 1;
    Logged(workstation, [&] {
        if (platform::ToUtf16(path).size() < 5) return;
        const std::string base = WithoutLast(path, 4);
        const std::string backup = base + platform::DateNumber(workstation.clock.Now()) + ".mdb";
        if (workstation.files.FileExists(base + ".ldb") || workstation.files.FileExists(backup))
            return;
        result = 0;
        platform::BusyScope busy(
            workstation.busy, Translated(translation, "Database backup and compress"),
            Translated(translation,
                       "Bezig met het aanmaken van een backup en het vrijmaken van ruimte.\r\n"
                       "Wacht totdat dit proces is afgerond en sluit Lumaform niet af."));
        Logged(workstation, [&] { workstation.files.Copy(path, backup, true); });
        Logged(workstation, [&] {
            repair.Configure("Microsoft Access Driver (*.MDB)",
                             "REPAIR_DB=\"" + std::string(path) +
                                 "\";PWD=" + std::string(accessPassword));
        });
        Logged(workstation, [&] { RemoveOldCopies(workstation, path); });
    });
    return result;
}

} // namespace kavidex::data
