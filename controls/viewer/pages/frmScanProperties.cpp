#include "controls/viewer/pages/frmScanProperties.h"

#include <cmath>
#include <iterator>

#include "controls/lists/DocumentRows.h"
#include "controls/pictures/IconKeys.h"
#include "controls/viewer/browser/FactsPane.h"
#include "imaging/scanSource.h"
#include "model/clsItem.h"
#include "platform/Files.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Kind;
namespace anchor = forms::anchor;
namespace style = forms::style;

// The button first: there is nothing to type.
constexpr FieldRow fields[] = {
    {"btnOk",
     Kind::Button,
     {202, 222, 50, 14},
     "OK",
     anchor::rightBottom,
     style::isDefault | style::isCancel},
    {"picIcon", Kind::Picture, {10, 10, 20, 20}},
    {"txtDescription",
     Kind::Edit,
     {38, 15, 212, 10},
     "Omschrijving",
     anchor::wide,
     style::readOnly},
    {"frmDocument", Kind::Frame, {8, 36, 244, 94}, "Document", anchor::wide},
    {"lblScanId", Kind::Label, {16, 50, 66, 9}, "Kenmerk:"},
    {"txtScanId", Kind::Edit, {86, 50, 158, 10}, "", anchor::wide, style::readOnly},
    {"lblUser", Kind::Label, {16, 66, 66, 9}, "Ingevoerd door:"},
    {"txtUser", Kind::Edit, {86, 66, 158, 10}, "", anchor::wide, style::readOnly},
    {"lblMoment", Kind::Label, {16, 82, 66, 9}, "Datum en tijd:"},
    {"txtMoment", Kind::Edit, {86, 82, 158, 10}, "", anchor::wide, style::readOnly},
    {"lblSource", Kind::Label, {16, 98, 66, 9}, "Bron:"},
    {"txtSource", Kind::Edit, {86, 98, 158, 10}, "", anchor::wide, style::readOnly},
    {"lblSize", Kind::Label, {16, 114, 66, 9}, "Grootte:"},
    {"txtSize", Kind::Edit, {86, 114, 158, 10}, "", anchor::wide, style::readOnly},
    {"frmPage", Kind::Frame, {8, 136, 244, 78}, "", anchor::wide},
    {"lblExtent", Kind::Label, {16, 150, 66, 9}, "Afmetingen:"},
    {"txtExtent", Kind::Edit, {86, 150, 158, 10}, "", anchor::wide, style::readOnly},
    {"lblResolution", Kind::Label, {16, 166, 66, 9}, "Resolutie:"},
    {"txtResolution", Kind::Edit, {86, 166, 158, 10}, "", anchor::wide, style::readOnly},
    {"lblColours", Kind::Label, {16, 182, 66, 9}, "Kleuren:"},
    {"txtColours", Kind::Edit, {86, 182, 158, 10}, "", anchor::wide, style::readOnly},
    {"lblCompression", Kind::Label, {16, 198, 66, 9}, "Compressie:"},
    {"txtCompression", Kind::Edit, {86, 198, 158, 10}, "", anchor::wide, style::readOnly},
};
constexpr forms::Layout layout = {
    "frmScanProperties", "Eigenschappen van gescand document", 260, 242, true, fields};

struct Compression {
    int number; // as TIFF has it
    std::string_view name;
};
constexpr Compression compressions[] = {
    {2, "CCITT RLE"},    {3, "CCITT G3"},    {4, "CCITT G4"}, {5, "LZW"},
    {6, "JPEG"},         {7, "JPEG"},        {8, "Deflate"},  {32771, "CCITT RLE"},
    {32773, "PackBits"}, {32946, "Deflate"},
};

std::string Rounded(double value) { return std::to_string(std::lround(value)); }

} // namespace

frmScanProperties::frmScanProperties(const ViewerFrame& frame, const ShownDocument& document)
    : lclFrame(frame), lclDocument(document), lclForm(layout, frame.Machine(), frame.Translate()) {}

void frmScanProperties::fncFill(int page, const std::string& caption) {
    FillDocument();
    lclForm["frmPage"].SetText(caption);
    FillPage(imaging::PageFile(lclFrame.Machine().files, lclDocument.Path()).Facts(page));
}

void frmScanProperties::FillDocument() {
    auto& files = lclFrame.Machine().files;
    const auto& file = lclDocument.file;
    lclForm["picIcon"].SetIcon(ItemIconKey(lclDocument.type));
    lclForm["txtDescription"].SetText(lclDocument.item->Description());
    // As other programs look for it: not translated.
    lclForm["txtScanId"].SetText("ScanId = " + std::to_string(lclDocument.item->ItemId()));
    lclForm["txtUser"].SetText(file.insertedBy);
    lclForm["txtMoment"].SetText(InsertMoment(file.insertDate, file.insertTime));
    lclForm["txtSource"].SetText(imaging::ScanSource(files, lclDocument.Path()));
    lclForm["txtSize"].SetText(SizeText(files.Size(lclDocument.Path())));
}

void frmScanProperties::FillPage(const imaging::PageFacts& facts) {
    std::string extent = std::to_string(facts.width) + " x " + std::to_string(facts.height);
    if (facts.xDpi > 0 && facts.yDpi > 0) {
        constexpr double millimetres = 25.4; // an inch
        extent += " (" + Rounded(facts.width / facts.xDpi * millimetres) + " x " +
                  Rounded(facts.height / facts.yDpi * millimetres) + " mm)";
        lclForm["txtResolution"].SetText(Rounded(facts.xDpi) + " x " + Rounded(facts.yDpi) +
                                         " dpi");
    }
    lclForm["txtExtent"].SetText(extent);
    using imaging::PixelFormat;
    lclForm["txtColours"].SetText(facts.format == PixelFormat::bits1 ? lclFrame.Text("Zwart-wit")
                                  : facts.format == PixelFormat::grey8
                                      ? lclFrame.Text("Grijstinten")
                                      : lclFrame.Text("Kleur"));
    lclForm["txtCompression"].SetText(facts.compression == 1 ? lclFrame.Text("Geen")
                                                             : std::to_string(facts.compression));
    for (const auto& row : compressions)
        if (row.number == facts.compression) lclForm["txtCompression"].SetText(row.name);
}

} // namespace kavidex::controls
