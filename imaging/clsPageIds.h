// The pages of the document shown, each under an id that it keeps while pages before it are
// deleted, exported or moved; its number is its place, from 1.
#pragma once

#include <cstdint>
#include <vector>

namespace kavidex::imaging {

struct clsPageId {
    std::int32_t PageId = 0;
    std::int32_t PageNumber = 0;
};

class clsPageIds {
public:
    // New ids for a document of so many pages. An id is never given twice by one object.
    void SetIds(std::int32_t pageCount);
    // The pages' ids in their order, as GetIds gave them.
    void SetIds(const std::vector<std::int32_t>& ids);
    std::vector<std::int32_t> GetIds() const;

    std::int32_t GetPageId(std::int32_t pageNumber) const; // 0 where there is no such page
    std::int32_t PageNumberOf(std::int32_t pageId) const;  // 0 where it is gone
    // A new page before the one that has this number now, or at the end; its id.
    std::int32_t AddPageId(std::int32_t pageNumber);
    bool DeletePageId(std::int32_t pageId); // false where it is gone
    void Move(std::int32_t fromNumber, std::int32_t toNumber);

    // From 1, in page order. Throws platform::Error for a page that is not there, as Move does.
    const clsPageId& Item(std::int32_t pageNumber) const;
    void Remove(std::int32_t pageNumber);
    std::int32_t Count() const { return static_cast<std::int32_t>(lclPages.size()); }

private:
    void Number();

    std::vector<clsPageId> lclPages;
    std::int32_t lclLastId = 0;
};

} // namespace kavidex::imaging
