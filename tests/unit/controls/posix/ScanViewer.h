// A document viewer over real scans made by other people's programs, on a dossier of its own.
#pragma once

#include "controls/viewer/ViewerViews.h"
#include "controls/viewer/ctlViewer.h"
#include "imaging/PageFile.h"
#include "imaging/PageOperations.h"
#include "model/filing.h"
#include "tests/fakes/FakeViewerWindow.h"
#include "tests/unit/model/ModelDatabase.h"

namespace kavidex::tests {

using controls::ctlViewer;
using controls::FitMode;
using controls::ImageView;
using platform::Answer;

class ScanViewer : public ModelDatabase {
protected:
    ScanViewer() {
        viewer.SetDbConnection(connection);
        kept = {viewer.NextDocumentRequest.Subscribe([this] { asked += "next "; }),
                viewer.PreviousDocumentRequest.Subscribe([this] { asked += "previous "; }),
                viewer.EvMoveUp.Subscribe([this] { asked += "up "; }),
                viewer.ExportPages.Subscribe(
                    [this](const std::string& from, const auto& pages, bool& done) {
                        exported.assign(pages.begin(), pages.end());
                        imaging::ExtractPages(machine.files, from, {pages.begin(), pages.end()},
                                              machine.Path("exported.tif"));
                        done = true;
                    })};
        machine.messages.shown.clear();
    }
    // So many fax pages of 1728 by 1100 at 204 by 98 dots an inch, each with its number.
    std::string Scan(const std::string& name, int pages) {
        std::string command = "cd '" + FakeWorkstation::Native(machine.Folder()).string() +
                              "' && convert -size 1728x1100 -units PixelsPerInch -density 204x98";
        for (int page = 1; page <= pages; ++page)
            command += " \\( xc:white -pointsize 300 -draw \"text 200," +
                       std::to_string(300 * page) + " 'P" + std::to_string(page) + "'\" \\)";
        command += " -monochrome -compress group4 " + name + ".tif";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
        return machine.Path(name + ".tif");
    }
    model::clsItemPtr File(const std::string& source) {
        model::FilingRequest request;
        request.source = source;
        request.folderId = tree->Item()->Id();
        const auto filed = model::FileDocument(machine, *tree, request);
        EXPECT_TRUE(filed) << filed.error;
        path = filed.path;
        return filed.item;
    }
    void Show(int pages) {
        ASSERT_TRUE(viewer.ShowItem(File(Scan("scan", pages)))) << Told();
        Pages().Canvas().SetRoom(800, 600, 16, 0);
        window.Settle();
    }
    ImageView& Pages() { return viewer.Views().image; }
    imaging::PageFile Stored() { return imaging::PageFile(machine.files, path); }
    // Where on the stored page the black of its number begins.
    std::uint32_t FirstBlackRow(int page) {
        const auto picture = Stored().Decode(page);
        for (std::uint32_t y = 0; y < picture.height; ++y)
            for (std::size_t i = 0; i < picture.BytesPerRow(); ++i)
                if (picture.Row(y)[i] != 0xFF) return y;
        return picture.height;
    }
    std::string Numbers() { // of the pages in the file, by how far down their number stands
        std::string numbers;
        for (int page = 1; page <= Stored().Count(); ++page)
            numbers += std::to_string((FirstBlackRow(page) + 299) / 300);
        return numbers;
    }
    std::string Told() {
        std::string texts;
        for (const auto& message : machine.messages.shown) texts += message.text + "|";
        machine.messages.shown.clear();
        return texts;
    }
    void Drag(int x, int y, int toX, int toY) {
        auto& canvas = Pages().Canvas();
        canvas.PointerDown(x, y);
        canvas.PointerMoved(toX, toY);
        canvas.PointerUp(toX, toY);
    }
    void Mark() { // a rectangle on the page shown
        viewer.SetAnnotationsPopupShown(true);
        Pages().SetToolboxShown(true);
        window.Settle();
        Pages().Toolbox().ButtonClicked("HollowRectangle");
        const auto& room = Pages().Canvas().Geometry();
        Drag(room.OriginX() + 20, room.OriginY() + 20, room.OriginX() + 90, room.OriginY() + 60);
    }

    std::shared_ptr<model::clsTree> tree = NewTree();
    ctlViewer viewer{machine};
    FakeViewerWindow window{viewer};
    std::string path, asked;
    std::vector<int> exported;
    std::vector<std::shared_ptr<void>> kept;
};

} // namespace kavidex::tests
