#include "controls/intake/Backlog.h"

#include <algorithm>
#include <iterator>

#include "model/Store.h"
#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/documentFile.h"
#include "model/filing.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::size_t keyLength = 12, savedEvery = 64;
constexpr std::string_view name = "Name", handled = "Handled", section = "[Doc]";

// What the name of the folder begins with: it is data, whatever the user's language. Earlier
// versions made it in that.
constexpr std::string_view folderNames[] = {"Conversie tab", "Conversion tab",
                                            "Konvertierungsregister", "Onglet de conversion"};

// "0012" and "12" are one number; null for what is none.
std::optional<std::string> NumberOf(std::string_view text) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return {};
    const auto first = text.find_first_not_of('0');
    return first == std::string_view::npos ? "0" : std::string(text.substr(first));
}

std::string LookUpKey(std::string_view key, std::string_view what) {
    const auto number = NumberOf(key);
    return platform::LowerCase(number ? *number : std::string(key)) + " " +
           platform::LowerCase(what);
}

bool HasSection(const TextLines& text) {
    for (std::size_t at = 0; at < text.Count(); ++at)
        if (platform::EqualNoCase(platform::Trim(text.Line(at)), section)) return true;
    return false;
}

std::string IndexOf(platform::Files& files, std::string_view folder) {
    std::vector<std::string> found;
    for (const auto& file : files.List(folder, "*.ini")) {
        const auto path = platform::JoinPath(folder, file);
        if (platform::EqualNoCase(file, "index.ini")) return path;
        if (!platform::EqualNoCase(file, "desktop.ini")) found.push_back(path); // the system's
    }
    for (const auto& path : found)
        if (HasSection(TextLines(files.ReadAll(path)))) return path;
    return found.empty() ? platform::JoinPath(folder, "index.ini") : found.front();
}

} // namespace

// --- The index ----------------------------------------------------------------------------------

BacklogIndex::BacklogIndex(platform::Files& files, std::string_view folder,
                           const std::vector<std::string>& images)
    : lclFiles(files), lclPath(IndexOf(files, folder)),
      lclText(files.FileExists(lclPath) ? files.ReadAll(lclPath) : std::string()) {
    for (const auto& image : images)
        if (const auto number = NumberOf(platform::WithoutExtension(image))) ++lclImagesOf[*number];
    bool found = false, within = false;
    for (std::size_t at = 0; at < lclText.Count(); ++at) {
        const auto line = platform::Trim(lclText.Line(at));
        if (line.starts_with("[")) within = platform::EqualNoCase(line, section);
        found = found || within;
        if (!within) continue;
        if (!line.empty()) lclEnd = at + 1;
        const auto sign = line.find('=');
        const auto space = line.substr(0, sign).find(' ');
        if (sign == std::string::npos || space == std::string::npos) continue;
        lclEntries[LookUpKey(line.substr(0, space),
                             platform::Trim(line.substr(space, sign - space)))] = {
            platform::Trim(line.substr(sign + 1)), at};
    }
    if (found) return;
    lclText.Append(section);
    lclEnd = lclText.Count();
}

// Its number, unless two images share it: then the name itself.
std::string BacklogIndex::KeyOf(const std::string& image) const {
    const auto stem = platform::WithoutExtension(image);
    const auto number = NumberOf(stem);
    const auto count = number ? lclImagesOf.find(*number) : lclImagesOf.end();
    return count != lclImagesOf.end() && count->second > 1 ? image : stem;
}

const BacklogIndex::Entry* BacklogIndex::Find(const std::string& key, std::string_view what) const {
    const auto found = lclEntries.find(LookUpKey(key, what));
    return found == lclEntries.end() ? nullptr : &found->second;
}

bool BacklogIndex::IsHandled(const std::string& image) const {
    const auto* const mark = Find(KeyOf(image), handled);
    return mark && !mark->value.empty() && mark->value != "0" &&
           !platform::EqualNoCase(mark->value, "False");
}

std::vector<std::string> BacklogIndex::LeftOf(const std::vector<std::string>& images) const {
    std::vector<std::string> left;
    std::copy_if(images.begin(), images.end(), std::back_inserter(left),
                 [&](const std::string& image) { return !IsHandled(image); });
    return left;
}

std::string BacklogIndex::NameOf(const std::string& image) const {
    const auto stem = platform::WithoutExtension(image);
    const auto* const named = Find(stem, name);
    return named && !named->value.empty() ? named->value : stem;
}

void BacklogIndex::MarkHandled(const std::string& image) {
    const auto key = KeyOf(image);
    const auto* const mark = Find(key, handled);
    const auto line = mark ? mark->line : lclEnd;
    const auto text = key + " " + std::string(handled) + "=True";
    if (mark)
        lclText.Set(line, text);
    else
        lclText.Insert(lclEnd++, text);
    lclEntries[LookUpKey(key, handled)] = {"True", line};
}

