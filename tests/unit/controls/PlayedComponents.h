// A binder with the separate components of its intake played: the mail program, the letter
// generator, the scanning control.
#pragma once

#include "controls/intake/Letters.h"
#include "mail/MailSource.h"
#include "tests/fakes/FakeBinderWindow.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {

struct PlayedMail : mail::MailSource {
    mail::Dragged dragged;

    mail::Dragged WhatIsDragged() override { return dragged; }
    mail::MailFacts FactsOf(std::string_view) override { return {}; }
};

struct PlayedLetters : LetterGenerator {
    using Merge = std::function<Merged(const std::string& values, const std::string& letter)>;
    explicit PlayedLetters(Merge merges) : merge(std::move(merges)) {}
    Merge merge;
    Merged fncMergeDocument(const std::string& values, const std::string& letter) override {
        return merge(values, letter);
    }
};

struct Components : BinderWithTemporaryFolder {
    std::shared_ptr<PlayedMail> program = std::make_shared<PlayedMail>();
    PlayedLetters::Merge merge;
    tests::FakeBinderWindow window;

    void SetUp() override {
        BinderWithTemporaryFolder::SetUp();
        binder = std::make_unique<ctrlCorrespondence>(
            machine, nullptr, nullptr,
            IntakeComponents{program, [this] { return std::make_unique<PlayedLetters>(merge); }});
        binder->SetDbConnection(connection);
        machine.shell.mailClient = "Microsoft Outlook ";
        ASSERT_EQ(Open("key"), 0);
        binder->AttachWindow(&window);
    }
    void TearDown() override { binder->AttachWindow(nullptr); }

    std::string Documents() {
        std::string lines;
        for (const auto& item : binder->treCorr().AllItems()) lines += item->Description() + "\n";
        return lines;
    }
    // A mail that is selected; its file says which.
    mail::DraggedItem Item(const std::string& subject) {
        return {"MailItem", subject, [this, subject](std::string_view path) {
                    machine.files.WriteAll(path, "mail " + subject);
                }};
    }
    std::int32_t DropMail() {
        DropData data;
        data.hasText = true;
        data.text = "mail";
        machine.messages.shown.clear();
        return binder->treCorr().Dropped(data, Root());
    }
};

} // namespace kavidex::controls
