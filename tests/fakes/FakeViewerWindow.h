// The viewer's window as its logic drives it. Menus are answered by the name of an entry.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "controls/viewer/ViewerWindow.h"
#include "controls/viewer/ctlViewer.h"
#include "tests/fakes/FakeForms.h"

namespace kavidex::tests {

class FakeViewerWindow final : public controls::ViewerWindow {
public:
    explicit FakeViewerWindow(controls::ctlViewer& viewer) : lclViewer(viewer) {
        lclViewer.AttachWindow(this);
    }
    ~FakeViewerWindow() override { lclViewer.AttachWindow(nullptr); }

    FakeForms forms;
    std::string choose;              // in the menus that open
    controls::PopupMenu menu;        // the last one
    std::function<void()> meanwhile; // while it is open
    int shown = 0;
    bool idle = false;

    void ContentChanged() override {
        lclViewer.Toolbar();
        lclViewer.Status();
        ++shown;
    }
    void AppearanceChanged() override {}
    void WantIdle() override { idle = true; }
    std::optional<std::size_t> ShowMenu(const controls::PopupMenu& offered,
                                        std::string_view) override {
        menu = offered;
        if (meanwhile) std::exchange(meanwhile, nullptr)();
        for (std::size_t i = 0; i < menu.size(); ++i)
            if (menu[i].name == choose && menu[i].enabled) return i;
        return std::nullopt;
    }
    std::optional<std::size_t> ShowMenuAt(const controls::PopupMenu& offered, int, int) override {
        return ShowMenu(offered, {});
    }
    controls::forms::FormPresenter* Forms() override { return &forms; }

    // Until nothing waits.
    void Settle() {
        while (lclViewer.Idle()) {
        }
    }
    // Whether the menu of pages has that entry.
    bool Shows(std::string_view name) const {
        const auto entries = lclViewer.ButtonMenu("mnuPages");
        return std::any_of(entries.begin(), entries.end(),
                           [&](const auto& entry) { return entry.name == name; });
    }
    controls::ToolbarItem Button(std::string_view name) const {
        for (const auto& item : lclViewer.Toolbar())
            if (item.name == name) return item;
        return {};
    }

private:
    controls::ctlViewer& lclViewer;
};

} // namespace kavidex::tests
