// Looks at the messages of this thread before its message loop, whosever that is, handles them: the
// way to keys of a window that stands beside its host's.
#pragma once

#include <functional>

#include <windows.h>

namespace kavidex::controls::win32 {

class MessageHook {
public:
    using Look = std::function<bool(const MSG&)>; // true: it was used, and the loop gets nothing

    explicit MessageHook(Look look);
    ~MessageHook();
    MessageHook(const MessageHook&) = delete;
    MessageHook& operator=(const MessageHook&) = delete;

private:
    static LRESULT CALLBACK Watch(int code, WPARAM removed, LPARAM message);

    Look lclLook;
};

} // namespace kavidex::controls::win32
