#include "controls/binder/BinderProperties.h"

namespace kavidex::controls {

namespace {

using P = BinderProperties;
using std::int32_t;
using std::string_view;

// In the order in which hosts have them. The checklist item is read with a trailing blank and
// written without, so that it never comes back; the status reports its change with the blank.
const Property<P> table[] = {
    {"BackColor", &P::BackColor, int32_t{0}},
    {"ForeColor", &P::ForeColor, int32_t{0}},
    {"Enabled", &P::Enabled, false},
    {"BackStyle", &P::BackStyle, int32_t{0}, {}, {}, 0, 1},
    {"BorderStyle", &P::BorderStyle, int32_t{0}, {}, {}, 0, 1},
    {"OLEDropMode", &P::OLEDropMode, int32_t{0}, {}, {}, 0, 2},
    {"ColWidth", &P::ColWidth, int32_t{0}, {}, {}, 0},
    {"IniFile", &P::IniFile, int32_t{0}},
    {"NameForInsert", &P::NameForInsert, string_view("Nieuwe tab;Nieuwe notitie")},
    {"TypeForInsert", &P::TypeForInsert, string_view("Tab;nnt")},
    {"DossierType", &P::DossierType, string_view("Dossiermap")},
    {"Id", &P::Id, int32_t{0}},
    {"ExternalId", &P::ExternalId, string_view("")},
    {"InitString", &P::InitString, string_view("")},
    {"Description", &P::Description, string_view("")},
    {"DbProvider", &P::DbProvider, string_view("")},
    {"DbPassWord", &P::DbPassWord, string_view("")},
    {"DbUserId", &P::DbUserId, string_view("")},
    {"DbPath", &P::DbPath, string_view("")},
    {"ShowParentsOnly", &P::ShowParentsOnly, false},
    {"ShowTreeOnly", &P::ShowTreeOnly, false},
    {"ShowExternalViewer", &P::ShowExternalViewer, false},
    {"AllowSettings", &P::AllowSettings, true},
    {"ShowAddButton", &P::ShowAddButton, true},
    {"DossierStatus", &P::DossierStatus, {}, {}, "DossierStatus "},
    {"ShowCheckList", &P::ShowCheckList, {}},
    {"ValueFile", &P::ValueFile, string_view("")},
    {"AlternateScanSetting", &P::AlternateScanSetting, string_view("")},
    {"ChecklistPresent ", &P::ChecklistPresent, string_view(""), "ChecklistPresent"},
    {"SelectItems", &P::SelectItems, false},
    {"Language", &P::Language, {}, {}, {}, 0, 3},
    {"LastUsedLayout", &P::LastUsedLayout, int32_t{0}},
    {"FirstLast", &P::FirstLast, string_view("")},
    {"ScannedDoc", &P::ScannedDoc, false},
    {"TemplatePath", &P::TemplatePath, string_view("")},
    {"SelectedTabId", &P::SelectedTabId, int32_t{0}},
    {"DbOpened", &P::DbOpened, false},
};

} // namespace

std::span<const Property<BinderProperties>> BinderPropertyTable() { return table; }

} // namespace kavidex::controls
