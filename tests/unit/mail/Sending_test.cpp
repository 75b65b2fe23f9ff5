// Mails on their way out through a played mail program, and the folder that holds what was made for
// one.
#include <gtest/gtest.h>

#include <numeric>

#include "mail/MailClient.h"
#include "mail/SendByAutomation.h"
#include "platform/General.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/fakes/PlayedMailProgram.h"

namespace {

using namespace kavidex;
using namespace kavidex::mail;
using tests::FakeWorkstation;

struct Sending : testing::Test {
    FakeWorkstation machine;
    tests::PlayedMailProgram program;
    OutgoingMail mail{"jan@example.nl", "Onderwerp", "", {}};
    MailSettings settings;
    const std::string folder = machine.Path("mail");

    void SetUp() override {
        machine.files.CreateDirectories(folder);
        program.save = [&](const std::string& path) { machine.files.WriteAll(path, "mail"); };
        mail.attachments = {Attachment("a.pdf", "Brief - 1: kort.pdf"),
                            Attachment("b.doc", "b.doc")};
    }
    MailAttachment Attachment(const char* file, const char* name) {
        machine.files.WriteAll(platform::JoinPath(folder, file), "x");
        return {platform::JoinPath(folder, file), name};
    }
    AutomationResult Send() {
        struct Prompts : tests::PlayedPrompts {
            using PlayedPrompts::PlayedPrompts;
            const tests::FakeBusyDialog* busy = nullptr;
            int Signal(bool pause) noexcept override {
                EXPECT_FALSE(busy->open) << "the dialog closes before the tool goes on";
                return PlayedPrompts::Signal(pause);
            }
        } prompts{program};
        prompts.busy = &machine.busy;
        const auto roads = program.Roads();
        const data::Translation translation;
        return SendByAutomation({machine, translation, *roads.automation, prompts, roads.pause},
                                mail, settings, folder);
    }
    std::string Calls() const {
        return std::accumulate(
            program.calls.begin(), program.calls.end(), std::string(),
            [](const std::string& all, const std::string& one) { return all + one + "\n"; });
    }
};

TEST_F(Sending, GoesStepByStepAndFindsTheMailAgain) {
    settings.bodyFormat = 2;
    mail.body = "Beste Jan";
    program.others = 1;
    program.appearsAt = 3;
    program.subject = "a/b:c";
    const auto result = Send();
    EXPECT_EQ(result.code, AutomationResult::sent);
    EXPECT_EQ(platform::FileName(result.saved), "a b c.msg");
    EXPECT_TRUE(machine.files.FileExists(result.saved));
    EXPECT_EQ(Calls(), "Pause\nCreateMail\nAddRecipient jan@example.nl\nSubject Onderwerp\n"
                       "BodyFormat 2\nBody Beste Jan\nAttach Brief   1  kort.pdf\nAttach b.doc\n"
                       "SaveSentMessageFolder\nCount\nAddUserProperty UniqueIndex\nDisplay\nSent\n"
                       "Count\nItem 4\nUserProperty UniqueIndex\nNext\nItem 5\n"
                       "UserProperty UniqueIndex\n"
                       "SaveAs a b c.msg\nResume\n");
    EXPECT_EQ(program.mark.size(), 38u);
    ASSERT_FALSE(machine.busy.shown.empty());
    EXPECT_EQ(machine.busy.shown[0].caption, "Ophalen verzonden emailbericht");
    EXPECT_EQ(machine.busy.shown[0].text, "Bezig met het ophalen van het verzonden email bericht.");
    EXPECT_FALSE(machine.busy.open);
}

TEST_F(Sending, WhereNothingIsSetNothingIsSaidAndWhatIsGoneIsNotAttached) {
    mail.address.clear();
    machine.files.Remove(mail.attachments[0].path);
    mail.attachments.push_back(Attachment("Email.msg", "Email.msg"));
    program.subject = " / ";
    EXPECT_EQ(platform::FileName(Send().saved), "Email (1).msg") << "not one that was attached";
    EXPECT_EQ(Calls().find("AddRecipient"), std::string::npos);
    EXPECT_EQ(Calls().find("Body"), std::string::npos);
    EXPECT_EQ(program.attached, (std::vector{mail.attachments[1].path, mail.attachments[2].path}));
    EXPECT_TRUE(machine.log.Has("Mail", "a.pdf is gone"));
}

// Whatever step the program dies at, the tool goes on, the dialog is closed and the user hears of
// it only while the mail is not out.
TEST_F(Sending, AProgramThatDiesAtAnyStepEndsTheSending) {
    struct Row {
        const char* at;
        int code;
    };
    constexpr Row rows[] = {
        {"CreateMail", -1}, {"AddRecipient", -1}, {"Subject", -1},         {"Attach", -1},
        {"SaveSent", -1},   {"Count", -1},        {"AddUserProperty", -1}, {"Display", -1},
        {"Sent", 1},        {"Item", 0},          {"SaveAs", 0},           {"UserProperty", 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.at);
        program = {};
        program.save = [&](const std::string& path) { machine.files.WriteAll(path, "mail"); };
        program.failAt = row.at;
        const auto result = Send();
        EXPECT_EQ(result.code, row.code);
        EXPECT_EQ(result.error.empty(), row.code != AutomationResult::failed);
        EXPECT_EQ(result.saved.empty(), row.code != AutomationResult::sent);
        EXPECT_EQ(program.calls.front(), "Pause");
        EXPECT_EQ(program.calls.back(), "Resume");
        EXPECT_FALSE(machine.busy.open);
        EXPECT_TRUE(machine.log.Has("Mail", "The program died"));
    }
}

TEST_F(Sending, AClosedMailIsNotLookedForAndWithoutRetrievalNoneIs) {
    program.sends = false;
    EXPECT_EQ(Send().code, AutomationResult::notSent);
    EXPECT_EQ(program.counts, 0);
    program.sends = true;
    settings.retrieve = false;
    const auto shown = machine.busy.shown.size();
    const auto result = Send();
    EXPECT_EQ(result.code, AutomationResult::sent);
    EXPECT_TRUE(result.saved.empty());
    EXPECT_EQ(program.counts, 0);
    EXPECT_EQ(machine.busy.shown.size(), shown);
}

TEST_F(Sending, TheSearchIsBoundAndTakesAtLeastAMinute) {
    program.older = 100000;
    program.appearsAt = searchAttempts;
    EXPECT_EQ(Send().code, AutomationResult::sent);
    EXPECT_EQ(std::count(program.calls.begin(), program.calls.end(), "Item 100001"), 1);
    EXPECT_EQ(Calls().find("Item 100000\n"), std::string::npos) << "only new ones are looked at";
    EXPECT_GE(program.waited + betweenAttempts, std::chrono::minutes(1));

    program.appearsAt = searchAttempts + 1;
    const auto result = Send();
    EXPECT_EQ(program.counts, searchAttempts);
    EXPECT_EQ(result.code, AutomationResult::notSent);
    EXPECT_TRUE(result.saved.empty());
    EXPECT_TRUE(machine.log.Has("Mail", "not found"));
}

TEST_F(Sending, TheSearchEndsWhereTheUserSaysSo) {
    program.appearsAt = searchAttempts + 1;
    machine.busy.onProgress = [&](int done) { machine.busy.stopAsked = done == 7; };
    EXPECT_TRUE(Send().saved.empty());
    EXPECT_EQ(program.counts, 7);
    EXPECT_EQ(machine.busy.stop, "Annuleren");
}

TEST_F(Sending, ItFindsTheMailWhereOldOnesGoMeanwhileAndTheProgramHasNoTime) {
    for (const int fewer : {1, 2}) {
        program.afterwardsFewer = fewer;
        for (const int at : {1, 4}) {
            program.appearsAt = at;
            EXPECT_EQ(Send().code, AutomationResult::sent) << fewer << " fewer, at " << at;
        }
    }
    program.afterwardsFewer = 0;
    for (const char* call : {"Count", "Item", "UserProperty", "SaveAs"}) {
        program.failure = static_cast<std::int32_t>(0x8001010A); // it is busy
        program.whileShown = [&] { program.failAt = call; };
        machine.busy.onProgress = [&](int done) {
            if (done == 3) program.failAt.clear();
        };
        EXPECT_EQ(Send().code, AutomationResult::sent) << call;
    }
    program.failure = platform::errors::fail; // it was moved meanwhile
    program.whileShown = [&] { program.failAt = "Item"; };
    EXPECT_EQ(Send().code, AutomationResult::sent);
    machine.busy.onProgress = {};
    program.whileShown = [] {};
    program.byNextOnly = true;
    EXPECT_EQ(Send().code, AutomationResult::sent);
}

TEST_F(Sending, WhatTheUserRefusesTheProgramIsNotAskedForAgain) {
    program.failure = static_cast<std::int32_t>(0x80004004);
    program.whileShown = [&] { program.failAt = "UserProperty"; };
    EXPECT_EQ(Send().code, AutomationResult::notSent);
    EXPECT_EQ(program.counts, 1);
}

TEST_F(Sending, TheToolKeepsStillUntilTheLastOfSeveralMailsIsOut) {
    bool within = false;
    program.whileShown = [&] {
        if (std::exchange(within, true)) return;
        EXPECT_EQ(Send().code, AutomationResult::sent);
    };
    Send();
    EXPECT_EQ(std::count(program.calls.begin(), program.calls.end(), "Resume"), 1);
    EXPECT_EQ(program.calls.back(), "Resume");
}

TEST_F(Sending, ASubjectThatIsNoFileNameIsShortenedAndCleaned) {
    program.save = [&](const std::string& path) { // as Windows does
        if (!platform::IsFileName(platform::FileName(path)) || path.size() > 250)
            throw platform::Error(platform::errors::invalidArgument, "no name");
        machine.files.WriteAll(path, "mail");
    };
    program.subject = std::string(4000, 'x');
    EXPECT_LT(platform::FileName(Send().saved).size(), 130u);
    program.subject = "a<b>c\"d|e?f*g/h\\i:j\tk";
    EXPECT_EQ(platform::FileName(Send().saved), "a b c d e f g h i j k.msg");
}

TEST_F(Sending, OptionsGiveSubjectAndBodyAndTellWhatIsLookedFor) {
    const auto set = [&](const char* section, const char* key, const char* value) {
        platform::SaveRegSetting(machine, platform::applicationName, section, key, value);
    };
    const data::Translation translation = [](std::string_view text, const auto&) {
        return "T(" + std::string(text) + ")";
    };
    auto read = ReadMailSettings(machine, translation);
    EXPECT_EQ(read.subject, "T(Emailing:)");
    EXPECT_TRUE(read.body.empty() && read.retrieve && read.bodyFormat == 0);
    set("Mail", "Subject", "Uw dossier");
    set("Mail", "Body", "Groet");
    set("Mail", "RetrieveSendMail", "0");
    set("Email", "FormatText", "2");
    read = ReadMailSettings(machine, translation);
    EXPECT_EQ(read.subject + read.body, "Uw dossierGroet");
    EXPECT_FALSE(read.retrieve);
    EXPECT_EQ(read.bodyFormat, 2);
    for (const char* none : {"-1", "nee", "1e99"}) {
        set("Email", "FormatText", none);
        EXPECT_EQ(ReadMailSettings(machine, translation).bodyFormat, 0) << none;
    }
}

TEST(MailClient, IsKnownByItsNameInAnyCase) {
    const std::pair<const char*, int> rows[] = {{"Microsoft Outlook ", 0}, {"OUTLOOK EXPRESS", 1},
                                                {"lotus notes", 2},        {"Tobit", 3},
                                                {"Thunderbird", 4},        {"", 4}};
    for (const auto& [name, code] : rows)
        EXPECT_EQ(static_cast<int>(MailClientOf(name)), code) << name;
}

} // namespace
