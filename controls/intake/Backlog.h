// Documents that were scanned before their dossier existed: a folder of images with an index that
// names them and tells which are taken in.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/intake/Filer.h"
#include "controls/intake/TextLines.h"

namespace kavidex::platform {
class Files;
}

namespace kavidex::controls {

// The index of one backlog folder: "<number> Name" and "<number> Handled" in its section "Doc".
class BacklogIndex {
public:
    // Reads the folder's own (*.ini), or begins one. Throws platform::Error.
    BacklogIndex(platform::Files& files, std::string_view folder,
                 const std::vector<std::string>& images);

    bool IsHandled(const std::string& image) const;
    std::vector<std::string> LeftOf(const std::vector<std::string>& images) const; // not handled
    std::string NameOf(const std::string& image) const; // the file's own where the index has none
    void MarkHandled(const std::string& image);         // on disk with the next Save
    void Save();

private:
    std::string KeyOf(const std::string& image) const;
    struct Entry {
        std::string value;
        std::size_t line;
    };
    const Entry* Find(const std::string& key, std::string_view what) const;

    platform::Files& lclFiles;
    std::string lclPath;
    TextLines lclText;
    std::map<std::string, Entry> lclEntries; // "12 name", in lower case
    std::map<std::string, int> lclImagesOf;  // how many bear that number
    std::size_t lclEnd = 0;                  // of the section, where new entries go
};

class Backlog {
public:
    explicit Backlog(IntakeSite& site) : lclSite(site), lclFiler(site) {}

    // Takes in what the folder of that key still holds, without asking; what is marked is not taken
    // in again. Throws when a setting, the folder or its index cannot be read or written.
    void Import(std::string_view key);

    // Twelve characters, filled up with zeros from the left.
    static std::string FolderName(std::string_view key);

private:
    ItemPtr Folder() const;
    bool IsFiled(const ItemPtr& folder, const std::string& path, const std::string& name) const;

    IntakeSite& lclSite;
    Filer lclFiler;
};

} // namespace kavidex::controls
