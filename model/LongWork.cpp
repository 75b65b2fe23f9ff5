#include "model/LongWork.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::model {
namespace {

constexpr std::int64_t dayMs = 24LL * 60 * 60 * 1000, showAfterMs = 500, pumpEveryMs = 50;
constexpr int stepsALook = 16; // at the clock

// The threads at work; a host may have several, each with its own binder. No thread_local: its
// clean-up could outlive the library.
struct Worker {
    std::thread::id thread;
    const void* tree;
};
std::mutex mutex;
std::vector<Worker> atWork;

bool IsThisThread(const Worker& worker) { return worker.thread == std::this_thread::get_id(); }

std::int64_t Since(std::int64_t then, std::int64_t now) { return (now - then + dayMs) % dayMs; }

} // namespace

LongWork::LongWork(const platform::Workstation& workstation, std::string caption, std::string text,
                   const void* tree)
    : lclWorkstation(workstation), lclCaption(std::move(caption)), lclText(std::move(text)),
      lclBegun(Now()), lclPumped(lclBegun) {
    const std::lock_guard guard(mutex);
    atWork.push_back({std::this_thread::get_id(), tree});
}

LongWork::~LongWork() {
    const std::lock_guard guard(mutex);
    const auto last = std::find_if(atWork.rbegin(), atWork.rend(), IsThisThread);
    atWork.erase(std::next(last).base()); // works of one thread end in the order of a stack
}

void LongWork::Guard(const void* tree) {
    const std::lock_guard guard(mutex);
    if (std::any_of(atWork.begin(), atWork.end(), [&](const Worker& worker) {
            return IsThisThread(worker) && (!worker.tree || worker.tree == tree);
        }))
        throw platform::Error(platform::errors::fail, "The dossier is being read or changed.");
}

std::int64_t LongWork::Now() const {
    const platform::DateTime now = lclWorkstation.clock.Now();
    return ((now.hour * 60LL + now.minute) * 60 + now.second) * 1000 + now.millisecond;
}

void LongWork::Step() {
    if (lclBroken || ++lclSteps % stepsALook != 0) return;
    const std::int64_t now = Now();
    if (Since(lclPumped, now) < pumpEveryMs) return;
    lclPumped = now;
    try {
        if (!lclDialog && Since(lclBegun, now) >= showAfterMs)
            lclDialog.emplace(lclWorkstation.busy, lclCaption, lclText); // pumps
        else
            lclWorkstation.busy.PumpMessages();
    } catch (const std::exception& error) {
        lclBroken = true;
        lclWorkstation.log.Write("LongWork", error.what());
    }
}

} // namespace kavidex::model
