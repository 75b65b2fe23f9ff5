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

// A page as it is shown at one moment.
struct PageCopy {
    int number = 1; // in the file
    imaging::Turn turn = imaging::Turn::None;
    std::optional<imaging::annotations::Annotations> marks; // turned; null: those of the file
};

class PageDocument {
public:
    using Opener = std::unique_ptr<PageSource> (*)(platform::Files& files, const std::string& path);

    // Throws platform::Error, as every call that reads or writes the file.
    PageDocument(platform::Files& files, std::string path, Opener open, bool readOnly);

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

    // For work that takes longer than the document stays as it is: its file keeps being read.
    std::vector<PageCopy> Copies(const std::vector<int>& pages);
    std::shared_ptr<PageSource> Opened();

    void Rotate(int page, imaging::Turn turn);
    void MarksChanged(int page);
    bool Changed() const;

    // Throws ChangedByAnother where any page of the file is not the one that was read, also of
    // those that nobody looked at.
    void Confirm() { Confirmed(); }
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
        std::optional<std::uint64_t> seen; // its fingerprint as it was read or written
        std::optional<PageShape> shape;    // as stored, of a page that may have changes

        bool Changed() const { return turn != imaging::Turn::None || marksChanged; }
    };

    PageSource& Source();
    Page& At(int page);
    Page& See(int page);
    PageShape StoredShape(const Page& page);
    using Prints = std::vector<std::uint64_t>; // of a file's pages, in its order

    void Open();
    void OpenAgain();
    void Read();
    void Renumber(int count);
    Prints PrintsInFile() const;
    bool AreThoseRead(const Prints& now);
    Prints Confirmed();
    imaging::PlannedPage PlanOf(Page& page, int number);
    std::vector<imaging::PlannedPage> Merged(const Prints& now, std::vector<int>& lost);
    void Write(const std::vector<imaging::PlannedPage>& plan, const Prints& now, bool asRead);
    void Learn(const std::vector<imaging::PlannedPage>& plan, const Prints& before);
    void Rewrite(const std::vector<int>& order);

    platform::Files& lclFiles;
    std::string lclPath;
    Opener lclOpen;
    std::shared_ptr<PageSource> lclSource; // null after a failure, until it is needed again
    bool lclAsRead = false;                // it is the file that the pages were read from
    std::uint64_t lclSize = 0;             // of the file when it was opened
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
