// The editor in place of a list's cell: an edit, or a drop-down list where choices are given.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <windows.h>

namespace kavidex::controls::forms::win32 {

class CellEditor {
public:
    // The text that stands, and the step of the Tab key that ended it: 1, -1, or 0.
    using Done = std::function<void(const std::string& text, int step)>;

    CellEditor() = default;
    ~CellEditor() { Close(false); }
    CellEditor(const CellEditor&) = delete;
    CellEditor& operator=(const CellEditor&) = delete;

    void Open(HWND list, const RECT& cell, HFONT font, const std::string& text,
              const std::vector<std::string>& choices, Done done);
    void Close(bool keep, int step = 0); // not kept: `done` is not called

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR id,
                                      DWORD_PTR self);
    bool Key(WPARAM key);

    HWND lclWindow = nullptr;
    Done lclDone;
};

} // namespace kavidex::controls::forms::win32
