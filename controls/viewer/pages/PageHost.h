// What the image view needs of the control around it, beyond what every view does.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/viewer/pages/PageGeometry.h"

namespace kavidex::controls {

class PageHost {
public:
    virtual FitMode KeptFit() const = 0;
    virtual void KeepFit(FitMode mode) = 0;
    // Whether the user was asked about hiding the toolbox.
    virtual bool ToolboxQuestionAsked() const = 0;
    virtual void SetToolboxQuestionAsked() = 0;
    // The next page or the one before, of whatever document.
    virtual void StepPage(int step) = 0;
    virtual void PageShown(int page) = 0;
    virtual void PageMovedUp() = 0;
    virtual bool MayDragPages() const = 0;
    // True when somebody made a document of those pages.
    virtual bool ExportPagesOf(const std::string& path, const std::vector<std::int32_t>& pages) = 0;
    virtual void ShowPageMenu(int x, int y) = 0; // at a point of the screen
    // Runs what the user asks for without a command: not within another, and an error is told under
    // the routine's name.
    virtual void Run(std::string_view routine, const std::function<void()>& work) = 0;

protected:
    ~PageHost() = default;
};

} // namespace kavidex::controls
