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

// What the message loop lets in must not touch trees: they are loaded and changed with Guard, which
// throws platform::Error while long work of the same thread is under way.
class LongWork {
public:
    LongWork(const platform::Workstation& workstation, std::string caption, std::string text);
    ~LongWork();
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    void Step(); // between two statements; cheap, never throws

    static void Guard();

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
