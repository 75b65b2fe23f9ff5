// A workstation whose every port a test can set, break and look into; only the files are real, in a
// folder of their own that goes with it.
#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/BusyDialog.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Exchange.h"
#include "platform/Files.h"
#include "platform/Guids.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Printers.h"
#include "platform/Registry.h"
#include "platform/Shell.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/modCreateGuid.h"
#include "platform/text.h"
#include "tests/fakes/FaultyFiles.h"

namespace kavidex::tests {

class FakeRegistry : public platform::Registry {
public:
    bool refuse = false; // every call throws
    int writes = 0;

    std::optional<std::string> Read(std::string_view application, std::string_view section,
                                    std::string_view key) override {
        Check();
        const auto found = lclValues.find(Key(application, section, key));
        if (found == lclValues.end()) return std::nullopt;
        return found->second;
    }
    void Write(std::string_view application, std::string_view section, std::string_view key,
               std::string_view value) override {
        Check();
        ++writes;
        lclValues[Key(application, section, key)] = value;
    }

private:
    using Name = std::tuple<std::string, std::string, std::string>;
    static Name Key(std::string_view a, std::string_view s, std::string_view k) {
        return {platform::LowerCase(a), platform::LowerCase(s), platform::LowerCase(k)};
    }
    void Check() const {
        if (refuse) throw platform::Error(platform::errors::accessDenied, "The registry is closed");
    }
    std::map<Name, std::string> lclValues;
};

class FakeClock : public platform::Clock {
public:
    platform::DateTime now{2026, 11, 15, 14, 5, 9, 0};
    platform::DateTime Now() override { return now; }
};

class FakeUser : public platform::User {
public:
    std::string name = "jansen";
    std::string Name() override { return name; }
};

// Numbers 1, 2, 3... unless `real`; `refuse` stands for a system that makes none.
class FakeGuids : public platform::Guids {
public:
    bool refuse = false, real = false;
    std::uint64_t made = 0;

    std::optional<platform::GuidBytes> New() override {
        if (refuse) return std::nullopt;
        if (real) return platform::TheWorkstation().guids.New();
        platform::GuidBytes bytes{};
        ++made;
        for (std::size_t i = 0; i < 8; ++i)
            bytes[15 - i] = static_cast<std::uint8_t>(made >> (8 * i));
        return bytes;
    }
    // The text of the n-th guid handed out, from 1.
    static std::string TextOf(std::uint64_t n) {
        FakeGuids guids;
        guids.made = n - 1;
        return platform::GuidText(*guids.New());
    }
};

// Answers from `answers` first, then Ok or Yes.
class FakeMessages : public platform::Messages {
public:
    std::vector<platform::Message> shown;
    std::deque<platform::Answer> answers;
    std::function<void()> meanwhile; // what comes through while the next box is up
    const platform::BusyDialog* busy = nullptr;

    platform::Answer Show(const platform::Message& message) override {
        using platform::Answer;
        using platform::Buttons;
        if (busy && busy->PaintsOnly()) // a box lets the host in
            throw std::logic_error("a message box within a transaction: " + message.text);
        shown.push_back(message);
        if (meanwhile) std::exchange(meanwhile, {})();
        if (!answers.empty()) {
            const Answer answer = answers.front();
            answers.pop_front();
            return answer;
        }
        const bool ok = message.buttons == Buttons::Ok || message.buttons == Buttons::OkCancel;
        return ok ? Answer::Ok : Answer::Yes;
    }
};

class FakeBusyDialog : public platform::BusyDialog {
public:
    struct Shown {
        std::string caption, text;
        bool operator==(const Shown& other) const {
            return caption == other.caption && text == other.text;
        }
    };
    std::vector<Shown> shown;
    std::vector<std::pair<int, int>> progress;
    bool open = false;
    int closed = 0, pumped = 0, painted = 0;

    void Show(std::string_view caption, std::string_view text) override {
        shown.push_back({std::string(caption), std::string(text)});
        open = true;
    }
    std::function<void(int done)> onProgress; // may throw, as a window that is gone does
    void Progress(int done, int total) override {
        progress.emplace_back(done, total);
        if (onProgress) onProgress(done);
    }
    void Close() override {
        open = false;
        ++closed;
    }
    std::string stop; // the caption offered
    bool stopAsked = false;
    void OfferStop(std::string_view caption) override { stop = caption; }
    bool StopAsked() override { return !stop.empty() && stopAsked; }
    std::function<void()> onPump; // what the user and the host do meanwhile
    void Pump(bool paintOnly) override {
        if (paintOnly) {
            ++painted;
            return;
        }
        ++pumped;
        if (onPump) onPump();
    }
};

// A printer that writes down what it gets: "title: page ..." once a job is whole.
class FakePrinters : public platform::Printers {
public:
    std::optional<platform::PrintChoice> choice{{"Laser", 0, 0, 1, false, {}}}; // none: cancelled
    platform::PrintPaper paper{300, 300, 2480, 3508, true};
    int asked = -1;      // pages of which a range could be chosen
    int refusePage = -1; // from 0, of the pages of a job: the paper is out
    std::vector<std::string> jobs;

