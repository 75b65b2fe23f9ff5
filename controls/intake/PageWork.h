// Splitting a scanned document into its pages, and stapling several documents into one.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/intake/Filer.h"

namespace kavidex::controls {

class PageWork {
public:
    explicit PageWork(IntakeSite& site) : lclSite(site), lclFiler(site) {}

    // The selected document, into its own folder; the source goes only after all its pages are seen
    // in the store. The user is told what stands in the way.
    void Split(bool deleteSource);
    // The selected documents in the order of the tree, into the folder of the first.
    void Staple(bool deleteSources);

private:
    struct Source {
        ItemPtr item;
        std::string path;
        int pages = 0;
    };
    bool Open(const ItemPtr& item, Source& source) const;
    std::vector<Source> OpenSelected(std::string& leftOut, bool& broken) const;
    std::string NewPath(std::string_view rest) const;
    std::vector<std::string> WritePages(const Source& source) const;
    bool WriteStapled(const std::vector<Source>& sources, const std::string& target) const;
    bool FileAll(const ItemPtr& folder, const std::vector<IntakeFile>& made, int pagesEach);
    bool IsStored(const ItemPtr& item, const std::string& made, int pages) const;
    bool IsOpen(const Dossier& dossier, const model::clsItem& item) const;
    void TakeAway(const std::vector<IntakeFile>& made) const;
    void TellUnusable(const std::string& description, const std::string& cause,
                      std::string_view words) const;
    // `place`: the file or folder that the error is about.
    void TellUnreadable(const Source& source, const std::string& place, std::int32_t number,
                        std::string_view words) const;

    IntakeSite& lclSite;
    Filer lclFiler;
};

} // namespace kavidex::controls
