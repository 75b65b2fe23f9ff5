#include "platform/win32/OwnCall.h"

#include <utility>
#include <vector>

namespace kavidex::platform::win32 {

namespace {

struct Thread {
    int depth = 0;
    std::vector<std::function<void()>> waiting;
};
thread_local Thread thread;

} // namespace

OwnCall::OwnCall() noexcept { ++thread.depth; }

OwnCall::~OwnCall() {
    if (--thread.depth > 0) return;
    // What is destroyed now may let others go.
    while (!thread.waiting.empty()) {
        const auto waiting = std::exchange(thread.waiting, {});
        for (const auto& work : waiting) work();
    }
}

void AfterOwnCalls(std::function<void()> work) {
    if (thread.depth > 0)
        thread.waiting.push_back(std::move(work));
    else
        work();
}

} // namespace kavidex::platform::win32
