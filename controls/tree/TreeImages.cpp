#include "controls/tree/TreeImages.h"

#include <algorithm>

#include "controls/tree/TreeWindow.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

// The pictures of the item types; every other type has the icon of that file extension.
struct FixedIcon {
    std::string_view type, image, expanded;
};
constexpr FixedIcon fixedIcons[] = {
    {"tab", "closedtab", "opentab"},
    {"usergroup", "Users", "Users"},
    {"users", "Users", "Users"},
    {"user", "SelectedUser", "SelectedUser"},
    {"userpost", "SelectedUser", "SelectedUser"},
    {"nnt", "attachtment", "attachtment"},
};

const FixedIcon* FixedIconOf(std::string_view type) {
    for (const auto& row : fixedIcons)
        if (row.type == type) return &row;
    return nullptr;
}

std::string TypeOf(std::string_view itemType) {
    return platform::LowerCase(platform::TrimView(itemType));
}

} // namespace

void TreeImages::Forget() {
    lclIcons.clear();
    lclKnown.clear();
}

std::string TreeImages::KeyOf(std::string_view itemType, bool expanded) {
    auto key = TypeOf(itemType);
    if (const auto* row = FixedIconOf(key)) key = expanded ? row->expanded : row->image;
    return key;
}

TreeImages::Pair TreeImages::fncSetIcon(TreeWindow& window, std::string_view itemType) {
    for (const auto& [known, images] : lclKnown)
        if (known == itemType) return images;
    const auto images = Make(window, TypeOf(itemType));
    lclKnown.emplace_back(itemType, images);
    return images;
}

TreeImages::Pair TreeImages::Make(TreeWindow& window, const std::string& type) {
    if (const auto* row = FixedIconOf(type))
        return {window.Image(row->image), window.Image(row->expanded)};
    const auto image = FileIcon(window, type).image;
    return {image, image};
}

const TreeImages::Entry& TreeImages::FileIcon(TreeWindow& window, const std::string& type) {
    const auto known = std::find_if(lclIcons.begin(), lclIcons.end(),
                                    [&](const Entry& entry) { return entry.lclType == type; });
    if (known != lclIcons.end()) return *known;
    // A key of digits alone would be taken for a position.
    const bool numeric = !type.empty() && type.find_first_not_of("0123456789") == type.npos;
    std::string key = numeric ? type + "key" : type;
    try {
        if (window.Image(key) < 0 && (type.empty() || !window.AddFileIcon(type, key)))
            key = "unknown";
    } catch (const std::exception& error) {
        lclFailed(error);
        key = "unknown";
    }
    return lclIcons.emplace_back(Entry{type, key, window.Image(key)});
}

} // namespace kavidex::controls
