// A mail program, its user and the prompt tool, played behind the ports: every call is written
// down, the same one only once in a row.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "mail/MailAutomation.h"
#include "mail/MailRoads.h"
#include "mail/PromptTool.h"
#include "mail/SimpleMail.h"
#include "platform/Error.h"
#include "platform/Files.h"

namespace kavidex::tests {

struct PlayedMailProgram {
    std::vector<std::string> calls;
    std::string failAt; // the call of that beginning fails
    std::int32_t failure = platform::errors::fail;

    // The user: sends it, with this subject, after doing that.
    bool sends = true;
    std::string subject = "Emailing:";
    std::function<void()> whileShown = [] {};

    // The folder of sent mails: so many old ones; the new mail comes behind `others` at that count
    // after the display.
    std::int32_t older = 3, others = 0;
    int appearsAt = 1;
    int afterwardsFewer = 0; // of the old ones the user deletes so many meanwhile
    bool byNextOnly = false; // it orders them in another way
    std::function<void(const std::string&)> save = [](const std::string&) {};

    int counts = 0; // since the display
    std::string mark;
    bool shown = false;
    std::vector<std::string> attached; // path
    std::chrono::milliseconds waited{0};

    void Record(const std::string& call) {
        if (calls.empty() || calls.back() != call) calls.push_back(call);
        if (!failAt.empty() && call.starts_with(failAt))
            throw platform::Error(failure, "The program died");
    }

    mail::MailRoads Roads();
    std::shared_ptr<mail::SimpleMail> simple;
};

class PlayedSentItem : public mail::SentItem {
public:
    PlayedSentItem(PlayedMailProgram& program, bool ours) : lclProgram(program), lclOurs(ours) {}
    std::optional<std::string> UserProperty(std::string_view name) override {
        lclProgram.Record("UserProperty " + std::string(name));
        if (!lclOurs) return std::nullopt;
        return lclProgram.mark;
    }
    std::string Subject() override { return lclProgram.subject; }
    void SaveAs(std::string_view path) override {
        lclProgram.Record("SaveAs " + platform::FileName(path));
        lclProgram.save(std::string(path));
    }

private:
    PlayedMailProgram& lclProgram;
    bool lclOurs;
};

class PlayedSentFolder : public mail::SentFolder {
public:
    explicit PlayedSentFolder(PlayedMailProgram& program) : lclProgram(program) {}
    std::int32_t Count() override {
        lclProgram.Record("Count");
        if (!lclProgram.shown) return lclProgram.older;
        const bool there = ++lclProgram.counts >= lclProgram.appearsAt && lclProgram.sends;
        const auto now =
            lclProgram.older - lclProgram.afterwardsFewer + (there ? lclProgram.others + 1 : 0);
        lclOurs = there ? now : 0;
        return now;
    }
    std::unique_ptr<mail::SentItem> Item(std::int32_t place) override {
        lclProgram.Record("Item " + std::to_string(place));
        return std::make_unique<PlayedSentItem>(lclProgram,
                                                place == lclOurs && !lclProgram.byNextOnly);
    }
    std::unique_ptr<mail::SentItem> Next() override {
        lclProgram.Record("Next");
        if (!lclProgram.byNextOnly) return nullptr;
        return std::make_unique<PlayedSentItem>(lclProgram, true);
    }

private:
    PlayedMailProgram& lclProgram;
    std::int32_t lclOurs = 0;
};

class PlayedNewMail : public mail::NewMail {
public:
    explicit PlayedNewMail(PlayedMailProgram& program) : lclProgram(program) {}
    void AddRecipient(std::string_view address) override { Record("AddRecipient", address); }
    void SetSubject(std::string_view subject) override { Record("Subject", subject); }
    void SetBodyFormat(int format) override { Record("BodyFormat", std::to_string(format)); }
    void SetBody(std::string_view body) override { Record("Body", body); }
    void Attach(std::string_view path, std::string_view displayName) override {
        Record("Attach", displayName);
        lclProgram.attached.emplace_back(path);
    }
    std::unique_ptr<mail::SentFolder> SaveSentMessageFolder() override {
        lclProgram.Record("SaveSentMessageFolder");
        return std::make_unique<PlayedSentFolder>(lclProgram);
    }
    void AddUserProperty(std::string_view name, std::string_view value) override {
        Record("AddUserProperty", name);
        lclProgram.mark = value;
    }
    void Display() override {
        lclProgram.shown = true;
        lclProgram.whileShown();
        lclProgram.Record("Display");
    }
    bool Sent() override {
        lclProgram.Record("Sent");
        return lclProgram.sends;
    }

private:
    void Record(const char* call, std::string_view with) const {
        lclProgram.Record(std::string(call) + " " + std::string(with));
    }
    PlayedMailProgram& lclProgram;
};

struct PlayedAutomation : mail::MailAutomation {
    PlayedMailProgram& program;
    explicit PlayedAutomation(PlayedMailProgram& played) : program(played) {}
    std::unique_ptr<mail::NewMail> CreateMail() override {
        program.shown = false;
        program.counts = 0;
        program.Record("CreateMail");
        return std::make_unique<PlayedNewMail>(program);
    }
};

struct PlayedPrompts : mail::PromptTool {
    PlayedMailProgram& program;
    explicit PlayedPrompts(PlayedMailProgram& played) : program(played) {}
    int Signal(bool pause) noexcept override {
        program.calls.emplace_back(pause ? "Pause" : "Resume");
        return notRunning;
    }
};

inline mail::MailRoads PlayedMailProgram::Roads() {
    return {std::make_shared<PlayedAutomation>(*this), simple,
            std::make_shared<PlayedPrompts>(*this),
            [this](std::chrono::milliseconds time) { waited += time; }};
}

} // namespace kavidex::tests