    std::optional<platform::PrintChoice> Ask(int pages) override {
        asked = pages;
        return choice;
    }
    std::unique_ptr<platform::PrintJob> Begin(const platform::PrintChoice& on,
                                              std::string_view title) override {
        if (on.printer.empty())
            throw platform::Error(platform::errors::fail, "The printer refuses");
        return std::make_unique<Job>(*this, title);
    }

private:
    class Job : public platform::PrintJob {
    public:
        Job(FakePrinters& printers, std::string_view title)
            : lclPrinters(printers), lclText(std::string(title) + ":") {}
        platform::PrintPaper BeginPage(bool landscape) override {
            if (lclPages++ == lclPrinters.refusePage)
                throw platform::Error(platform::errors::fail, "The paper is out");
            lclText += landscape ? " wide" : " high";
            return lclPrinters.paper;
        }
        void Draw(const platform::PrintPicture& picture,
                  const platform::PrintPlace& place) override {
            lclText += " " + std::to_string(picture.bits) + "bit " + std::to_string(picture.width) +
                       "x" + std::to_string(picture.height) + " at " + std::to_string(place.x) +
                       "," + std::to_string(place.y) + " " + std::to_string(place.width) + "x" +
                       std::to_string(place.height);
        }
        void EndPage() override { lclText += ";"; }
        void End() override { lclPrinters.jobs.push_back(lclText); }

    private:
        FakePrinters& lclPrinters;
        std::string lclText;
        int lclPages = 0;
    };
};

class FakeShell : public platform::Shell {
public:
    std::vector<std::string> opened, printed;
    bool refuse = false;
    std::string mailClient;

    std::string MailClient() override { return mailClient; }

    void OpenDefault(std::string_view path) override { Take(opened, path); }
    void PrintDefault(std::string_view path) override { Take(printed, path); }
    bool hasPrinters = true;
    FakePrinters printers;
    bool HasPrinters() override { return hasPrinters; }
    platform::Printers& Printers() override { return printers; }
    std::string TypeDescription(std::string_view extension) override {
        return "Bestand " + platform::UpperCase(extension);
    }
    bool engine = true, pdfInBrowser = false;
    bool HasBrowserEngine() override { return engine; }
    bool BrowserShows(std::string_view) override { return pdfInBrowser; }

private:
    void Take(std::vector<std::string>& files, std::string_view path) const {
        if (refuse) throw platform::Error(platform::errors::fail, "No program opens this file");
        files.emplace_back(path);
    }
};

// `held` stands for another program that keeps the clipboard open.
class FakeClipboard : public platform::MemoryClipboard {
public:
    bool held = false;

    platform::ExchangeData Read() override {
        Demand();
        return content;
    }
    void Write(const platform::ExchangeData& data) override {
        Demand();
        content = data;
    }

private:
    void Demand() const {
        if (held)
            throw platform::Error(platform::errors::clipboardHeld,
                                  "The clipboard is held open by another program");
    }
};

class FakeLog : public platform::Log {
public:
    struct Line {
        std::string where, what;
    };
    std::vector<Line> lines;

    void Write(std::string_view where, std::string_view what) noexcept override {
        lines.push_back({std::string(where), std::string(what)});
    }
    // Whether a line of that routine holds the text.
    bool Has(std::string_view where, std::string_view part = {}) const {
        for (const Line& line : lines)
            if (line.where == where && line.what.find(part) != std::string::npos) return true;
        return false;
    }
};

// `files` passes every operation on to the real file system until told to fail one.
struct FakeWorkstation {
    FakeRegistry registry;
    FaultyFiles files{platform::TheWorkstation().files};
    FakeClock clock;
    FakeUser user;
    FakeGuids guids;
    FakeMessages messages;
    FakeBusyDialog busy;
    FakeShell shell;
    FakeLog log;
    FakeClipboard clipboard;
    platform::Workstation workstation{registry, files, clock, user, guids,
                                      messages, busy,  shell, log,  clipboard};

    FakeWorkstation() {
        messages.busy = &busy;
        auto& real = platform::TheWorkstation();
        lclFolder = real.files.TemporaryFolder() + "kavidex-test-" +
                    platform::GuidText(*real.guids.New()).substr(1, 36);
        real.files.CreateDirectories(lclFolder);
    }
    ~FakeWorkstation() {
        std::error_code ignored;
        std::filesystem::remove_all(Native(lclFolder), ignored);
    }
    FakeWorkstation(const FakeWorkstation&) = delete;
    FakeWorkstation& operator=(const FakeWorkstation&) = delete;

    operator const platform::Workstation&() const { return workstation; }

    const std::string& Folder() const { return lclFolder; } // without a backslash at its end
    std::string Path(std::string_view name) const { return platform::JoinPath(lclFolder, name); }

    static std::filesystem::path Native(std::string_view path) {
        const std::string native = platform::NativePath(path);
        return std::filesystem::path(std::u8string(native.begin(), native.end()));
    }

private:
    std::string lclFolder;
};

} // namespace kavidex::tests
