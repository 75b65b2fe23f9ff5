// The icons of a window as one image list: our own pictures and the system's icons of file types,
// sharp at the window's resolution.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <windows.h>

#include <commctrl.h>

namespace kavidex::controls::win32 {

class IconStore {
public:
    // The size in pixels at 96 dots an inch: 16, 20, 24 or 32.
    explicit IconStore(int units = 16) : lclUnits(units) {}
    ~IconStore() { Destroy(); }
    IconStore(const IconStore&) = delete;
    IconStore& operator=(const IconStore&) = delete;

    // Makes the list for that resolution and with the present system colours. Icons that were
    // there keep their numbers.
    void Build(int dpi);
    void Destroy();

    HIMAGELIST Handle() const { return lclList; }
    int Size() const { return lclSize; }

    // The number of a picture by its key (IconKeys.h), added on first use: every key has one.
    int Of(std::string_view key);

    // As above for keys of the caller's own: -1 when there is none of that key ...
    int Index(std::string_view key) const;
    // ... and the icon of a file type under it; false when neither the system nor we have one.
    bool AddFileIcon(std::string_view extension, std::string_view key);

    // Lists of all objects together, for the tests: Windows' own count is not to be had everywhere.
    static int ListsAlive();

private:
    struct Entry {
        std::string key, extension; // no extension: the picture of that name
    };
    bool AddToList(const Entry& entry);

    HIMAGELIST lclList = nullptr;
    int lclUnits, lclSize = 16;
    std::vector<Entry> lclEntries;
};

// An icon for a window that shows one alone; the caller destroys it. Null when Windows refuses.
HICON IconFor(std::string_view key, int size);

} // namespace kavidex::controls::win32
