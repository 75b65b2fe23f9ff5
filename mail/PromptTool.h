// The small tool of other makers that answers a mail program's security questions by itself. It is
// to keep still while we drive the program.
#pragma once

#include <atomic>
#include <string_view>

namespace kavidex::mail {

class PromptTool {
public:
    static constexpr int told = 0, notRunning = -99;

    virtual ~PromptTool() = default;
    // True: keep still; false: go on. Gives one of the above; never throws.
    virtual int Signal(bool pause) noexcept = 0;
};

// Whether a top-level window of that title is the tool's.
bool IsPromptTool(std::string_view title);

// Keeps the tool still on every way out; of several mails at a time, until the last one is out.
class PromptPause {
public:
    explicit PromptPause(PromptTool& tool) : lclTool(tool) {
        ++paused;
        lclTool.Signal(true);
    }
    ~PromptPause() {
        if (--paused == 0) lclTool.Signal(false);
    }
    PromptPause(const PromptPause&) = delete;
    PromptPause& operator=(const PromptPause&) = delete;

private:
    static inline std::atomic<int> paused = 0;
    PromptTool& lclTool;
};

} // namespace kavidex::mail
