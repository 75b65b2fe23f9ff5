// A form with every kind of field, for the tests of the engine and for a look at it.
#pragma once

#include "controls/forms/Layout.h"

namespace kavidex::tests {

namespace sample {

using controls::forms::Column;
using controls::forms::FieldRow;
using controls::forms::Kind;
namespace anchor = controls::forms::anchor;
namespace style = controls::forms::style;

constexpr Column columns[] = {
    {"Naam", 0, false, true}, {"Grootte", 40, true}, {"Soort", 50, false, true}};

constexpr std::string_view tabs = "TabStrip1", frame = "frmShow";
constexpr auto left = anchor::leftTop;

constexpr FieldRow fields[] = {
    {"TabStrip1", Kind::Tabs, {4, 4, 332, 200}, "Algemeen;Lijsten", anchor::all},
    {"lblName", Kind::Label, {12, 26, 60, 9}, "Naam:", left, 0, tabs, 1},
    {"txtName", Kind::Edit, {76, 24, 250, 13}, "", anchor::wide, 0, tabs, 1},
    {"lblPath", Kind::Label, {12, 44, 60, 9}, "Map & pad:", left, 0, tabs, 1},
    {"txtPath", Kind::Browse, {76, 42, 250, 13}, "", anchor::wide, 0, tabs, 1},
    {"lblKind", Kind::Label, {12, 62, 60, 9}, "Soort:", left, 0, tabs, 1},
    {"cmbKind", Kind::Combo, {76, 60, 100, 13}, "Brief;Factuur;Nota", left, 0, tabs, 1},
    {"picIcon", Kind::Picture, {306, 58, 20, 20}, "", anchor::rightTop, 0, tabs, 1},
    {"frmShow", Kind::Frame, {12, 80, 150, 44}, "Tonen als", left, 0, tabs, 1},
    {"optIcons", Kind::Option, {20, 92, 120, 10}, "Pictogrammen", left, style::group, frame},
    {"optList", Kind::Option, {20, 106, 120, 10}, "Lijst", left, 0, frame},
    {"chkReadOnly", Kind::Check, {176, 92, 150, 10}, "Alleen lezen", left, 0, tabs, 1},
    {"prgDone", Kind::Progress, {176, 110, 150, 10}, "Voortgang", anchor::wide, 0, tabs, 1},
    {"lblNote", Kind::Label, {12, 130, 60, 9}, "Opmerking:", left, 0, tabs, 1},
    {"txtNote", Kind::Memo, {76, 130, 250, 66}, "", anchor::all, 0, tabs, 1},
    {"treTypes",
     Kind::Tree,
     {12, 24, 100, 172},
     "Mappen",
     anchor::tall,
     style::checks | style::edits | style::drags,
     tabs,
     2},
    {"lstFiles",
     Kind::List,
     {118, 24, 210, 172},
     "Bestanden",
     anchor::all,
     style::multi | style::checks | style::sorts | style::drags,
     tabs,
     2,
     columns},
    {"btnOk", Kind::Button, {174, 210, 50, 14}, "OK", anchor::rightBottom, style::isDefault},
    {"btnCancel",
     Kind::Button,
     {230, 210, 50, 14},
     "Annuleren",
     anchor::rightBottom,
     style::isCancel},
    {"btnApply", Kind::Button, {286, 210, 50, 14}, "Toepassen", anchor::rightBottom},
};

constexpr controls::forms::Layout layout = {"frmSample", "Voorbeeld", 340, 230, true, fields};

} // namespace sample

} // namespace kavidex::tests
