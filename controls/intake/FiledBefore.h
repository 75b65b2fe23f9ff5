// Whether a document that comes in stands in the open dossier already: a run that was cut off may
// have filed it, and not come to deleting its source.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "controls/intake/IntakeSite.h"

namespace kavidex::controls {

// What cannot be looked at, on a share that is away, is still there.
bool IsGone(const platform::Workstation& machine, const std::string& file);

// For one look at any number of files: the documents of a type are found once.
class FiledBefore {
public:
    enum class Answer {
        No,
        Filed,         // and its source is deleted now
        FiledButThere, // its source could not be deleted
        Unknown,       // the file, the store or the database cannot be read
    };
    explicit FiledBefore(IntakeSite& site);

    Answer Look(const std::string& file); // throws nothing

private:
    struct Stored {
        std::string path;
        std::uint64_t size;
    };
    struct OfType {
        std::vector<Stored> documents;
        bool whole = true; // false: there may be more
    };
    const OfType& DocumentsOf(const std::string& type);
    void Resolve(const std::vector<ItemPtr>& items, OfType& found) const;
    Answer Compare(const std::string& file, const OfType& stored) const;

    IntakeSite& lclSite;
    const std::string lclCaption;
    std::map<std::string, OfType> lclTypes;
};

} // namespace kavidex::controls
