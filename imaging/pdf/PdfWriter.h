// The body of a PDF file: numbered objects, written one after the other as they become known, the
// list of pages and the table of places. Nothing but that table is kept in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::imaging {

// Takes the next bytes of the file; throws when they cannot be written.
using ByteSink = std::function<void(std::string_view)>;

class PdfWriter {
public:
    explicit PdfWriter(ByteSink sink);

    // A number for an object that is written later.
    int Reserve();
    void Object(int number, std::string_view body);
    int Object(std::string_view body);
    // `entries` without brackets; the length is added.
    void Stream(int number, std::string_view entries, std::string_view data);
    int Stream(std::string_view entries, std::string_view data);

    // Sizes in points; larger ones than a page can have are written in a larger unit.
    void Page(double width, double height, std::string_view resources, std::string_view content);
    std::size_t PageCount() const { return lclPages.size(); }

    // The list of pages and what closes the file. At least one page must be there.
    void Finish(std::string_view title);

private:
    void Put(std::string_view bytes);
    void Begin(int number);

    ByteSink lclSink;
    std::uint64_t lclWritten = 0;
    std::vector<std::uint64_t> lclPlaces; // by object number - 1; 0 as long as it is not written
    std::vector<int> lclPages;
    int lclPageList;
};

// As PDF writes them, whatever the locale.
std::string PdfNumber(double value);
std::string PdfReference(int number);          // "7 0 R"
std::string PdfHexText(std::string_view utf8); // as UTF-16

} // namespace kavidex::imaging
