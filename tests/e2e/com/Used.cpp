#include "Used.h"

#include <winternl.h>

#include <cstring>

namespace kavidex::tests {

namespace {

bool IsOurs(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId();
}

BOOL CALLBACK CountOne(HWND window, LPARAM count) {
    if (IsOurs(window)) ++*reinterpret_cast<int*>(count);
    return TRUE;
}

BOOL CALLBACK CountWithChildren(HWND window, LPARAM count) {
    if (!IsOurs(window)) return TRUE;
    CountOne(window, count);
    EnumChildWindows(window, CountOne, count);
    return TRUE;
}

int Windows() {
    int count = 0;
    EnumWindows(CountWithChildren, reinterpret_cast<LPARAM>(&count));
    for (HWND one = nullptr; (one = FindWindowExW(HWND_MESSAGE, one, nullptr, nullptr));)
        CountOne(one, reinterpret_cast<LPARAM>(&count));
    return count;
}

// The table of GDI objects that Wine shares with the process. GetGuiResources answers 0 there.
struct GdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type, flags;
    std::uint64_t user;
};
constexpr std::size_t gdiPlace = 0x94, gdiMost = 0x4000; // in the 32-bit process block

int CountGdi() {
    const auto* block =
        reinterpret_cast<const unsigned char*>(NtCurrentTeb()->ProcessEnvironmentBlock);
    const GdiEntry* table = nullptr;
    std::memcpy(&table, block + gdiPlace, sizeof table);
    if (!table) return -1;
    int count = 0;
    for (std::size_t i = 0; i < gdiMost; ++i) count += table[i].type != 0;
    return count;
}

// Only where it counts what is made before its eyes.
std::optional<int> GdiObjects() {
    if (const DWORD told = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return static_cast<int>(told);
    const int before = CountGdi();
    if (before < 0) return std::nullopt;
    HBRUSH made[5];
    for (int i = 0; i < 5; ++i) made[i] = CreateSolidBrush(RGB(1, 2, i));
    const bool sees = CountGdi() == before + 5;
    for (const HBRUSH brush : made) DeleteObject(brush);
    return sees && CountGdi() == before ? std::optional(before) : std::nullopt;
}

std::size_t HeapBytes() {
    const HANDLE heap = GetProcessHeap();
    PROCESS_HEAP_ENTRY entry{};
    std::size_t bytes = 0;
    HeapLock(heap);
    while (HeapWalk(heap, &entry))
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    HeapUnlock(heap);
    return bytes;
}

} // namespace

Used Used::Now() {
    Used used;
    used.windows = Windows();
    GetProcessHandleCount(GetCurrentProcess(), &used.handles);
    used.gdi = GdiObjects();
    used.bytes = HeapBytes();
    return used;
}

} // namespace kavidex::tests
