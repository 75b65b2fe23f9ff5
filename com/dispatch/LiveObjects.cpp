#include "com/dispatch/LiveObjects.h"

#include <atomic>

namespace kavidex::com {

namespace {
// Hosts may hold objects in several apartments of one process.
std::atomic<long> live{0};
} // namespace

long LiveObjects() noexcept { return live; }
LiveCount::LiveCount() noexcept { ++live; }
LiveCount::~LiveCount() { --live; }

} // namespace kavidex::com
