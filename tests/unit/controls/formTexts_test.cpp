// Every label, box and button of the administrator's forms has room for its text in each language.
#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

#include "controls/admin/ctlChecklistEditor.h"
#include "controls/admin/ctlDefaultFolders.h"
#include "controls/admin/ctlPost.h"
#include "controls/admin/ctlRights.h"
#include "controls/checklist/ctlChecklist.h"
#include "controls/common/OwnTranslator.h"
#include "controls/settings/frmSettings.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/schema/clsUpdateDb.h"
#include "platform/text.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/On.h"

namespace kavidex::controls {

namespace {

// In dialog units, which are quarters of a font's average letter; the letters of sans serif fonts
// have much the same share of it.
double Width(std::string_view text) {
    constexpr std::pair<std::u16string_view, double> shares[] = {
        {u"ijl'|", 1.6},      {u"It! ,./:;f", 2}, {u"r-()", 2.5}, {u"ckJsvxyz", 3.6}, {u"FTZ", 4.5},
        {u"ABEKPSVXY&", 4.8}, {u"CDHNRUw", 5.2},  {u"GOQ", 5.7},  {u"mM", 6.1},       {u"W%", 6.8}};
    double width = 0;
    for (const char16_t letter : platform::ToUtf16(text)) {
        const auto known =
            std::find_if(std::begin(shares), std::end(shares), [&](const auto& share) {
                return share.first.find(letter) != std::u16string_view::npos;
            });
        width += known == std::end(shares) ? 4 : known->second;
    }
    return width;
}

void ExpectRoom(const forms::Form& form) {
    for (const auto& field : form.Fields()) {
        const auto& row = field.Row();
        const bool button = row.kind == forms::Kind::Button, box = row.kind == forms::Kind::Check;
        if ((!button && !box && row.kind != forms::Kind::Label) || row.Has(forms::style::hidden))
            continue;
        const int lines = row.kind == forms::Kind::Label ? std::max(1, row.box.height / 8) : 1;
        const int around = button ? 6 : box ? 12 : 0;
        EXPECT_LE(Width(field.Text()) + around, row.box.width * lines)
            << form.Table().name << " " << row.name << ": " << field.Text();
    }
}

} // namespace

TEST(FormTexts, HaveRoomInEveryLanguage) {
    tests::FakeWorkstation machine;
    const auto database = data::EmbeddedDatabase::CreateInMemory();
    tests::On<data::clsUpdateDb>(machine, database).fncUpdateDb();
    ctlRights rights(machine);
    ctlDefaultFolders folders(machine);
    ctlChecklistEditor lists(machine);
    ctlPost post(machine);
    ctlChecklist list(machine);
    for (int language = 0; language < 4; ++language) {
        for (FormControl* control :
             std::initializer_list<FormControl*>{&rights, &folders, &lists, &post, &list}) {
            control->SetLanguage(language);
            control->SetDbConnection(database);
            ExpectRoom(control->Form());
        }
        const auto translator = std::make_shared<OwnTranslator>(machine);
        translator->SetDbConnection(database);
        translator->SetLanguage(static_cast<Language>(language));
        frmSettings settings(machine, database, translator, nullptr);
        ExpectRoom(settings.Form());
    }
    EXPECT_EQ(rights.Form()["btnSave"].Text(), "Enregistrer");
}

} // namespace kavidex::controls
