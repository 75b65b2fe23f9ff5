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

constexpr FieldRow fields[] = {
    {"TabStrip1", Kind::Tabs, {4, 4, 332, 200}, "Algemeen;Lijsten", anchor::all},
    {"lblName", Kind::Label, {12, 26, 60, 9}, "Naam:", anchor::leftTop, 0, "TabStrip1", 1},
    {"txtName", Kind::Edit, {76, 24, 250, 13}, "", anchor::wide, 0, "TabStrip1", 1},
    {"lblPath", Kind::Label, {12, 44, 60, 9}, "Map & pad:", anchor::leftTop, 0, "TabStrip1", 1},
    {"txtPath", Kind::Browse, {76, 42, 250, 13}, "", anchor::wide, 0, "TabStrip1", 1},
    {"lblKind", Kind::Label, {12, 62, 60, 9}, "Soort:", anchor::leftTop, 0, "TabStrip1", 1},
    {"cmbKind",
     Kind::Combo,
     {76, 60, 100, 13},
     "Brief;Factuur;Nota",
     anchor::leftTop,
     0,
     "TabStrip1",
     1},
    {"picIcon", Kind::Picture, {306, 58, 20, 20}, "", anchor::rightTop, 0, "TabStrip1", 1},
    {"frmShow", Kind::Frame, {12, 80, 150, 44}, "Tonen als", anchor::leftTop, 0, "TabStrip1", 1},
    {"optIcons",
     Kind::Option,
     {20, 92, 120, 10},
     "Pictogrammen",
     anchor::leftTop,
     style::group,
     "frmShow"},
    {"optList", Kind::Option, {20, 106, 120, 10}, "Lijst", anchor::leftTop, 0, "frmShow"},
    {"chkReadOnly",
     Kind::Check,
     {176, 92, 150, 10},
     "Alleen lezen",
     anchor::leftTop,
     0,
     "TabStrip1",
     1},
    {"prgDone", Kind::Progress, {176, 110, 150, 10}, "Voortgang", anchor::wide, 0, "TabStrip1", 1},
    {"lblNote", Kind::Label, {12, 130, 60, 9}, "Opmerking:", anchor::leftTop, 0, "TabStrip1", 1},
    {"txtNote", Kind::Memo, {76, 130, 250, 66}, "", anchor::all, 0, "TabStrip1", 1},
    {"treTypes",
     Kind::Tree,
     {12, 24, 100, 172},
     "Mappen",
     anchor::tall,
     style::checks | style::edits | style::drags,
     "TabStrip1",
     2},
    {"lstFiles",
     Kind::List,
     {118, 24, 210, 172},
     "Bestanden",
     anchor::all,
     style::multi | style::checks | style::sorts | style::drags,
     "TabStrip1",
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
