// The pages of the document that is shown, with what the user changed about them: turns and marks
// wait until they are saved, deleted and moved pages are written at once. The file is replaced by a
// whole one, and never where another changed the pages that this is about.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/viewer/pages/PageSource.h"
#include "imaging/PageOperations.h"
#include "imaging/Turn.h"
#include "imaging/annotations/Annotations.h"
#include "imaging/clsPageIds.h"
#include "platform/Error.h"

namespace kavidex::controls {

class PageDocument {
public:
    using Open = std::unique_ptr<PageSource> (*)(platform::Files& files, const std::string& path);

    // Throws platform::Error, as every call that reads or writes the file.
    PageDocument(platform::Files& files, std::string path, Open open, bool readOnly);

    const std::string& Path() const { return lclPath; }
    int Count() const { return static_cast<int>(lclPages.size()); }
    bool Editable() const { return lclEditable; }
    bool DrawsAnySize() { return Source().DrawsAnySize(); }
    const imaging::clsPageIds& Ids() const { return lclIds; }

    // Of a page as it is shown, that is, turned. Pages count from 1.
    PageShape Shape(int page);
    imaging::PageBitmap Picture(int page, std::uint32_t width, std::uint32_t height,
                                std::string& damage);
    imaging::PageBitmap Thumbnail(int page, std::uint32_t width, std::uint32_t height);
    imaging::annotations::Annotations& Marks(int page);

    void Rotate(int page, imaging::Turn turn);
    void MarksChanged(int page);
    bool Changed() const;

    // Writes turns and marks into the file. Where another replaced it meanwhile they go to the same
    // pages in there; the numbers of those that are not there any more are given.
    std::vector<int> Save();
    // Both take what waits to be saved along. Throw ChangedByAnother where the file is not the one
    // that is shown. One page stays at least.
    void Delete(const std::vector<int>& pages);
    // All pages, by their present numbers, in their new order.
    void Reorder(const std::vector<int>& order);

    // Reads the file anew; what waits to be saved is dropped.
    void ReadAgain();

    // A new file of these pages, as they were saved.
    void Extract(const std::vector<int>& pages, const std::string& target) const;

private:
    struct Page {
        int number = 1; // in the file
        imaging::Turn turn = imaging::Turn::None;
        std::optional<imaging::annotations::Annotations> marks; // as shown; read on first use
        bool marksChanged = false;
        std::optional<std::uint64_t> seen; // its fingerprint when it was first looked at

        bool Changed() const { return turn != imaging::Turn::None || marksChanged; }
    };

    PageSource& Source();
    Page& At(int page);
    Page& See(int page);
    PageShape StoredShape(const Page& page);
    void Read();
    void Renumber(int count);
    bool IsSame(PageSource& fresh) const;
    imaging::PlannedPage PlanOf(Page& page, int number);
    void Write(const std::vector<imaging::PlannedPage>& plan);
    void Rewrite(const std::vector<int>& order);

    platform::Files& lclFiles;
    std::string lclPath;
    Open lclOpen;
    std::unique_ptr<PageSource> lclSource; // null after a failure, until it is needed again
    bool lclEditable;
    std::vector<Page> lclPages;
    imaging::clsPageIds lclIds;
};

// The file was changed by another since it was read.
class ChangedByAnother : public platform::Error {
public:
    explicit ChangedByAnother(const std::string& path);
};

} // namespace kavidex::controls
