#include "controls/tree/frmProperties.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iterator>
#include <utility>

#include "controls/pictures/IconKeys.h"
#include "imaging/scanSource.h"
#include "model/clsItem.h"
#include "model/documentFile.h"
#include "platform/Files.h"
#include "platform/Messages.h"
#include "platform/Shell.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Kind;
using forms::What;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr std::string_view tabs = "TabStrip1", frame = "frmGeneralMulti";

constexpr FieldRow fields[] = {
    {"TabStrip1", Kind::Tabs, {6, 6, 248, 172}, "Algemeen", anchor::all},
    {"picIcon", Kind::Picture, {16, 26, 20, 20}, "", anchor::leftTop, 0, tabs, 1},
    {"lblText", Kind::Label, {52, 32, 190, 9}, "", anchor::wide, style::hidden, tabs, 1},
    {"txtName", Kind::Edit, {52, 29, 190, 13}, "Omschrijving", anchor::wide, 0, tabs, 1},
    {"frmGeneralMulti", Kind::Frame, {14, 52, 232, 118}, "", anchor::all, 0, tabs, 1},
    {"lblType", Kind::Label, {22, 66, 66, 9}, "Type:", anchor::leftTop, 0, frame},
    {"txtType", Kind::Edit, {92, 66, 148, 10}, "", anchor::wide, style::readOnly, frame},
    {"Label2", Kind::Label, {22, 82, 66, 9}, "Ingevoerd door:", anchor::leftTop, 0, frame},
    {"txtUser", Kind::Edit, {92, 82, 148, 10}, "", anchor::wide, style::readOnly, frame},
    {"Label3", Kind::Label, {22, 98, 66, 9}, "Datum en tijd:", anchor::leftTop, 0, frame},
    {"txtDateTime", Kind::Edit, {92, 98, 148, 10}, "", anchor::wide, style::readOnly, frame},
    {"Label4", Kind::Label, {22, 114, 66, 9}, "Bron:", anchor::leftTop, 0, frame},
    {"txtSource", Kind::Edit, {92, 114, 148, 10}, "", anchor::wide, style::readOnly, frame},
    {"lblProperties", Kind::Label, {22, 134, 66, 9}, "Eigenschappen:", anchor::leftTop, 0, frame},
    {"chkReadOnly", Kind::Check, {92, 133, 74, 10}, "Alleen lezen", anchor::leftTop, 0, frame},
    {"chkArchive", Kind::Check, {168, 133, 74, 10}, "Archief", anchor::leftTop, 0, frame},
    {"chkSystem", Kind::Check, {92, 149, 74, 10}, "Systeem", anchor::leftTop, 0, frame},
    {"chkHidden", Kind::Check, {168, 149, 74, 10}, "Verborgen", anchor::leftTop, 0, frame},
    {"btnOk", Kind::Button, {92, 184, 50, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel",
     Kind::Button,
     {148, 184, 50, 14},
     "Annuleren",
     anchor::rightBottom,
     style::isCancel},
    {"btnApply", Kind::Button, {204, 184, 50, 14}, "Toepassen", anchor::rightBottom},
};

constexpr forms::Layout layout = {"frmProperties", "Eigenschappen", 260, 204, true, fields};

// What only a single document has; without it the form is that much shorter.
constexpr std::string_view documentRows[] = {"Label2",      "txtUser", "Label3",
                                             "txtDateTime", "Label4",  "txtSource"};
constexpr int documentHeight = 48;

constexpr auto ShortFields() {
    std::array<FieldRow, std::size(fields) - std::size(documentRows)> rows;
    std::size_t count = 0;
    int cut = 0; // how far the rows move up from here on
    for (const auto& row : fields) {
        if (std::find(std::begin(documentRows), std::end(documentRows), row.name) !=
            std::end(documentRows)) {
            cut = documentHeight;
            continue;
        }
        auto& kept = rows[count++];
        kept = row;
        kept.box.y -= cut;
        if (row.name == tabs || row.name == frame) kept.box.height -= documentHeight;
    }
    return rows;
}
constexpr auto shortFields = ShortFields();
constexpr forms::Layout shortLayout = {
    "frmProperties", "Eigenschappen", 260, 204 - documentHeight, true, shortFields};

struct AttributeBox {
    std::string_view field;
    std::uint32_t bit;
};

constexpr AttributeBox boxes[] = {{"chkReadOnly", platform::attributes::readOnly},
                                  {"chkArchive", platform::attributes::archive},
                                  {"chkSystem", platform::attributes::system},
                                  {"chkHidden", platform::attributes::hidden}};

// 20261115 and 905 as 15-11-2026 09:05; what is no date stays away.
std::string Moment(std::string_view date, std::string_view time) {
    if (date.size() != 8 || time.empty() || time.size() > 4) return {};
    const std::string clock = std::string(4 - time.size(), '0') + std::string(time);
    return std::string(date.substr(6, 2)) + "-" + std::string(date.substr(4, 2)) + "-" +
           std::string(date.substr(0, 4)) + " " + clock.substr(0, 2) + ":" + clock.substr(2);
}

// Every path has its turn; the first failure is thrown after the last.
template <class Work>
void ForEachFile(const std::vector<std::string>& paths, Work work) {
    std::exception_ptr first;
    for (const auto& path : paths) {
        try {
            work(path);
        } catch (...) {
            if (!first) first = std::current_exception();
        }
    }
    if (first) std::rethrow_exception(first);
}

} // namespace

