// A binder control's window that shows nothing: forms meet the users of FakeForms, and the scanning
// control in it reports what a test has it report.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "controls/binder/BinderWindow.h"
#include "controls/intake/ScanPanel.h"
#include "platform/Error.h"
#include "tests/fakes/FakeForms.h"

namespace kavidex::tests {

struct FakeBinderWindow : controls::BinderWindow, controls::ScanPlace {
    FakeForms forms;
    bool scannerInstalled = true;
    controls::ScanSetup scanner;
    std::function<void()> onOpen; // while the control is being opened
    void ToolbarChanged() override {}
    void LayoutChanged() override {}
    void AppearanceChanged() override {}
    void Repaint() override {}
    void FocusTree() override {}
    void FocusViewer() override {}
    std::optional<std::size_t> ShowMenu(const controls::PopupMenu&, std::string_view) override {
        return {};
    }
    controls::forms::FormPresenter* Forms() override { return &forms; }
    std::unique_ptr<controls::forms::PaneContent> MakePane(controls::ctlViewer&) override {
        return nullptr;
    }
    controls::ScanPlace* Scanner() override { return this; }
    void OpenScanner(const controls::ScanSetup& setup) override {
        if (!scannerInstalled) throw platform::Error(platform::errors::notFound, "no class");
        scanner = setup;
        if (onOpen) std::exchange(onOpen, nullptr)();
    }
    void TellScanner(const controls::ScanSetup& setup) override { scanner.flags = setup.flags; }
    void CloseScanner() override { scanner = {}; }
};

} // namespace kavidex::tests
