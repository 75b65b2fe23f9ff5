// The pictures of the tree's nodes by the types of their items.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kavidex::controls {

class TreeWindow;

class TreeImages {
public:
    struct Pair {
        int closed = -1, open = -1; // image numbers of the window
    };

    // `failed` tells the user what went wrong with an icon; the node gets another one.
    explicit TreeImages(std::function<void(const std::exception&)> failed)
        : lclFailed(std::move(failed)) {}

    void Forget(); // the window goes, and its pictures with it
    Pair fncSetIcon(TreeWindow& window, std::string_view itemType);
    // The key of a fixed picture, or the type itself, in lower case.
    static std::string KeyOf(std::string_view itemType, bool expanded);

private:
    struct Entry {
        std::string lclType, lclIconName;
        int image = -1;
    };
    Pair Make(TreeWindow& window, const std::string& type);
    const Entry& FileIcon(TreeWindow& window, const std::string& type);

    std::function<void(const std::exception&)> lclFailed;
    std::vector<Entry> lclIcons;
    std::vector<std::pair<std::string, Pair>> lclKnown; // by type as written, for the fill
};

} // namespace kavidex::controls
