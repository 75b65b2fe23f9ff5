// A call of Windows or of another program into an object of ours. While one runs the host may drop
// that object, from an event or from the message loop of long work: what would then be destroyed
// under the call waits for its end.
#pragma once

#include <functional>

namespace kavidex::platform::win32 {

class OwnCall {
public:
    OwnCall() noexcept;
    ~OwnCall(); // with the outermost one of the thread goes what waited
    OwnCall(const OwnCall&) = delete;
    OwnCall& operator=(const OwnCall&) = delete;
};

// At once where no such call runs on this thread. Must not throw.
void AfterOwnCalls(std::function<void()> work);

} // namespace kavidex::platform::win32
