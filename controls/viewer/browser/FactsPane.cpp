#include "controls/viewer/browser/FactsPane.h"

#include "controls/lists/DocumentRows.h"
#include "controls/pictures/IconKeys.h"
#include "controls/viewer/FrameTexts.h"
#include "controls/viewer/browser/FileKinds.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Kind;
using forms::What;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr FieldRow fields[] = {
    {"picType", Kind::Picture, {8, 8, 20, 20}},
    {"lblNotice", Kind::Label, {34, 9, 178, 27}, "", anchor::wide},
    {"lblDescription", Kind::Label, {8, 42, 62, 9}, "Omschrijving:"},
    {"txtDescription", Kind::Edit, {72, 42, 140, 10}, "", anchor::wide, style::readOnly},
    {"lblType", Kind::Label, {8, 56, 62, 9}, "Type:"},
    {"txtType", Kind::Edit, {72, 56, 140, 10}, "", anchor::wide, style::readOnly},
    {"lblUser", Kind::Label, {8, 70, 62, 9}, "Ingevoerd door:"},
    {"txtUser", Kind::Edit, {72, 70, 140, 10}, "", anchor::wide, style::readOnly},
    {"lblMoment", Kind::Label, {8, 84, 62, 9}, "Datum en tijd:"},
    {"txtMoment", Kind::Edit, {72, 84, 140, 10}, "", anchor::wide, style::readOnly},
    {"lblSize", Kind::Label, {8, 98, 62, 9}, "Grootte:"},
    {"txtSize", Kind::Edit, {72, 98, 140, 10}, "", anchor::wide, style::readOnly},
    {"lblFile", Kind::Label, {8, 112, 62, 9}, "Bestand:"},
    {"txtFile", Kind::Edit, {72, 112, 140, 10}, "", anchor::wide, style::readOnly},
    {"btnOpen", Kind::Button, {8, 128, 60, 14}, "Openen"},
};
constexpr forms::Layout layout = {"frmFacts", "", 220, 148, true, fields};

} // namespace

std::string SizeText(std::uint64_t bytes) {
    if (bytes < 1024) return std::to_string(bytes) + " bytes";
    constexpr std::string_view units[] = {"kB", "MB", "GB", "TB"};
    std::size_t unit = 0;
    std::uint64_t whole = 1024;
    while (unit + 1 < std::size(units) && bytes / whole >= 1024) {
        whole *= 1024;
        ++unit;
    }
    const std::uint64_t tenths = bytes / whole * 10 + bytes % whole * 10 / whole;
    return std::to_string(tenths / 10) + "," + std::to_string(tenths % 10) + " " +
           std::string(units[unit]);
}

FactsPane::FactsPane(ViewerFrame& frame) : lclFrame(frame), lclForm(layout, frame.Machine()) {
    lclForm.On("btnOpen", What::Clicked, [this](forms::FieldEvent&) { OpenDefault(lclDocument); });
    lclForm.mayCancel = [] { return false; };
}

void FactsPane::SurroundingsChanged() {
    lclForm.SetTranslate(std::make_shared<FrameTexts>(lclFrame));
    lclForm["lblNotice"].SetText(lclNotice.empty() ? "" : lclFrame.Text(lclNotice));
}

void FactsPane::Show(const ShownDocument& document, std::string_view notice) {
    const auto& machine = lclFrame.Machine();
    lclDocument = document;
    lclNotice = notice;
    SurroundingsChanged();
    lclForm["picType"].SetIcon(ItemIconKey(document.type));
    lclForm["txtDescription"].SetText(document.item->Description());
    lclForm["txtType"].SetText(document.type.empty()
                                   ? ""
                                   : machine.shell.TypeDescription(document.type) + " (" +
                                         document.type + ")");
    lclForm["txtUser"].SetText(document.file.insertedBy);
    lclForm["txtMoment"].SetText(InsertMoment(document.file.insertDate, document.file.insertTime));
    lclForm["txtFile"].SetText(document.Path());
    std::string size;
    try {
        size = SizeText(machine.files.Size(document.Path()));
    } catch (const platform::Error& error) {
        machine.log.Write("FactsPane", error.what());
    }
    lclForm["txtSize"].SetText(size);
}

StatusTexts FactsPane::Status() const {
    StatusTexts texts;
    texts.hint = texts.hintTip =
        lclFrame.Text("Dubbelklik om het document met zijn standaard programma te openen");
    return texts;
}

bool FactsPane::OpenDefault(const ShownDocument& document) {
    const bool program = FileKindOf(document.type) == FileKind::Program;
    if (program && acceptsType && !acceptsType(document.type)) {
        lclFrame.Ask("Bestanden van dit type worden hier niet opgenomen: $%$", "Melding viewer",
                     platform::Buttons::Ok, platform::Icon::Exclamation,
                     {platform::FileName(document.Path())});
        return false;
    }
    if (program && lclFrame.Ask("Dit bestand kan iets uitvoeren. Wilt u het openen?",
                                "Melding viewer", platform::Buttons::YesNo,
                                platform::Icon::Exclamation) != platform::Answer::Yes)
        return false;
    try {
        lclFrame.Machine().shell.OpenDefault(document.Path());
        return true;
    } catch (const std::exception& error) {
        lclFrame.TellError("OpenDefault", error);
        return false;
    }
}

} // namespace kavidex::controls
