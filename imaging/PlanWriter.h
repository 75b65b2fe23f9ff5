// Writes files from plans of pages. Its sources stay open from one file to the next.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "imaging/PageOperations.h"
#include "imaging/tiff/PageCopy.h"
#include "platform/FileStreams.h"

namespace kavidex::imaging {

class PlanWriter {
public:
    using Open = std::function<std::unique_ptr<platform::FileReader>(const std::string& path)>;
    using Make = std::function<std::unique_ptr<platform::FileWriter>()>;

    explicit PlanWriter(Open open);
    ~PlanWriter();

    tiff::Source& SourceOf(const std::string& path);
    // All of the file, not yet put in place. `make` is called once more where the file turns out to
    // need 64-bit offsets. Throws platform::Error.
    std::unique_ptr<platform::FileWriter> Write(const std::vector<PlannedPage>& pages,
                                                const Make& make);

private:
    tiff::PageToCopy Prepare(const PlannedPage& planned, std::size_t index, std::size_t count,
                             const tiff::Layout& layout);
    void Turned(const PlannedPage& planned, tiff::PageToCopy& page, tiff::Order order);
    void Marked(const PlannedPage& planned, tiff::PageToCopy& page);

    Open lclOpen;
    std::map<std::string, std::unique_ptr<tiff::Source>> lclSources;
    std::unique_ptr<tiff::Source> lclEncoded; // the picture of the page in hand
};

} // namespace kavidex::imaging
