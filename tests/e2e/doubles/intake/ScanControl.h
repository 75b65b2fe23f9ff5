// A scanning control for tests: its two buttons report what a scanner made (the files that the text
// file of KAVIDEX_SCANNED names, one a line) and what lies in its import folder. On being closed it
// reports those of a second list, with ".late" behind the name.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "com/control/Control.h"
#include "controls/common/win32/OwnWindow.h"
#include "controls/common/win32/WindowClass.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/win32/Variant.h"
#include "tests/e2e/doubles/Recorded.h"

namespace kavidex::tests {

constexpr CLSID scanClass = {
    0x70604cfb, 0x7e37, 0x4c0b, {0x8f, 0xba, 0x5a, 0x3c, 0x9c, 0x6c, 0x14, 0x3a}};
constexpr IID scanInterface = {
    0x8f794893, 0x7d41, 0x484e, {0x81, 0xb9, 0x3b, 0x84, 0xbb, 0x95, 0x5a, 0xf5}};
constexpr IID scanEvents = {
    0x07644cf3, 0x2ed1, 0x43b4, {0xaf, 0x3e, 0x50, 0xfd, 0x89, 0x6b, 0x51, 0x56}};

inline constexpr com::ClassRow scanRow = {
    L"ctrlScan", L"Scanning control for tests",
    &scanClass,  &scanInterface,
    &scanEvents, OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE,
    nullptr};

class ScanControlWindow final : public controls::win32::OwnWindow {
public:
    explicit ScanControlWindow(std::function<void(int button)> pressed)
        : lclPressed(std::move(pressed)) {}
    ~ScanControlWindow() override { Destroy(); }

    HWND Create(HWND parent, const RECT& place) override {
        using controls::win32::WindowOf;
        if (!lclWindow)
            WindowOf<ScanControlWindow>::Create(*this, lclWindow, L"ScanControlDouble", L"",
                                                WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN,
                                                WS_EX_CONTROLPARENT, place, parent,
                                                platform::TheWorkstation());
        if (lclWindow && !GetWindow(lclWindow, GW_CHILD))
            for (int i = 0; i < 2; ++i)
                CreateWindowExW(0, L"BUTTON", i == 0 ? L"Scannen" : L"Importeren",
                                WS_CHILD | WS_VISIBLE | WS_TABSTOP, 12 + i * 100, 12, 92, 26,
                                lclWindow, reinterpret_cast<HMENU>(static_cast<INT_PTR>(i + 1)),
                                nullptr, nullptr);
        return lclWindow;
    }
    void TakeFocus() override { SetFocus(GetWindow(lclWindow, GW_CHILD)); }
    bool TranslateKey(const MSG&) override { return false; }
    void Draw(HDC, const RECT&) const override {}

    using OwnWindow::Handle;
    LRESULT Handle(UINT message, WPARAM w, LPARAM l) {
        if (message == WM_DESTROY) lclPressed(0);
        if (message != WM_COMMAND || HIWORD(w) != BN_CLICKED)
            return DefWindowProcW(lclWindow, message, w, l);
        lclPressed(LOWORD(w));
        return 0;
    }

private:
    std::function<void(int)> lclPressed;
};

class ScanControlDouble final : public com::Control {
public:
    ScanControlDouble() : Control(scanRow) {}

    const com::Table& Members() const override {
        using Self = ScanControlDouble;
        using Row = com::Rows<Self>;
        using Object = com::ComPtr<IDispatch>;
        static constexpr com::Member rows[] = {
            Row::Get<[](Self& self) { return self.lclFolder; }>(L"ImportFolder", 1),
            Row::Put<[](Self& self, std::string folder) {
                self.lclFolder = folder;
                Record("ImportFolder " + platform::FileName(folder));
            }>(L"ImportFolder", 1),
            Row::Get<[](Self& self) { return self.lclProfile; }>(L"AlternateScanSetting", 2),
            Row::Put<[](Self& self, std::string profile) {
                self.lclProfile = profile;
                Record("AlternateScanSetting " + profile);
            }>(L"AlternateScanSetting", 2),
            Row::Put<[](Self&, bool may) { Record(may ? "StartScan" : "no StartScan"); }>(
                L"StartScan", 3),
            Row::Put<[](Self&, bool may) { Record(may ? "EditSettings" : "no EditSettings"); }>(
                L"EditSettings", 4),
            Row::Put<[](Self&, bool may) {
                Record(may ? "TransportBatches" : "no TransportBatches");
            }>(L"TransportBatches", 5),
            Row::PutRef<[](Self&, Object given) { Record(given ? "Translate" : "no Translate"); }>(
                L"Translate", 6),
            Row::PutRef<[](Self&, Object given) { Record(given ? "UserAuth" : "no UserAuth"); }>(
                L"UserAuth", 7),
        };
        static constexpr com::Table table{"ScanDouble.ctrlScan", &scanInterface, rows};
        return table;
    }

    std::unique_ptr<controls::win32::ControlWindow> MakeWindow() override {
        return std::make_unique<ScanControlWindow>([this](int button) {
            const auto late = Scanned(".late");
            if (button != 0)
                Report(button == 1 ? Scanned("") : Waiting());
            else if (!late.empty())
                Report(late);
        });
    }
    void LoadProperties(controls::PropertyBag&) override {}
    void SaveProperties(controls::PropertyBag&) const override {}

protected:
    ~ScanControlDouble() override { Shutdown(); }

private:
    static void Record(const std::string& line) {
        RecordCall("KAVIDEX_SCAN_RECORD", "kavidex-scan.txt", line);
    }
    static std::vector<std::string> Scanned(const std::string& behind) {
        std::vector<std::string> files;
        const char* const list = std::getenv("KAVIDEX_SCANNED");
        std::ifstream lines(list ? list + behind : "");
        for (std::string line; std::getline(lines, line);) {
            while (!line.empty() && line.back() == '\r') line.pop_back();
            if (!line.empty()) files.push_back(line);
        }
        return files;
    }
    std::vector<std::string> Waiting() const {
        std::vector<std::string> files;
        for (const auto& name : platform::TheWorkstation().files.List(lclFolder, "*.tif"))
            files.push_back(platform::JoinPath(lclFolder, name));
        return files;
    }
    void Report(const std::vector<std::string>& files) {
        std::vector<com::Variant> names;
        for (const auto& file : files) names.emplace_back(file);
        Raise(1, platform::win32::ArrayOf(names));
        Record("ScannedImages " + std::to_string(files.size()));
    }

    std::string lclFolder, lclProfile;
};

} // namespace kavidex::tests
