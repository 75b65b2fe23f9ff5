#include "imaging/PageOperations.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <set>

#include "imaging/PlanWriter.h"
#include "imaging/tiff/Source.h"
#include "platform/Error.h"
#include "platform/Files.h"

namespace kavidex::imaging {

namespace {

[[noreturn]] void Refuse(const std::string& why) {
    throw platform::Error(platform::errors::invalidArgument, why);
}

void CheckPage(const std::vector<PlannedPage>& pages, int page) {
    if (page < 1 || static_cast<std::size_t>(page) > pages.size())
        Refuse("The document has no page " + std::to_string(page));
}

// On the way out of a failure, which counts more than what cannot be taken away.
void RemoveQuietly(platform::Files& files, const std::string& path) {
    try {
        files.Remove(path);
    } catch (const platform::Error&) {
    }
}

PlanWriter::Open ReaderOf(platform::Files& files) {
    return [&files](const std::string& path) { return files.Reader(path); };
}

} // namespace

void WritePages(platform::Files& files, const std::vector<PlannedPage>& pages,
                std::string_view target, const WriteOptions& options) {
    std::unique_ptr<platform::FileWriter> written;
    {
        // The sources are closed again before one of them is replaced.
        PlanWriter writer(ReaderOf(files));
        written = writer.Write(pages, [&] { return files.Writer(target); });
    }
    if (options.check) options.check();
    written->PutInPlace(options.failIfExists, options.flush);
}

int CountPages(platform::Files& files, std::string_view path) {
    return tiff::Source(files, path).PageCount();
}

std::vector<PlannedPage> PagesOf(platform::Files& files, std::string_view path) {
    std::vector<PlannedPage> pages;
    const int count = CountPages(files, path);
    for (int page = 1; page <= count; ++page) {
        PlannedPage next;
        next.path = path;
        next.page = page;
        pages.push_back(std::move(next));
    }
    return pages;
}

void AppendPages(platform::Files& files, std::string_view path,
                 const std::vector<std::string>& sources) {
    std::vector<PlannedPage> pages = PagesOf(files, path);
    for (const std::string& source : sources)
        for (PlannedPage& page : PagesOf(files, source)) pages.push_back(std::move(page));
    WritePages(files, pages, path);
}

void DeletePages(platform::Files& files, std::string_view path, const std::vector<int>& pages) {
    const std::vector<PlannedPage> all = PagesOf(files, path);
    const std::set<int> gone(pages.begin(), pages.end());
    for (const int page : gone) CheckPage(all, page);
    std::vector<PlannedPage> kept;
    for (const PlannedPage& page : all)
        if (gone.count(page.page) == 0) kept.push_back(page);
    WritePages(files, kept, path);
}

void MovePage(platform::Files& files, std::string_view path, int from, int to) {
    std::vector<PlannedPage> pages = PagesOf(files, path);
    CheckPage(pages, from);
    CheckPage(pages, to);
    const auto first = pages.begin() + (std::min(from, to) - 1),
               last = pages.begin() + std::max(from, to);
    std::rotate(first, from < to ? first + 1 : last - 1, last);
    WritePages(files, pages, path);
}

void RotatePage(platform::Files& files, std::string_view path, int page, Turn turn) {
    std::vector<PlannedPage> pages = PagesOf(files, path);
    CheckPage(pages, page);
    pages[static_cast<std::size_t>(page - 1)].turn = turn;
    WritePages(files, pages, path);
}

void ExtractPages(platform::Files& files, std::string_view path, const std::vector<int>& pages,
                  std::string_view target) {
    const std::vector<PlannedPage> all = PagesOf(files, path);
    std::vector<PlannedPage> chosen;
    for (const int page : pages) {
        CheckPage(all, page);
        chosen.push_back(all[static_cast<std::size_t>(page - 1)]);
    }
    WriteOptions options;
    options.failIfExists = true;
    WritePages(files, chosen, target, options);
}

void StapleFiles(platform::Files& files, const std::vector<std::string>& sources,
                 std::string_view target) {
    std::vector<PlannedPage> pages;
    for (const std::string& source : sources)
        for (PlannedPage& page : PagesOf(files, source)) pages.push_back(std::move(page));
    WriteOptions options;
    options.failIfExists = true;
    WritePages(files, pages, target, options);
}

std::vector<std::string> SplitPages(platform::Files& files, std::string_view path,
                                    const std::function<std::string(int page)>& nameOf) {
    std::vector<std::string> made;
    PlanWriter writer(ReaderOf(files));
    const int count = writer.SourceOf(std::string(path)).PageCount();
    try {
        for (int page = 1; page <= count; ++page) {
            PlannedPage planned;
            planned.path = path;
            planned.page = page;
            const std::string target = nameOf(page);
            writer.Write({planned}, [&] { return files.Writer(target); })->PutInPlace(true, false);
            made.push_back(target);
        }
    } catch (...) {
        const std::exception_ptr cause = std::current_exception();
        for (const std::string& target : made) RemoveQuietly(files, target);
        std::rethrow_exception(cause);
    }
    return made;
}

} // namespace kavidex::imaging
