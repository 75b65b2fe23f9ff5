// The viewer against the work that it cannot do without: the next page on the screen against the
// bare decoding of the same pages, a folder's list of 10,000 documents against its statement's bare
// rows, and the click on a heading of one with 100,000 against sorting its keys.
#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/ratio.h"
#include "controls/viewer/list/DocumentList.h"
#include "controls/viewer/pages/PageCanvas.h"
#include "controls/viewer/pages/PageDocument.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "imaging/PageOperations.h"
#include "model/Store.h"
#include "platform/Files.h"
#include "platform/Workstation.h"

namespace {

using namespace kavidex;
using namespace kavidex::controls;

constexpr int kinds = 4, copies = 15, documents = 10000, many = 100000;

const std::filesystem::path folder =
    std::filesystem::temp_directory_path() / ("kavidex-bench-viewer-" + std::to_string(getpid()));

std::string Path(const std::string& name) { return (folder / name).string(); }

// Nobody draws on these pages.
struct NoMarks final : MarkEditorOwner {
    imaging::annotations::Annotations* EditableMarks() override { return nullptr; }
    bool AskMarkText(std::string&) override { return false; }
    bool EditMarks(const MarkEdit&, bool) override { return true; }
    void MarksRepaint() override {}
    void MarkSelected() override {}
    std::uint32_t MarkTime() override { return 0; }
    imaging::annotations::TextPainter* Texts() override { return nullptr; }
};

// A letter a kind, A4 at 300 dots an inch, as a scanner compresses it.
bool MakeScan(platform::Files& files) {
    std::vector<std::string> pages;
    for (int kind = 0; kind < kinds; ++kind) {
        std::string lines;
        for (int line = 0; line < 60; ++line)
            lines += "Line " + std::to_string(line * (kind + 3)) +
                     " of a letter that somebody wrote to somebody about something else\\n";
        const auto page = Path("k" + std::to_string(kind) + ".tif");
        const auto command = "convert -size 2480x3508 xc:white -density 300 -units PixelsPerInch "
                             "-fill black -pointsize " +
                             std::to_string(10 + kind) + " -annotate +250+300 '" + lines +
                             "' -monochrome -compress group4 " + page;
        if (std::system(command.c_str()) != 0) return false;
        pages.push_back(page);
    }
    std::vector<std::string> all;
    for (int i = 0; i < copies; ++i) all.insert(all.end(), pages.begin(), pages.end());
    imaging::StapleFiles(files, all, Path("scan.tif"));
    return true;
}

void DecodeBare() {
    TIFF* tiff = TIFFOpen(Path("scan.tif").c_str(), "r");
    std::vector<unsigned char> strip;
    do {
        strip.resize(static_cast<std::size_t>(TIFFStripSize(tiff)));
        for (std::uint32_t i = 0; i < TIFFNumberOfStrips(tiff); ++i)
            if (TIFFReadEncodedStrip(tiff, i, strip.data(), -1) < 0) std::exit(1);
    } while (TIFFReadDirectory(tiff));
    TIFFClose(tiff);
}

void ShowPages(platform::Files& files) {
    NoMarks owner;
    PageDocument document(files, Path("scan.tif"), &OpenScan, true);
    PageCanvas canvas(owner);
    canvas.SetRoom(1000, 760, 16, 6);
    std::string damage;
    for (int page = 1; page <= document.Count(); ++page) {
        canvas.SetPage(document.Shape(page), page == 1);
        canvas.SetPicture(document.Picture(page, 0, 0, damage));
        if (!canvas.See(nullptr).picture) std::exit(1);
    }
}

data::ConnectionPtr MakeFolder(const platform::Workstation& machine, int count) {
    auto database = data::EmbeddedDatabase::CreateInMemory();
    data::clsUpdateDb update(machine);
    update.SetDbConnection(database);
    update.fncUpdateDb();
    database->BeginTrans();
    for (int i = 1; i <= count; ++i) {
        const auto id = std::to_string(i);
        database->Execute("insert into tblDocument (DocId, InsertedBy, InsertDate, InsertTime, "
                          "Type) values (" +
                          id + ", 'jansen', 20261115, " + std::to_string(i % 2400) + ", 'tif')");
        database->Execute("insert into tblTreeItem (TreeItemId, ParentId, Type, Description, "
                          "ItemId) values (" +
                          id + ", 7, 'tif', 'Brief " + id + "', " + id + ")");
    }
    database->CommitTrans();
    return database;
}

bool HeadingIsQuick(const platform::Workstation& machine) {
    const auto database = MakeFolder(machine, many);
    VirtualList list(DocumentListColumns());
    list.SetRows(OpenDocumentList(database, 7));
    const auto rows = OpenDocumentList(database, 7);
    bool good = true;
    for (const std::size_t column : {0U, 3U}) { // the description, the moment it was filed
        std::vector<std::string> keys;
        for (std::size_t row = 0; row < rows->Count(); ++row)
            rows->SortKey(row, column == 0 ? "Omschrijving" : "InsertSort", keys.emplace_back());
        const auto times = bench::Measure([&] { list.HeadingClicked(column); },
                                          [&] {
                                              auto sorted = keys;
                                              std::stable_sort(sorted.begin(), sorted.end());
                                          });
        good &= bench::AtMost(column == 0 ? "heading of 100,000 documents, by text"
                                          : "heading of 100,000 documents, by moment",
                              times, 2.0);
    }
    return good;
}

} // namespace

int main() {
    const auto& machine = platform::TheWorkstation();
    std::filesystem::create_directories(folder);
    if (!MakeScan(machine.files)) return 1;
    bool good =
        bench::AtMost("60 next pages shown, bare decoding",
                      bench::Measure([&] { ShowPages(machine.files); }, DecodeBare, 5), 2.0);
    const auto database = MakeFolder(machine, documents);
    good &= bench::AtMost("list of 10,000 documents, its statement's rows",
                          bench::Measure(
                              [&] {
                                  const auto list = OpenDocumentList(database, 7);
                                  if (list->Count() != documents) std::exit(1);
                                  for (std::size_t row = 0; row < 40; ++row)
                                      for (const auto& column : DocumentListColumns())
                                          list->Text(row, column.field);
                              },
                              [&] {
                                  const auto statement = DocumentListStatement(database, 7);
                                  if (model::Store(database).Read(statement)->RecordCount() !=
                                      documents)
                                      std::exit(1);
                              }),
                          1.3);
    good &= HeadingIsQuick(machine);
    std::filesystem::remove_all(folder);
    return good ? 0 : 1;
}
