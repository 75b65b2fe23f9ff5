// The image list of the tree: its own pictures and the system's icons of file types.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include <commctrl.h>

namespace kavidex::controls::win32 {

class TreeImages {
public:
    TreeImages() = default;
    ~TreeImages() { Destroy(); }
    TreeImages(const TreeImages&) = delete;
    TreeImages& operator=(const TreeImages&) = delete;

    // Makes the list for that resolution and with the present system colours. Images that were
    // there keep their numbers.
    void Build(int dpi);
    void Destroy();

    HIMAGELIST Handle() const { return lclList; }
    int Size() const { return lclSize; }
    int Index(std::string_view key) const; // -1 when there is none
    bool AddFileIcon(std::string_view extension, std::string_view key);

    // Lists of all objects together, for the tests: Windows' own count is not to be had everywhere.
    static int ListsAlive();

private:
    struct Entry {
        std::string key, extension; // no extension: one of our own pictures
    };
    bool AddToList(const Entry& entry);

    HIMAGELIST lclList = nullptr;
    int lclSize = 16;
    std::vector<Entry> lclEntries;
};

} // namespace kavidex::controls::win32
