#include "imaging/clsPageIds.h"

#include <algorithm>
#include <string>

#include "platform/Error.h"

namespace kavidex::imaging {

void clsPageIds::SetIds(std::int32_t pageCount) {
    lclPages.clear();
    for (std::int32_t page = 1; page <= pageCount; ++page) lclPages.push_back({++lclLastId, page});
}

void clsPageIds::SetIds(const std::vector<std::int32_t>& ids) {
    lclPages.clear();
    for (const std::int32_t id : ids) {
        lclPages.push_back({id, 0});
        lclLastId = std::max(lclLastId, id);
    }
    Number();
}

std::vector<std::int32_t> clsPageIds::GetIds() const {
    std::vector<std::int32_t> ids;
    for (const clsPageId& page : lclPages) ids.push_back(page.PageId);
    return ids;
}

std::int32_t clsPageIds::GetPageId(std::int32_t pageNumber) const {
    return pageNumber >= 1 && pageNumber <= Count() ? Item(pageNumber).PageId : 0;
}

std::int32_t clsPageIds::PageNumberOf(std::int32_t pageId) const {
    for (const clsPageId& page : lclPages)
        if (page.PageId == pageId) return page.PageNumber;
    return 0;
}

std::int32_t clsPageIds::AddPageId(std::int32_t pageNumber) {
    const std::int32_t place = std::clamp(pageNumber, 1, Count() + 1);
    lclPages.insert(lclPages.begin() + (place - 1), {++lclLastId, place});
    Number();
    return lclLastId;
}

bool clsPageIds::DeletePageId(std::int32_t pageId) {
    const std::int32_t number = PageNumberOf(pageId);
    if (number != 0) Remove(number);
    return number != 0;
}

void clsPageIds::Move(std::int32_t fromNumber, std::int32_t toNumber) {
    const clsPageId moved = Item(fromNumber);
    Item(toNumber); // must be there too
    lclPages.erase(lclPages.begin() + (fromNumber - 1));
    lclPages.insert(lclPages.begin() + (toNumber - 1), moved);
    Number();
}

const clsPageId& clsPageIds::Item(std::int32_t pageNumber) const {
    if (pageNumber < 1 || pageNumber > Count())
        throw platform::Error(platform::errors::invalidArgument,
                              "The document has no page " + std::to_string(pageNumber),
                              "clsPageIds");
    return lclPages[static_cast<std::size_t>(pageNumber - 1)];
}

void clsPageIds::Remove(std::int32_t pageNumber) {
    Item(pageNumber);
    lclPages.erase(lclPages.begin() + (pageNumber - 1));
    Number();
}

void clsPageIds::Number() {
    std::int32_t number = 0;
    for (clsPageId& page : lclPages) page.PageNumber = ++number;
}

} // namespace kavidex::imaging
