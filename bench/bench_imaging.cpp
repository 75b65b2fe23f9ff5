// Pages of scanned documents against libtiff's own programs, and against the bare decoding.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <tiffio.h>

#include "bench/ratio.h"
#include "imaging/PageFile.h"
#include "imaging/PageOperations.h"
#include "imaging/tiff/Source.h"
#include "platform/Files.h"
#include "platform/Workstation.h"

namespace {

using namespace kavidex;
using imaging::PageFile;

constexpr int pageCount = 200;
constexpr std::uint32_t viewWidth = 1000, viewHeight = 1414;

const std::filesystem::path folder =
    std::filesystem::temp_directory_path() / "kavidex-bench-imaging";

platform::Files& TheFiles() { return platform::TheWorkstation().files; }

void Run(const std::string& command) {
    if (std::system(("cd '" + folder.string() + "' && " + command + " >log 2>&1").c_str()) == 0)
        return;
    std::printf("cannot run: %s\n", command.c_str());
    std::exit(1);
}

std::string Path(const std::string& name) { return (folder / name).string(); }

std::vector<std::string> Pages() {
    std::vector<std::string> paths;
    for (int page = 0; page < pageCount; ++page) paths.push_back(Path("p" + std::to_string(page)));
    return paths;
}

// A4 at 300 dpi, written over as letters are.
void MakePages() {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    for (int kind = 0; kind < 4; ++kind) {
        std::string lines;
        for (int line = 0; line < 44; ++line)
            lines += "Line " + std::to_string(line * (kind + 3)) +
                     " of a letter that somebody wrote to somebody about something else\\n";
        const std::string name = "k" + std::to_string(kind) + ".tif";
        Run("convert -size 2480x3508 xc:white -density 300 -units PixelsPerInch -fill black "
            "-pointsize " +
            std::to_string(10 + kind) + " -annotate +250+300 '" + lines +
            "' -monochrome -compress group4 -define tiff:rows-per-strip=128 " + name);
        for (int page = kind; page < pageCount; page += 4)
            std::filesystem::copy(folder / name, folder / ("p" + std::to_string(page)));
    }
}

std::string Strips(imaging::tiff::Source& source, int page) {
    const auto directory = source.Page(page);
    const auto places = source.Numbers(*directory.Find(imaging::tiff::tags::stripOffsets));
    const auto sizes = source.Numbers(*directory.Find(imaging::tiff::tags::stripByteCounts));
    std::string data;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::size_t at = data.size();
        data.resize(at + sizes[i]);
        source.Read(places[i], data.data() + at, sizes[i]);
    }
    return data;
}

bool StripsAreTheSame() {
    imaging::tiff::Source joined(TheFiles(), Path("ours.tif"));
    const std::vector<std::string> pages = Pages();
    bool same = joined.PageCount() == pageCount;
    for (int page = 0; same && page < pageCount; ++page) {
        imaging::tiff::Source single(TheFiles(), pages[static_cast<std::size_t>(page)]);
        same = Strips(single, 1) == Strips(joined, page + 1);
    }
    std::printf("%-44s %s\n", "strips of the stapled pages",
                same ? "byte for byte the same" : "DIFFER");
    return same;
}

// Every strip of every page, and nothing done with it.
void DecodeBare(const std::string& name) {
    TIFF* tiff = TIFFOpen(Path(name).c_str(), "r");
    std::vector<unsigned char> strip;
    do {
        strip.resize(static_cast<std::size_t>(TIFFStripSize(tiff)));
        for (std::uint32_t i = 0; i < TIFFNumberOfStrips(tiff); ++i)
            if (TIFFReadEncodedStrip(tiff, i, strip.data(), -1) < 0) std::exit(1);
    } while (TIFFReadDirectory(tiff));
    TIFFClose(tiff);
}

double FirstPage(const std::string& name) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 10; ++i)
        PageFile(TheFiles(), Path(name)).DecodeScaled(1, viewWidth, viewHeight);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Work(const std::string& operation, const std::string& name) {
    if (operation == "split")
        imaging::SplitPages(TheFiles(), Path(name), [](int page) {
            return Path("split-" + std::to_string(::getpid()) + "-" + std::to_string(page));
        });
    else if (operation == "delete")
        imaging::DeletePages(TheFiles(), Path(name), {1});
    else
        imaging::AppendPages(TheFiles(), Path(name), {Path("p0")});
}