frmProperties::frmProperties(const platform::Workstation& workstation,
                             data::ConnectionPtr connection, std::shared_ptr<Translator> translator)
    : lclWorkstation(workstation), lclConnection(std::move(connection)),
      lclTranslator(std::move(translator)) {
    Make(layout);
}

void frmProperties::Make(const forms::Layout& wanted) {
    auto& form = lclForm.emplace(wanted, lclWorkstation, lclTranslator);
    // The boxes but one only tell.
    for (const auto& box : boxes) form[box.field].SetEnabled(false);
    form["btnApply"].SetEnabled(false);
    const auto changed = [&form](forms::FieldEvent&) { form["btnApply"].SetEnabled(true); };
    form.On("txtName", What::Changed, changed);
    form.On("chkReadOnly", What::Changed, changed);
    form.On("btnApply", What::Clicked, [this](auto&) { Apply(); });
    form.On("btnOk", What::Clicked, [this, &form](auto&) {
        if (Apply()) form.Close(true);
    });
    form.On("TabStrip1", What::Clicked, [this](auto&) { ShowPath(); });
}

void frmProperties::fncFill(const std::vector<std::shared_ptr<model::clsItem>>& items) {
    if (items.empty()) return;
    lclMode = items.size() < 2 ? 1 : 2;
    const bool document = lclMode == 1 && !items.front()->AllowChildren();
    Make(document ? layout : shortLayout);
    lclDocuments = lclFolders = 0;
    lclPaths.clear();
    lclFullPath.clear();
    const auto& first = *items.front();
    lclDescription = lclNewDescription = first.Description();
    lclItemId = first.Id();
    Form()["picIcon"].SetIcon(ItemIconKey(first.ItemType()));
    Form().Guarded([&] {
        FillType(items);
        model::DocumentFiles look(lclWorkstation, lclConnection);
        model::DocumentFile file;
        for (const auto& item : items) {
            ++(item->AllowChildren() ? lclFolders : lclDocuments);
            if (item->AllowChildren()) continue;
            file = look.Of(*item);
            // A new note has no file until something is written in it.
            const bool unwritten = file.outcome == model::DocumentLook::FileMissing &&
                                   platform::EqualNoCase(item->ItemType(), "nnt");
            if (!file.path.empty() && !unwritten) lclPaths.push_back(file.path);
        }
        Form()["chkReadOnly"].SetEnabled(!lclPaths.empty() && lclMayChange);
        if (lclMode == 1)
            FillOne(first, file);
        else
            FillSeveral(first.Description());
        FillAttributes();
    });
}

std::string frmProperties::TypeOf(const model::clsItem& item) const {
    return item.AllowChildren() ? Form().Text("Map")
                                : lclWorkstation.shell.TypeDescription(item.ItemType());
}

