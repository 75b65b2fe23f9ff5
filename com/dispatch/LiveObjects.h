// How many objects of this library are alive: what unloading and the leak tests ask.
#pragma once

namespace kavidex::com {

long LiveObjects() noexcept;

// A member of every counted object.
class LiveCount {
public:
    LiveCount() noexcept;
    ~LiveCount();
    LiveCount(const LiveCount&) = delete;
    LiveCount& operator=(const LiveCount&) = delete;
};

} // namespace kavidex::com
