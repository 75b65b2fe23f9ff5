// Keeps the host alive during database work that may take long: the message loop runs, within a
// transaction for painting alone, and after half a second the busy dialog shows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/BusyDialog.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

// What the message loop lets in must not touch the tree that is worked at, and no tree at all
// during a transaction: trees are loaded and changed with Guard, which throws platform::Error then.
// Work at another tree of the same thread goes on.
class LongWork {
public:
    // `tree`: null for work in a transaction.
    LongWork(const platform::Workstation& workstation, std::string caption, std::string text,
             const void* tree = nullptr);
    ~LongWork();
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    void Step(); // between two statements; cheap, never throws

    static void Guard(const void* tree);

private:
    std::int64_t Now() const; // in milliseconds

    const platform::Workstation& lclWorkstation;
    const std::string lclCaption, lclText;
    std::int64_t lclBegun, lclPumped;
    int lclSteps = 0;
    bool lclBroken = false; // the dialog failed: the work goes on without
    std::optional<platform::BusyScope> lclDialog;
};

} // namespace kavidex::model
