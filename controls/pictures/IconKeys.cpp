#include "controls/pictures/IconKeys.h"

#include "platform/text.h"

namespace kavidex::controls {

namespace {

struct Named {
    std::string_view type, picture;
};
constexpr Named items[] = {
    {"tab", "closedtab"}, {"nnt", "attachtment"},   {"usergroup", "Users"},
    {"users", "Users"},   {"user", "SelectedUser"}, {"userpost", "SelectedUser"},
};

struct Family {
    std::string_view picture, extensions; // each between blanks
};
constexpr Family families[] = {
    {"pdf", " pdf "},
    {"word", " doc docx docm dot dotx rtf odt "},
    {"sheet", " xls xlsx xlsm xlsb csv ods "},
    {"slides", " ppt pptx pps ppsx odp "},
    {"mail", " msg eml "},
    {"picture", " tif tiff jpg jpeg jpe jfif png gif bmp dib ico wmf emf heic webp "},
    {"text", " txt log ini xml json md "},
    {"archive", " zip rar 7z gz tar cab "},
    {"web", " htm html mht mhtml url "},
};

} // namespace

std::string FileIconKey(std::string_view extension) {
    return "." + platform::LowerCase(platform::TrimView(extension));
}

std::string ItemIconKey(std::string_view itemType) {
    const auto type = platform::LowerCase(platform::TrimView(itemType));
    for (const auto& item : items)
        if (item.type == type) return std::string(item.picture);
    return FileIconKey(type);
}

std::string_view FamilyOf(std::string_view extension) {
    const auto wanted = " " + platform::LowerCase(platform::TrimView(extension)) + " ";
    for (const auto& family : families)
        if (wanted.size() > 2 && family.extensions.find(wanted) != std::string_view::npos)
            return family.picture;
    return {};
}

} // namespace kavidex::controls
