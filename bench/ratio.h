// Measures two ways of doing one thing in the same run and prints how they compare, since absolute
// times mean nothing on another machine.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <type_traits>
#include <vector>

namespace kavidex::bench {

struct Times {
    double ours, peer; // seconds
};

// Seconds that the work took; by the clock where it does not measure itself.
template <class Work>
double Once(Work& work) {
    if constexpr (std::is_same_v<decltype(work()), double>) {
        return work();
    } else {
        const auto start = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }
}

// The two take turns, so that a busy moment of the machine meets both; the round whose ratio lies
// in the middle counts.
template <class Ours, class Peer>
Times Measure(Ours ours, Peer peer, int rounds = 7) {
    std::vector<Times> all;
    for (int i = 0; i < rounds; ++i) {
        const double time = Once(ours);
        all.push_back({time, Once(peer)});
    }
    const auto middle = all.begin() + rounds / 2;
    std::nth_element(all.begin(), middle, all.end(), [](const Times& one, const Times& other) {
        return one.ours * other.peer < other.ours * one.peer;
    });
    return *middle;
}

inline bool Report(const char* name, const Times& times, const char* what, double ratio, bool good,
                   const char* bound, double limit) {
    std::printf("%-44s %s %.2f (%s %.2f)  ours %.1f ms, peer %.1f ms  %s\n", name, what, ratio,
                bound, limit, times.ours * 1e3, times.peer * 1e3, good ? "ok" : "MISSED");
    std::fflush(stdout);
    return good;
}

// Our time against the peer's: 1.3 allows 30 % more.
inline bool AtMost(const char* name, const Times& times, double limit) {
    const double ratio = times.ours / times.peer;
    return Report(name, times, "time", ratio, ratio <= limit, "at most", limit);
}

// Our speed against the peer's: 0.8 asks for 80 %.
inline bool AtLeast(const char* name, const Times& times, double limit) {
    const double ratio = times.peer / times.ours;
    return Report(name, times, "speed", ratio, ratio >= limit, "at least", limit);
}

// The same, for a figure that has no bound of its own.
inline void Tell(const char* name, const Times& times) {
    std::printf("%-44s speed %.2f (for comparison)  ours %.1f ms, peer %.1f ms\n", name,
                times.peer / times.ours, times.ours * 1e3, times.peer * 1e3);
    std::fflush(stdout);
}

} // namespace kavidex::bench