// The most memory this process has had, in KiB.
double PeakOfThis() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "VmHWM:" && status >> word) return std::stod(word);
    return 0;
}

// The most memory that the operation takes, in a process of its own.
double Peak(const std::string& operation, const std::string& name) {
    std::filesystem::copy(folder / name, folder / "work.tif",
                          std::filesystem::copy_options::overwrite_existing);
    Run("'" + std::filesystem::read_symlink("/proc/self/exe").string() + "' " + operation +
        " work.tif");
    double peak = 0;
    std::ifstream(folder / "peak") >> peak;
    return peak;
}

bool MemoryStaysTheSame() {
    bool good = true;
    for (const char* operation : {"delete", "append", "split"}) {
        const double many = Peak(operation, "1000.tif");
        const double few = Peak(operation, "10.tif");
        good &= many / few <= 1.1;
        std::printf(
            "%-44s ratio %.2f (at most 1.10)  1,000 pages %.0f KiB, 10 pages %.0f KiB  %s\n",
            (std::string("peak memory: ") + operation).c_str(), many / few, many, few,
            many / few <= 1.1 ? "ok" : "MISSED");
    }
    return good;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3) {
        Work(argv[1], argv[2]);
        std::ofstream(folder / "peak") << PeakOfThis();
        return 0;
    }
    MakePages();
    bool good = true;
    const std::vector<std::string> pages = Pages();
    std::string names;
    for (int page = 0; page < pageCount; ++page) names += " p" + std::to_string(page);

    const auto staple = bench::Measure(
        [&] {
            std::filesystem::remove(folder / "ours.tif");
            const auto start = std::chrono::steady_clock::now();
            imaging::StapleFiles(TheFiles(), pages, Path("ours.tif"));
            return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        },
        [&] { Run("tiffcp" + names + " all.tif"); }, 3);
    good &= bench::AtMost("staple 200 pages, tiffcp", staple, 0.05);
    good &= StripsAreTheSame();

    const auto emptied = [](const char* name) {
        std::filesystem::remove_all(folder / name);
        std::filesystem::create_directories(folder / name);
    };
    const auto split = bench::Measure(
        [&] {
            emptied("split");
            const auto start = std::chrono::steady_clock::now();
            imaging::SplitPages(TheFiles(), Path("all.tif"), [](int page) {
                return Path("split/" + std::to_string(page) + ".tif");
            });
            return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        },
        [&] {
            emptied("theirs");
            const auto start = std::chrono::steady_clock::now();
            Run("tiffsplit all.tif theirs/");
            return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        });
    good &= bench::AtMost("split 200 pages, tiffsplit", split, 1.0);

    PageFile all(TheFiles(), Path("ours.tif"));
    all.Count();
    const auto bare = [] { DecodeBare("ours.tif"); };
    good &= bench::AtMost("200 thumbnails, bare decoding",
                          bench::Measure(
                              [&] {
                                  for (int page = 1; page <= pageCount; ++page)
                                      imaging::Thumbnail(all, page, 120, 170);
                              },
                              bare, 3),
                          2.5);
    good &= bench::AtMost("200 pages scaled to a view, bare decoding",
                          bench::Measure(
                              [&] {
                                  for (int page = 1; page <= pageCount; ++page)
                                      all.DecodeScaled(page, viewWidth, viewHeight);
                              },
                              bare, 3),
                          2.0);

    std::vector<std::string> ten(pages.begin(), pages.begin() + 10);
    std::vector<std::string> thousand;
    for (int i = 0; i < 5; ++i) thousand.insert(thousand.end(), pages.begin(), pages.end());
    imaging::StapleFiles(TheFiles(), ten, Path("10.tif"));
    imaging::StapleFiles(TheFiles(), thousand, Path("1000.tif"));
    good &= bench::AtMost(
        "first page of 1,000, of 10",
        bench::Measure([] { return FirstPage("1000.tif"); }, [] { return FirstPage("10.tif"); }),
        1.5);
    good &= MemoryStaysTheSame();
    std::filesystem::remove_all(folder);
    return good ? 0 : 1;
}
