// What is done to the pages of TIFF files: every operation writes a whole new file from a plan of
// pages. Compressed data, unknown tags and annotations are copied as they are, and memory does not
// grow with the number of pages. A file is whole or absent, and replaced only by a whole one.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "imaging/Orientation.h"

namespace kavidex::platform {
class Files;
} // namespace kavidex::platform

namespace kavidex::imaging {

// A page of the file to be written.
struct PlannedPage {
    std::string path;
    int page = 1; // from 1
    Turn turn = Turn::None;
    // The annotations' new bytes, for the page before it is turned; empty takes them away. They are
    // turned with the page.
    std::optional<std::string> marks;
};

struct WriteOptions {
    bool failIfExists = false;
    // False for files that can be made again from what is kept: the disk need not have them yet.
    bool flush = true;
    // Asked when all is written, right before the target is replaced; what it throws ends the work
    // and leaves the target.
    std::function<void()> check{};
};

// The file is written under a temporary name and put in place at last; it may be one of those that
// the pages come from. Throws platform::Error, and leaves the target as it was.
void WritePages(platform::Files& files, const std::vector<PlannedPage>& pages,
                std::string_view target, const WriteOptions& options = {});

int CountPages(platform::Files& files, std::string_view path);
// All pages of a file, in order.
std::vector<PlannedPage> PagesOf(platform::Files& files, std::string_view path);

// Pages count from 1; one that is not there, or a file left without pages, is refused.
void AppendPages(platform::Files& files, std::string_view path,
                 const std::vector<std::string>& sources);
void DeletePages(platform::Files& files, std::string_view path, const std::vector<int>& pages);
void MovePage(platform::Files& files, std::string_view path, int from, int to);
void RotatePage(platform::Files& files, std::string_view path, int page, Turn turn);
void ExtractPages(platform::Files& files, std::string_view path, const std::vector<int>& pages,
                  std::string_view target);
// New files only: an existing target is refused. Joins the pages of all sources, in order.
void StapleFiles(platform::Files& files, const std::vector<std::string>& sources,
                 std::string_view target);
// A new file a page, under the name that is given for it; those made are taken away again where one
// fails. They are not flushed: the source stays until they were filed. Returns their paths.
std::vector<std::string> SplitPages(platform::Files& files, std::string_view path,
                                    const std::function<std::string(int page)>& nameOf);

} // namespace kavidex::imaging
