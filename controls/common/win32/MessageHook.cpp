#include "controls/common/win32/MessageHook.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kavidex::controls::win32 {

namespace {

struct Thread {
    HHOOK hook = nullptr;
    std::vector<MessageHook*> all;
};
thread_local Thread thread;

} // namespace

MessageHook::MessageHook(Look look) : lclLook(std::move(look)) {
    thread.all.push_back(this);
    if (!thread.hook)
        thread.hook = SetWindowsHookExW(WH_GETMESSAGE, Watch, nullptr, GetCurrentThreadId());
}

MessageHook::~MessageHook() {
    std::erase(thread.all, this);
    if (!thread.all.empty() || !thread.hook) return;
    UnhookWindowsHookEx(std::exchange(thread.hook, nullptr));
}

LRESULT CALLBACK MessageHook::Watch(int code, WPARAM removed, LPARAM l) {
    auto& message = *reinterpret_cast<MSG*>(l);
    if (code == HC_ACTION && removed == PM_REMOVE) {
        const auto all = thread.all;
        for (auto* one : all) // each may end others
            if (std::find(thread.all.begin(), thread.all.end(), one) != thread.all.end() &&
                Look(one->lclLook)(message)) // a copy: it may end itself
                message.message = WM_NULL;
    }
    return CallNextHookEx(thread.hook, code, removed, l);
}

} // namespace kavidex::controls::win32
