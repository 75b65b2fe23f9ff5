#include "controls/tree/frmFind.h"

#include <utility>

#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Kind;
using forms::What;
namespace anchor = forms::anchor;
namespace style = forms::style;

constexpr FieldRow fields[] = {
    {"lblText", Kind::Label, {8, 10, 64, 9}, "Zoeken naar:"},
    {"txtText", Kind::Edit, {74, 8, 158, 13}, "", anchor::wide},
    {"btnFind", Kind::Button, {128, 30, 50, 14}, "Zoeken", anchor::rightBottom, style::isDefault},
    {"btnCancel",
     Kind::Button,
     {182, 30, 50, 14},
     "Annuleren",
     anchor::rightBottom,
     style::isCancel},
};

constexpr forms::Layout layout = {"frmFind", "Zoeken", 240, 52, true, fields};

} // namespace

frmFind::frmFind(const platform::Workstation& workstation, std::shared_ptr<Translator> translator,
                 std::string_view text, std::function<bool(const std::string&)> find)
    : lclForm(layout, workstation, std::move(translator)) {
    const auto changed = [this](auto&) {
        const bool some = !platform::TrimView(lclForm["txtText"].Text()).empty();
        lclForm["btnFind"].SetEnabled(some);
    };
    lclForm["txtText"].SetText(text);
    lclForm["btnFind"].SetEnabled(!platform::TrimView(text).empty());
    lclForm.On("txtText", What::Changed, changed);
    lclForm.On("btnFind", What::Clicked, [this, find = std::move(find)](auto&) {
        if (find(lclForm["txtText"].Text())) lclForm.Close(true);
    });
}

} // namespace kavidex::controls
