// Documents put together for whoever gets them: images and PDF files as one PDF file, a page in
// front that tells what there is, and beside it what cannot be a part of it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/CopyOut.h"

namespace kavidex::controls {

struct MergeOrder {
    std::vector<std::shared_ptr<model::clsItem>> documents; // in the order in which they go out
    bool merge = true;
    bool descriptionPage = false;     // alone in a file of its own where nothing is merged
    bool marks = true;                // what was drawn on the pages is drawn in the PDF file
    std::string title;                // of the PDF file, and its name
    std::vector<std::string> heading; // lines on the description page, under its title
    std::function<std::string(const model::clsItem&)> place; // the folder that a document lies in
};

// As CopyOut: the full paths, the PDF file first. An image that cannot be read and a PDF file that
// cannot be opened here go beside it as they are. Where the PDF file cannot be written everything
// goes out as it is, and `failed` has its title.
CopiedOut MergeOut(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
                   OperationLock& lock, const data::Translation& translation,
                   const MergeOrder& order, std::string_view folder);

} // namespace kavidex::controls