void frmProperties::FillType(const std::vector<std::shared_ptr<model::clsItem>>& items) {
    Form()["txtType"].SetText(TypeOf(*items.front()));
    for (const auto& item : items)
        if (!platform::EqualNoCase(item->ItemType(), items.front()->ItemType()))
            Form()["txtType"].SetText(Form().Text("Meerdere typen geselecteerd"));
}

void frmProperties::FillAttributes() {
    std::uint32_t common = ~0U;
    const auto show = [&] {
        for (const auto& box : boxes)
            Form()[box.field].SetChecked(!lclPaths.empty() && (common & box.bit) != 0);
    };
    try {
        ForEachFile(lclPaths, [&](const std::string& path) {
            const auto before = std::exchange(common, 0U); // a file that cannot be read has none
            common = before & lclWorkstation.files.Attributes(path);
        });
    } catch (...) {
        show();
        throw;
    }
    show();
}

void frmProperties::FillOne(const model::clsItem& item, const model::DocumentFile& file) {
    Form().SetCaption(Form().Text("$%$ Eigenschappen", {lclDescription}));
    Form()["txtName"].SetText(lclDescription);
    Form()["txtName"].SetReadOnly(!lclMayChange);
    if (item.AllowChildren()) return;
    lclFullPath = file.path;
    Form()["txtUser"].SetText(file.insertedBy);
    Form()["txtDateTime"].SetText(Moment(file.insertDate, file.insertTime));
    const bool image = platform::LowerCase(item.ItemType()) == "tif";
    for (const auto* field : {"Label4", "txtSource"}) Form()[field].SetVisible(image);
    if (image && file.HasFile())
        Form()["txtSource"].SetText(imaging::ScanSource(lclWorkstation.files, file.path));
}

void frmProperties::FillSeveral(std::string_view first) {
    Form().SetCaption(Form().Text("$%$, ... eigenschappen", {std::string(first)}));
    std::string text;
    if (lclDocuments == 1)
        text = Form().Text("1 Document");
    else if (lclDocuments > 1)
        text = Form().Text("$%$ Documenten", {std::to_string(lclDocuments)});
    if (lclFolders > 0 && !text.empty()) text += ", ";
    if (lclFolders == 1)
        text += Form().Text("1 Map");
    else if (lclFolders > 1)
        text += std::to_string(lclFolders) + " " + Form().Text("Mappen");
    Form()["lblText"].SetText(text);
    Form()["lblText"].SetVisible(true);
    Form()["txtName"].SetVisible(false);
}

// False: the name is to be typed first.
bool frmProperties::Apply() {
    if (lclMode == 1) {
        const auto name = Form()["txtName"].Text();
        if (platform::TrimView(name).empty() && !platform::TrimView(lclDescription).empty()) {
            lclWorkstation.messages.Show({Form().Text("Vul een omschrijving in."),
                                          Form().Text("Eigenschappen"), platform::Buttons::Ok,
                                          platform::Icon::Exclamation});
            Form()["txtName"].Focus();
            return false;
        }
        lclNewDescription = name;
    }
    if (Form()["chkReadOnly"].Enabled()) {
        // The whole set: archive, system and hidden go, whatever their boxes show.
        const auto wanted = Form()["chkReadOnly"].Checked() ? platform::attributes::readOnly
                                                            : platform::attributes::normal;
        ForEachFile(lclPaths, [&](const std::string& path) {
            auto& files = lclWorkstation.files;
            const auto before = files.Attributes(path);
            files.SetAttributes(path, wanted);
            if ((before ^ wanted) & platform::attributes::readOnly) lclMayWriteChanged = true;
        });
    }
    Form()["btnApply"].SetEnabled(false);
    return true;
}

void frmProperties::ShowPath() {
    if (lclMode != 1 || lclFullPath.empty()) return;
    // Plain boxes, not translated.
    lclWorkstation.messages.Show({lclFullPath, "Full storage path"});
    lclWorkstation.messages.Show({"TreeItemId = " + std::to_string(lclItemId), "TreeItemId"});
}

} // namespace kavidex::controls