void BacklogIndex::Save() { lclFiles.WriteAll(lclPath, lclText.Bytes()); }

// --- Taking in ----------------------------------------------------------------------------------

std::string Backlog::FolderName(std::string_view key) {
    const auto units =
        platform::ToUtf16(std::string(keyLength, '0') + std::string(platform::TrimView(key)));
    return platform::ToUtf8(std::u16string_view(units).substr(units.size() - keyLength));
}

// The folder that an earlier run made, or a new one.
ItemPtr Backlog::Folder() const {
    const auto tree = lclSite.Tree();
    const auto root = tree->Item();
    for (const auto begin : folderNames)
        if (const auto children = root->ChildCollection())
            for (const auto& child : children->Items())
                if (child->Id() > 0 && child->AllowChildren() &&
                    platform::EqualNoCase(child->Description().substr(0, begin.size()), begin))
                    return child;
    const auto made = tree->AddChildTab(std::string(folderNames[0]) + " " +
                                            platform::DayFirst(lclSite.Machine().clock.Now()),
                                        root->Id());
    if (made) lclSite.Show(made, root->Id(), false);
    return made;
}

bool Backlog::IsFiled(const ItemPtr& folder, const std::string& path,
                      const std::string& description) const {
    const auto children = folder->ChildCollection();
    if (!children) return false;
    model::DocumentFiles documents(lclSite.Machine(), lclSite.DbConnection());
    for (const auto& child : children->Items()) {
        if (child->AllowChildren() || child->Description() != description) continue;
        const auto stored = documents.Of(*child);
        if (stored.HasFile() && lclSite.Machine().files.SameBytes(path, stored.path)) return true;
    }
    return false;
}

void Backlog::Import(std::string_view key) {
    const auto& machine = lclSite.Machine();
    const auto tree = lclSite.Tree();
    const auto dossier = lclSite.OpenDossier();
    // Without a key it would be the folder of whoever comes first.
    if (!tree || !tree->Item() || platform::TrimView(key).empty() || lclSite.Lock().Held()) return;
    const auto root = platform::Trim(
        model::ReadSetting(machine, lclSite.DbConnection(), "BackLogSettings", "Path")
            .value_or(std::string()));
    if (root.empty()) return;
    const auto folder = platform::JoinPath(root, FolderName(key));
    if (platform::EqualNoCase(platform::GetRegSetting(machine, platform::applicationName,
                                                      "DebugFlags", "ShowExtId", ""),
                              "true"))
        machine.messages.Show({folder, lclSite.Text("BacklogPath for Backlog")});
    if (dossier != lclSite.OpenDossier()) return;
    if (!platform::IsFileName(FolderName(key))) return;
    const auto images = machine.files.List(folder, "*.tif");
    if (images.empty()) return;

    if (BacklogIndex(machine.files, folder, images).LeftOf(images).empty()) return;
    // Two that take it in at once would both take all of it.
    const auto lock = machine.files.Lock(platform::JoinPath(folder, lockName));
    if (!lock) return machine.log.Write("Backlog", "Somebody else takes in " + folder);
    BacklogIndex index(machine.files, folder, images); // as it is now
    const auto left = index.LeftOf(images);
    if (left.empty()) return;
    index.Save(); // what cannot be marked would come in twice
    const auto target = Folder();
    if (dossier != lclSite.OpenDossier()) return; // the host left it on hearing of the folder
    if (!target) throw platform::Error(platform::errors::fail, "The folder was not taken.");
    const auto description = [&](const std::string& image) {
        return platform::Trim(model::ColumnText(index.NameOf(image)));
    };
    std::map<std::string, int> unmarked; // documents in the dossier that no mark accounts for
    for (const auto& image : images)
        if (index.IsHandled(image)) --unmarked[description(image)];
    if (const auto children = target->ChildCollection())
        for (const auto& child : children->Items())
            if (child->Id() > 0) ++unmarked[child->Description()];

    std::vector<IntakeFile> files;
    std::vector<std::string> names;
    for (const auto& image : left) {
        const auto path = platform::JoinPath(folder, image);
        const auto text = description(image);
        if (unmarked[text] > 0 && IsFiled(target, path, text)) {
            --unmarked[text]; // an earlier run ended between the document and its mark
            index.MarkHandled(image);
            continue;
        }
        files.push_back({path, true, false, text, true});
        names.push_back(image);
    }
    std::size_t marked = 0;
    const auto report = lclFiler.File(target, EntriesOf(files), [&](std::size_t at) {
        index.MarkHandled(names[at]);
        if (++marked % savedEvery == 0) index.Save();
    });
    index.Save();
    TellNotAdded(lclSite, report);
}

} // namespace kavidex::controls
