// webctl as the views drive it: the web browser control, made when something is shown in it and
// gone when something else is. Nothing in what it shows can run: see its window.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace kavidex::controls {

class BrowserWindow {
public:
    virtual ~BrowserWindow() = default;
    virtual void Navigate(const std::string& path, std::string_view method) = 0;
    virtual void Print() = 0;
};

class BrowserPane {
public:
    // `method` is the control's own, "Navigate" or "Navigate2". `failed` is told with a reason when
    // the control turns out not to show the file, once and not before this returns; it must not
    // let the window go.
    void Show(std::string_view path, std::string_view method,
              std::function<void(const std::string&)> failed) {
        lclPath = path;
        lclMethod = method;
        lclFailed = std::move(failed);
        if (lclWindow) lclWindow->Navigate(lclPath, lclMethod);
    }
    void Clear() { Show({}, {}, nullptr); }
    const std::string& Path() const { return lclPath; }
    bool CanPrint() const { return lclWindow != nullptr && !lclPath.empty(); }
    void Print() const {
        if (lclWindow) lclWindow->Print();
    }

    // --- For the window ------------------------------------------------------------------------
    void AttachWindow(BrowserWindow* window) {
        lclWindow = window;
        if (window && !lclPath.empty()) window->Navigate(lclPath, lclMethod);
    }
    void Failed(const std::string& reason) {
        if (const auto failed = std::exchange(lclFailed, nullptr)) failed(reason);
    }

private:
    std::string lclPath, lclMethod;
    std::function<void(const std::string&)> lclFailed;
    BrowserWindow* lclWindow = nullptr;
};

} // namespace kavidex::controls
