#include "controls/binder/Toolbar.h"

#include "platform/text.h"

namespace kavidex::controls {

namespace {

using Kind = ButtonKind;

// Buttons whose action needs a component that is not built in stay out of sight.
constexpr ToolbarButton buttons[] = {
    // key             description       tooltip                kind             right
    {"New", "new", "Nieuw", Kind::DropDown, "EditDossiers"},
    {"NewSep", "", "", Kind::Separator},
    {"Settings", "settings", "Instellingen", Kind::Push, "EditSettings", false},
    {"SettingsSep", "", "", Kind::Separator, {}, false},
    {"Stapler", "stapler", "Nieten", Kind::DropDown, "EditDossiers", false},
    {"Unpack", "unpack", "Splitsen", Kind::DropDown, "EditDossiers", false},
    {"Scan", "scan", "Open de scanmodule", Kind::Toggle, "AddScannedImages", false},
    {"WindowPlacement", "windowplacement", "Vensterindeling", Kind::DropDown},
    {"Prevdoc", "prevdoc", "Vorig document"},
    {"Nextdoc", "nextdoc", "Volgend document"},
    {"WithCheckList", "withchecklist", "Toon checklist", Kind::Toggle, {}, false},
};

constexpr ToolbarMenuEntry entries[] = {
    {"Stapler", "withdel", "Nieten en originelen verwijderen", 0, false},
    {"Stapler", "nodel", "Nieten en originelen behouden", 0, false},
    {"Unpack", "unpackwithdel", "Splitsen en origineel verwijderen", 0, false},
    {"Unpack", "unpacknodel", "Splitsen en origineel behouden", 0, false},
    {"WindowPlacement", "mnutreeonly", "Alleen boom", 1},
    {"WindowPlacement", "mnudoconly", "Alleen document", 2},
    {"WindowPlacement", "mnutreeleftviewerright", "Boom links, document rechts", 3},
    {"WindowPlacement", "mnutreetopviewerbottom", "Boom boven, document onder", 4},
};

} // namespace

std::span<const ToolbarButton> ToolbarTable() { return buttons; }
std::span<const ToolbarMenuEntry> ToolbarMenuTable() { return entries; }

const ToolbarButton* FindButton(std::string_view key) {
    for (const auto& button : buttons)
        if (platform::EqualAsciiNoCase(button.key, key)) return &button;
    return nullptr;
}

} // namespace kavidex::controls
