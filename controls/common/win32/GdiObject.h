// Owned fonts, brushes and image lists, counted so that tests can see that none is left.
#pragma once

#include <utility>

#include <windows.h>

#include <commctrl.h>

namespace kavidex::controls::win32 {

// Of all kinds together, in this process.
int& GdiObjectsAlive();

inline void Discard(HFONT font) { DeleteObject(font); }
inline void Discard(HBRUSH brush) { DeleteObject(brush); }
inline void Discard(HIMAGELIST list) { ImageList_Destroy(list); }

template <class Handle>
class GdiObject {
public:
    GdiObject() = default;
    ~GdiObject() { Reset(); }
    GdiObject(const GdiObject&) = delete;
    GdiObject& operator=(const GdiObject&) = delete;

    void Reset(Handle handle = nullptr) {
        const Handle old = std::exchange(lclHandle, handle);
        if (handle) ++GdiObjectsAlive();
        if (!old) return;
        Discard(old);
        --GdiObjectsAlive();
    }
    Handle Get() const { return lclHandle; }

private:
    Handle lclHandle = nullptr;
};

} // namespace kavidex::controls::win32
