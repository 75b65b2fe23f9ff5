// The prompt tool is found by the title of its window, and told by a message that both register
// under one name.
#include <windows.h>

#include "mail/PromptTool.h"
#include "mail/win32/MakeMailRoads.h"
#include "platform/win32/Variant.h"

namespace kavidex::mail::win32 {

namespace {

class PromptToolWindow final : public PromptTool {
public:
    int Signal(bool pause) noexcept override {
        try {
            const UINT message = RegisterWindowMessageW(L"CLICKYES_SUSPEND_RESUME");
            const HWND window = Find();
            constexpr WPARAM suspend = 0, resume = 1;
            const bool posted =
                message && window && PostMessageW(window, message, pause ? suspend : resume, 0);
            return posted ? told : notRunning;
        } catch (const std::exception&) { // no memory for a title
            return notRunning;
        }
    }

private:
    // From the first top-level window on, each next one. The order may change meanwhile, even in a
    // circle.
    static HWND Find() {
        constexpr int most = 10000;
        HWND window = GetTopWindow(nullptr);
        for (int i = 0; window && i < most; ++i, window = GetWindow(window, GW_HWNDNEXT)) {
            wchar_t title[256] = L"";
            // Asks no window: one of ours may hang.
            const int length = InternalGetWindowText(window, title, 256);
            if (length > 0 &&
                IsPromptTool(platform::win32::FromWide({title, static_cast<std::size_t>(length)})))
                return window;
        }
        return nullptr;
    }
};

} // namespace

std::shared_ptr<PromptTool> MakePromptTool() { return std::make_shared<PromptToolWindow>(); }

} // namespace kavidex::mail::win32
